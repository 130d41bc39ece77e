#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>

#include "platform/dispatch/BackgroundActivity.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

using testing::ElementsAre;

class DispatchQueueTest : public testing::Test {
 protected:
  /// Work that writes a word down.
  std::function<void()> say(const std::string& word) {
    return [this, word] { log_.push_back(word); };
  }
  const VirtualTime time_;
  const DispatchQueue main_ = DispatchQueue::main();
  std::vector<std::string> log_;
};

TEST_F(DispatchQueueTest, RunsWorkDueAtTheSameInstantInTheOrderItWasScheduled) {
  main_.asyncAfter(0.020, say("first"));
  main_.asyncAfter(0.010, say("early"));
  main_.asyncAfter(0.020, say("second"));
  main_.async(say("now"));
  EXPECT_THAT(log_, ElementsAre()) << "sending work runs nothing";
  RunLoop::advance(0.020);
  EXPECT_THAT(log_, ElementsAre("now", "early", "first", "second"));
}

TEST_F(DispatchQueueTest, RunsEachPieceAtItsOwnInstant) {
  std::vector<double> instants;
  const auto note = [&] { instants.push_back(CACurrentMediaTime() - Clock::virtualMediaTimeAtStart); };
  main_.asyncAfter(1.5, [&] {
    note();
    main_.asyncAfter(0.5, note);
  });
  main_.asyncAfter(3, note);
  RunLoop::advance(2.5);
  EXPECT_THAT(instants, ElementsAre(1.5, 2.0));
  RunLoop::advance(0.5);
  EXPECT_THAT(instants, ElementsAre(1.5, 2.0, 3.0));
}

TEST_F(DispatchQueueTest, PutsWorkPostedByWorkBehindWhatWaitsAtThatInstant) {
  main_.asyncAfter(1, [&] {
    log_.push_back("a");
    main_.async(say("posted"));
  });
  main_.asyncAfter(1, say("b"));
  RunLoop::advance(1);
  EXPECT_THAT(log_, ElementsAre("a", "b", "posted"));
}

TEST_F(DispatchQueueTest, DoesNotRunWorkThatWasCancelledAndLetsItGo) {
  const auto held = std::make_shared<int>(1);
  const Ref<DispatchWorkItem> item = main_.asyncAfter(1, [this, held] { log_.push_back("never"); });
  item->cancel();
  EXPECT_TRUE(item->isCancelled());
  EXPECT_EQ(held.use_count(), 1);
  RunLoop::advance(2);
  EXPECT_THAT(log_, ElementsAre());
}

TEST_F(DispatchQueueTest, LetsWorkCancelItself) {
  Ref<DispatchWorkItem> item;
  item = main_.asyncAfter(1, [&] {
    item->cancel();
    log_.push_back("ran to its end");
  });
  RunLoop::advance(1);
  EXPECT_THAT(log_, ElementsAre("ran to its end"));
}

/// Does the work on a background thread after so many others: slower than the main thread gets to waiting.
void afterHops(int hops, std::function<void()> work) {
  DispatchQueue::global().async([hops, work = std::move(work)] {
    if (hops > 0) return afterHops(hops - 1, work);
    work();
  });
}

TEST_F(DispatchQueueTest, SettlesHopsToTheBackgroundAndBackWithoutTimePassing) {
  DispatchQueue::global(QOS::userInteractive).async([&] {
    EXPECT_FALSE(isMainThread());
    afterHops(200, [&] {
      main_.async([&] {
        EXPECT_TRUE(isMainThread());
        log_.push_back("back");
      });
    });
  });
  RunLoop::settle();
  EXPECT_THAT(log_, ElementsAre("back"));
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart);
}

TEST_F(DispatchQueueTest, KeepsTimeStillWhileBackgroundWorkIsUnderWay) {
  double arrival = 0;
  main_.asyncAfter(1, [&] { afterHops(200, [&] { main_.async([&] { arrival = CACurrentMediaTime(); }); }); });
  RunLoop::advance(100);
  EXPECT_EQ(arrival, Clock::virtualMediaTimeAtStart + 1);
}

TEST_F(DispatchQueueTest, LetsBackgroundWorkWaitForTheMainQueue) {
  DispatchQueue::global().async([&] {
    std::mutex mutex;
    std::condition_variable answered;
    bool isAnswered = false;
    main_.async([&] {
      const std::lock_guard lock(mutex);
      isAnswered = true;
      answered.notify_one();
    });
    std::unique_lock lock(mutex);
    answered.wait(lock, [&] { return isAnswered; });
  });
  RunLoop::settle();
  EXPECT_EQ(BackgroundActivity::count(), 0U);
}

TEST_F(DispatchQueueTest, RunsDelayedBackgroundWorkByTheSameClock) {
  const DispatchQueue serial = DispatchQueue::serial("delayed");
  double instant = 0;
  serial.asyncAfter(2, [&] { instant = CACurrentMediaTime(); });
  RunLoop::advance(1.9);
  EXPECT_EQ(instant, 0);
  RunLoop::advance(0.2);
  EXPECT_EQ(instant, Clock::virtualMediaTimeAtStart + 2);
}

TEST_F(DispatchQueueTest, RunsSerialWorkInOrderAndNeverTwoAtATime) {
  const DispatchQueue serial = DispatchQueue::serial("ordered");
  std::vector<int> order;  // unguarded on purpose: the queue is the guard
  std::atomic<int> inside{0};
  std::atomic<bool> overlapped{false};
  for (int i = 0; i < 500; ++i) {
    serial.async([&, i] {
      if (inside.fetch_add(1) != 0) overlapped = true;
      order.push_back(i);
      inside.fetch_sub(1);
    });
  }
  RunLoop::settle();
  EXPECT_FALSE(overlapped);
  ASSERT_EQ(order.size(), 500U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(DispatchQueueTest, RunsGlobalWorkOnSeveralThreadsAtOnce) {
  std::mutex mutex;
  std::condition_variable met;
  int inside = 0;
  for (int i = 0; i < 2; ++i) {
    DispatchQueue::global().async([&] {
      std::unique_lock lock(mutex);
      ++inside;
      met.notify_all();
      met.wait(lock, [&] { return inside == 2; });  // would wait for ever on one thread
    });
  }
  RunLoop::settle();
  EXPECT_EQ(inside, 2);
}

TEST_F(DispatchQueueTest, ComparesByTheQueueThatIsMeant) {
  EXPECT_TRUE(DispatchQueue::main() == main_);
  EXPECT_TRUE(main_.isMain());
  EXPECT_FALSE(DispatchQueue::serial("a") == DispatchQueue::serial("a"));
  EXPECT_EQ(DispatchQueue::serial("a").label(), "a");
}

TEST(DispatchQueueDeath, AssertsTheMainThreadByName) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto callElsewhere = [] { std::thread([] { assertMainThread("CartScreen::show"); }).join(); };
  EXPECT_DEATH(callElsewhere(), "fatal error: CartScreen::show was called off the main thread");
}

}  // namespace
}  // namespace platform
