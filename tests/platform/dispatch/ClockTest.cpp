#include <cmath>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

TEST(Clock, StandsStillInVirtualTimeUntilItIsAdvanced) {
  const VirtualTime time(1000000.0);
  EXPECT_TRUE(Clock::isVirtual());
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart);
  EXPECT_EQ(Clock::secondsSince1970(), 1000000.0);
  RunLoop::advance(2.5);
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart + 2.5);
  EXPECT_EQ(Clock::secondsSince1970(), 1000002.5);
}

TEST(Clock, IsRealAgainWhenVirtualTimeEnds) {
  { const VirtualTime time; }
  EXPECT_FALSE(Clock::isVirtual());
  const double before = Clock::mediaTime();
  EXPECT_GT(Clock::secondsSince1970(), 1.6e9);
  EXPECT_GE(Clock::mediaTime(), before);
}

TEST(Clock, SumsOfDecimalDelaysStayExact) {
  const VirtualTime time;
  for (int i = 0; i < 10; ++i) RunLoop::advance(0.1);
  EXPECT_EQ(CACurrentMediaTime(), Clock::virtualMediaTimeAtStart + 1.0);
}

TEST(Clock, TakesADelayThatIsNoneOrNegativeForNoneAtAll) {
  EXPECT_EQ(Clock::nanosecondsOf(-1), 0);
  EXPECT_EQ(Clock::nanosecondsOf(std::nan("")), 0);
  EXPECT_GT(Clock::nanosecondsOf(HUGE_VAL), Clock::nanosecondsOf(1e9));
  EXPECT_EQ(Clock::nanosecondsOf(0.3), 300'000'000);
}

TEST(VirtualTime, DropsAtItsEndWhatIsStillPending) {
  bool ran = false;
  const auto kept = std::make_shared<int>(1);
  {
    const VirtualTime time;
    DispatchQueue::main().async([&ran, kept] { ran = true; });
    DispatchQueue::main().asyncAfter(3600, [&ran, kept] { ran = true; });
    DispatchQueue::global().asyncAfter(3600, [&ran, kept] { ran = true; });
    DispatchQueue::global().async([&ran, kept] { DispatchQueue::main().async([&ran, kept] { ran = true; }); });
  }
  EXPECT_EQ(kept.use_count(), 1) << "work that nobody will run must not keep what it holds";
  const VirtualTime next;
  RunLoop::advance(7200);
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace platform
