#include <atomic>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchGroup.h"
#include "platform/dispatch/RunLoop.h"

namespace platform {
namespace {

TEST(DispatchGroup, TellsOnceWhenTheLastOneHasLeft) {
  const VirtualTime time;
  const DispatchGroup group;
  int told = 0;
  group.enter();
  group.enter();
  group.notify(DispatchQueue::main(), [&] { ++told; });
  group.leave();
  RunLoop::settle();
  EXPECT_EQ(told, 0);
  group.leave();
  EXPECT_EQ(told, 0) << "the notice goes through its queue";
  RunLoop::settle();
  EXPECT_EQ(told, 1);
  group.enter();
  group.leave();
  RunLoop::settle();
  EXPECT_EQ(told, 1);
}

TEST(DispatchGroup, TellsAnEmptyGroupAtOnce) {
  const VirtualTime time;
  bool told = false;
  DispatchGroup().notify(DispatchQueue::main(), [&] { told = true; });
  RunLoop::settle();
  EXPECT_TRUE(told);
}

TEST(DispatchGroup, JoinsWorkOfSeveralQueues) {
  const VirtualTime time;
  const DispatchGroup group;
  std::atomic<int> done{0};
  int seen = -1;
  for (int i = 0; i < 50; ++i) group.async(DispatchQueue::global(), [&] { ++done; });
  for (int i = 0; i < 50; ++i) group.async(DispatchQueue::main(), [&] { ++done; });
  group.notify(DispatchQueue::main(), [&] { seen = done; });
  RunLoop::settle();
  EXPECT_EQ(seen, 100);
}

TEST(DispatchGroupDeath, DiesOfLeavingMoreOftenThanEntering) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const DispatchGroup group;
  group.enter();
  group.leave();
  EXPECT_DEATH(group.leave(), "fatal error: DispatchGroup: leave without enter");
}

}  // namespace
}  // namespace platform
