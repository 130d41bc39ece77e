#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Date.h"
#include "platform/foundation/NSTimer.h"

namespace platform {
namespace {

using testing::ElementsAre;

class NSTimerTest : public testing::Test {
 protected:
  NSTimer::Block note() {
    return [this](const Ref<NSTimer>&) { instants_.push_back(CACurrentMediaTime() - Clock::virtualMediaTimeAtStart); };
  }
  const VirtualTime time_;
  std::vector<double> instants_;
};

TEST_F(NSTimerTest, FiresOnceAndIsThenInvalid) {
  const Ref<NSTimer> timer = NSTimer::scheduledTimer(1.5, false, note());
  EXPECT_TRUE(timer->isValid());
  RunLoop::advance(10);
  EXPECT_THAT(instants_, ElementsAre(1.5));
  EXPECT_FALSE(timer->isValid());
}

TEST_F(NSTimerTest, RepeatsOnTheGridOfItsFirstFiring) {
  const Ref<NSTimer> timer = NSTimer::scheduledTimer(0.1, true, note());
  RunLoop::advance(0.35);
  EXPECT_THAT(instants_, testing::Pointwise(testing::DoubleNear(1e-9), {0.1, 0.2, 0.3}));
  timer->invalidate();
  RunLoop::advance(1);
  EXPECT_EQ(instants_.size(), 3U);
}

TEST_F(NSTimerTest, LeavesOutRepetitionsThatWereMissed) {
  const Ref<NSTimer> timer = NSTimer::scheduledTimer(1, true, [&](const Ref<NSTimer>& self) {
    note()(self);
    if (instants_.size() == 1) RunLoop::advance(0.5);
  });
  RunLoop::advance(3);
  EXPECT_THAT(instants_, ElementsAre(1, 2, 3));
  timer->invalidate();
}

TEST_F(NSTimerTest, IsKeptAliveByTheLoopAndLetGoWhenItIsOver) {
  const auto held = std::make_shared<int>(1);
  Weak<NSTimer> once = NSTimer::scheduledTimer(1, false, [held](const Ref<NSTimer>&) {});
  Weak<NSTimer> again = NSTimer::scheduledTimer(1, true, [held](const Ref<NSTimer>& timer) { timer->invalidate(); });
  EXPECT_FALSE(once.expired());
  RunLoop::advance(1);
  EXPECT_TRUE(once.expired());
  EXPECT_TRUE(again.expired());
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(NSTimerTest, CanBeInvalidatedByWhoeverHoldsOnlyAWeakReference) {
  Weak<NSTimer> timer = NSTimer::scheduledTimer(1, true, note());
  timer.lock()->invalidate();
  EXPECT_TRUE(timer.expired());
  RunLoop::advance(5);
  EXPECT_THAT(instants_, ElementsAre());
}

class Ticker : public Object<Ticker, NSObject> {
 public:
  void tick() { ++ticks; }
  void tickOf(const Ref<NSTimer>& timer) {
    ++ticks;
    timer->invalidate();
  }
  static void exportMethods(MethodTable<Ticker>& table) {
    table.add<&Ticker::tick>("tick");
    table.add<&Ticker::tickOf>("tickOf:");
  }
  int ticks = 0;
};

TEST_F(NSTimerTest, SendsItsSelectorWithOrWithoutItself) {
  const Ref<Ticker> ticker = make<Ticker>();
  const Ref<NSTimer> plain = NSTimer::scheduledTimer(1, ticker, sel("tick"), true);
  const Ref<NSTimer> asked = NSTimer::scheduledTimer(1, ticker, sel("tickOf:"), true);
  RunLoop::advance(3);
  EXPECT_EQ(ticker->ticks, 4);
  EXPECT_FALSE(asked->isValid());
  plain->invalidate();
  EXPECT_EQ(ticker.use_count(), 1);
}

TEST(Date, TellsTheClockInSeveralForms) {
  const VirtualTime time(1714564800.25);
  EXPECT_EQ(Date::now().millisecondsSince1970(), 1714564800250);
  EXPECT_EQ(Date::now().iso8601(), "2024-05-01T12:00:00Z");
  EXPECT_EQ(Date(-1.5).millisecondsSince1970(), -1500);
  EXPECT_EQ(Date(-0.5).iso8601(), "1969-12-31T23:59:59Z");
  const Date later = Date::now().addingTimeInterval(2);
  RunLoop::advance(3);
  EXPECT_EQ(later.timeIntervalSinceNow(), -1);
}

TEST(Bundle, TellsWhatTheHostSaysOfItself) {
  Bundle& bundle = Bundle::main();
  EXPECT_EQ(bundle.bundleIdentifier(), std::nullopt);
  bundle.setInfoDictionary(
      JSONValue::object({{"CFBundleIdentifier", "example.tea"}, {"CFBundleShortVersionString", 3}}));
  EXPECT_EQ(bundle.bundleIdentifier(), "example.tea");
  EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleShortVersionString")->asString(), nullptr);
  bundle.setInfoDictionary("not an object");
  EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleIdentifier"), nullptr);
  EXPECT_EQ(bundle.pathForResource("no such picture.png"), std::nullopt);
}

}  // namespace
}  // namespace platform
