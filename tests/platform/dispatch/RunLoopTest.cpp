#include <atomic>
#include <thread>

#include "platform/dispatch/BackgroundActivity.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

using testing::ElementsAre;

TEST(RunLoop, StopsAdvancingAtTheInstantThePredicateHolds) {
  const VirtualTime time;
  bool isOpen = false;
  bool isClosed = false;
  DispatchQueue::main().asyncAfter(1.25, [&] { isOpen = true; });
  DispatchQueue::main().asyncAfter(1.25, [&] { isClosed = true; });
  EXPECT_TRUE(RunLoop::advanceUntil([&] { return isOpen; }, 10));
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart + 1.25);
  EXPECT_FALSE(isClosed);
  EXPECT_FALSE(RunLoop::advanceUntil([] { return false; }, 10));
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart + 11.25);
  EXPECT_TRUE(isClosed);
}

TEST(RunLoop, SeesAPredicateThatBackgroundWorkFulfils) {
  const VirtualTime time;
  std::atomic<bool> isDone{false};
  DispatchQueue::global().asyncAfter(1, [&] { isDone = true; });
  EXPECT_TRUE(RunLoop::advanceUntil([&] { return isDone.load(); }, 5));
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart + 1);
}

TEST(RunLoop, WaitsForActivityThatIsHeldElsewhere) {
  const VirtualTime time;
  double arrival = 0;
  std::thread device([&, activity = BackgroundActivity("device")]() mutable {
    for (int i = 0; i < 2000; ++i) std::this_thread::yield();  // longer than the main thread takes to begin waiting
    DispatchQueue::main().async([&] { arrival = CACurrentMediaTime(); });
    activity.end();
  });
  RunLoop::advance(1000);
  device.join();
  EXPECT_EQ(arrival, Clock::virtualMediaTimeAtStart);
  EXPECT_EQ(BackgroundActivity::count(), 0U);
}

TEST(RunLoop, NeverGoesBackWhenWorkAdvancesTimeItself) {
  const VirtualTime time;
  DispatchQueue::main().async([] { RunLoop::advance(5); });
  RunLoop::advance(1);
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart + 5);
}

TEST(RunLoop, RunsTurnObserversWhenAnInstantIsOverAndWhatTheyPostAtThatInstant) {
  const VirtualTime time;
  std::vector<std::string> log;
  const std::uint64_t observer = RunLoop::main().addTurnObserver([&] {
    if (!log.empty() && log.back() == "work") DispatchQueue::main().async([&] { log.push_back("laid out"); });
  });
  DispatchQueue::main().asyncAfter(1, [&] { log.push_back("work"); });
  DispatchQueue::main().asyncAfter(2, [&] { log.push_back("later"); });
  RunLoop::advance(3);
  RunLoop::main().removeTurnObserver(observer);
  EXPECT_THAT(log, ElementsAre("work", "laid out", "later"));
}

TEST(RunLoop, LeavesWorkPostedWhileDrainingToTheNextTurn) {
  const VirtualTime time;
  std::vector<int> log;
  DispatchQueue::main().async([&] {
    log.push_back(1);
    DispatchQueue::main().async([&] { log.push_back(2); });
  });
  RunLoop::main().drainDueWork();
  EXPECT_THAT(log, ElementsAre(1));
  EXPECT_EQ(RunLoop::main().timeUntilNextWork(), 0);
  RunLoop::main().drainDueWork();
  EXPECT_THAT(log, ElementsAre(1, 2));
  EXPECT_EQ(RunLoop::main().timeUntilNextWork(), std::nullopt);
  DispatchQueue::main().asyncAfter(0.5, [] {});
  EXPECT_EQ(RunLoop::main().timeUntilNextWork(), 0.5);
}

TEST(RunLoop, WakesTheEngineForWorkThatComesFirst) {
  const VirtualTime time;
  int wakes = 0;
  RunLoop::main().setWakeUp([&] { ++wakes; });
  DispatchQueue::main().asyncAfter(5, [] {});
  EXPECT_EQ(wakes, 1);
  DispatchQueue::main().asyncAfter(9, [] {});
  EXPECT_EQ(wakes, 1) << "the engine wakes for the first one anyway";
  DispatchQueue::main().async([] {});
  EXPECT_EQ(wakes, 2);
  RunLoop::main().setWakeUp(nullptr);
}

TEST(RunLoop, RunsInRealTimeUntilItIsStopped) {
  std::vector<std::string> log;
  std::thread other([&] { DispatchQueue::main().async([&] { log.push_back("from another thread"); }); });
  DispatchQueue::main().asyncAfter(0.02, [&] {
    log.push_back("delayed");
    DispatchQueue::serial("timed").asyncAfter(0.02, [] { RunLoop::main().stop(); });
  });
  const double start = Clock::mediaTime();
  RunLoop::main().run();
  other.join();
  EXPECT_THAT(log, ElementsAre("from another thread", "delayed"));
  EXPECT_GE(Clock::mediaTime() - start, 0.04);
}

TEST(RunLoop, AdvancesInRealTimeByTurningTheLoopForThatLong) {
  bool ran = false;
  DispatchQueue::main().asyncAfter(0.01, [&] { ran = true; });
  RunLoop::advance(0.02);
  EXPECT_TRUE(ran);
}

TEST(RunLoopDeath, DiesOfMainWorkThatNeverLetsTimePass) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  std::function<void()> again = [&] { DispatchQueue::main().async(again); };
  EXPECT_DEATH(
      {
        const VirtualTime time;
        again();
        RunLoop::advance(1);
      },
      "fatal error: the main queue does not come to rest");
}

TEST(RunLoopDeath, DiesOfBackgroundWorkThatNeverLetsTimePass) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        const VirtualTime time;
        const DispatchQueue queue = DispatchQueue::serial("endless");
        std::function<void()> again = [&] { queue.async(again); };
        again();
        RunLoop::advance(1);
      },
      "fatal error: a background queue does not come to rest");
}

}  // namespace
}  // namespace platform
