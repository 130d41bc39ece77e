#include "platform/animation/CADisplayLink.h"
#include "platform/animation/FrameClock.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

class Ticker : public Object<Ticker, NSObject> {
 public:
  int plain = 0;
  std::vector<double> times;
  void tick() { ++plain; }
  void frame(Ref<CADisplayLink> link) {
    times.push_back(link->timestamp());
    if (times.size() == 3) link->invalidate();
  }
  static void exportMethods(MethodTable<Ticker>& table) {
    table.add<&Ticker::tick>("tick").add<&Ticker::frame>("frame:");
  }
};

TEST(FrameClock, MakesNoFramesUnlessAskedAndOneForManyRequests) {
  const VirtualTime time;
  FrameClock& clock = FrameClock::shared();
  const std::uint64_t before = clock.frameCount();
  RunLoop::advance(10);
  EXPECT_EQ(clock.frameCount(), before);
  for (int i = 0; i < 5; ++i) clock.setNeedsFrame();
  RunLoop::advance(10);
  EXPECT_EQ(clock.frameCount(), before + 1);
}

TEST(FrameClock, BeatsSixtyTimesASecondWhileAskedEachTime) {
  const VirtualTime time;
  FrameClock& clock = FrameClock::shared();
  const std::uint64_t before = clock.frameCount();
  const std::uint64_t observer = clock.addObserver(FrameClock::Phase::display, [&](double) { clock.setNeedsFrame(); });
  clock.setNeedsFrame();
  RunLoop::advance(1);
  clock.removeObserver(observer);
  EXPECT_NEAR(static_cast<double>(clock.frameCount() - before), 61, 1);
}

TEST(FrameClock, MovesThingsBeforeItShowsThemAndObserversMayLeaveMeanwhile) {
  const VirtualTime time;
  FrameClock& clock = FrameClock::shared();
  std::vector<std::string> log;
  std::uint64_t second = 0;
  const std::uint64_t shows = clock.addObserver(FrameClock::Phase::display, [&](double) { log.push_back("show"); });
  const std::uint64_t first = clock.addObserver(FrameClock::Phase::update, [&](double) {
    log.push_back("move");
    clock.removeObserver(second);
  });
  second = clock.addObserver(FrameClock::Phase::update, [&](double) { log.push_back("gone"); });
  clock.setNeedsFrame();
  RunLoop::advance(0.1);
  EXPECT_THAT(log, testing::ElementsAre("move", "show"));
  clock.removeObserver(first);
  clock.removeObserver(shows);
}

TEST(FrameClock, ComesToLifeAgainAfterATestDroppedItsFrame) {
  {
    const VirtualTime time;
    FrameClock::shared().setNeedsFrame();
  }
  const VirtualTime time;
  const std::uint64_t before = FrameClock::shared().frameCount();
  FrameClock::shared().setNeedsFrame();
  RunLoop::advance(0.1);
  EXPECT_EQ(FrameClock::shared().frameCount(), before + 1);
}

TEST(CADisplayLink, TicksAtEveryFrameUntilInvalidated) {
  const VirtualTime time;
  const auto ticker = make<Ticker>();
  const auto link = make<CADisplayLink>(ticker, sel("frame:"));
  link->addToRunLoop();
  RunLoop::advance(1);
  ASSERT_EQ(ticker->times.size(), 3u);
  EXPECT_NEAR(ticker->times[2] - ticker->times[1], FrameClock::frameDuration, 1e-6);
}

TEST(CADisplayLink, RestsWhilePausedAndStopsOnceItsTargetIsGone) {
  const VirtualTime time;
  auto ticker = make<Ticker>();
  auto link = make<CADisplayLink>(ticker, sel("tick"));
  link->addToRunLoop();
  RunLoop::advance(0.1);
  const int ticks = ticker->plain;
  EXPECT_GT(ticks, 3);
  link->setPaused(true);
  RunLoop::advance(1);
  EXPECT_EQ(ticker->plain, ticks);
  link->setPaused(false);
  RunLoop::advance(0.1);
  EXPECT_GT(ticker->plain, ticks);
  const Weak<CADisplayLink> alive = link;
  ticker = nullptr;
  link = nullptr;
  RunLoop::advance(0.1);
  EXPECT_TRUE(alive.expired());
  EXPECT_FALSE(FrameClock::shared().isFramePending());
}

}  // namespace
}  // namespace platform
