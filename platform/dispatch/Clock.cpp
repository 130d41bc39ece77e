#include "platform/dispatch/Clock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/Scheduler.h"

namespace platform {

namespace {

constexpr double nanosecondsInSecond = 1e9;
constexpr auto virtualStart = static_cast<std::int64_t>(Clock::virtualMediaTimeAtStart * nanosecondsInSecond);

std::atomic<bool> timeIsVirtual{false};
std::atomic<std::int64_t> virtualNow{virtualStart};
std::atomic<double> virtualEpoch{Clock::defaultVirtualStart};

std::int64_t steadyNow() {
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count();
}

}  // namespace

std::int64_t Clock::nanoseconds() { return isVirtual() ? virtualNow.load(std::memory_order_acquire) : steadyNow(); }

double Clock::mediaTime() { return static_cast<double>(nanoseconds()) / nanosecondsInSecond; }

double Clock::secondsSince1970() {
  if (isVirtual()) {
    const std::int64_t passed = virtualNow.load(std::memory_order_acquire) - virtualStart;
    return virtualEpoch.load(std::memory_order_relaxed) + static_cast<double>(passed) / nanosecondsInSecond;
  }
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

bool Clock::isVirtual() { return timeIsVirtual.load(std::memory_order_acquire); }

void Clock::useVirtualTime(double startSecondsSince1970) {
  assertMainThread("Clock::useVirtualTime");
  const std::int64_t before = nanoseconds();
  virtualEpoch.store(startSecondsSince1970, std::memory_order_relaxed);
  virtualNow.store(virtualStart, std::memory_order_release);
  timeIsVirtual.store(true, std::memory_order_release);
  Scheduler::shared().rebase(virtualStart - before);
}

void Clock::useRealTime() {
  assertMainThread("Clock::useRealTime");
  if (!isVirtual()) return;
  const std::int64_t before = nanoseconds();
  timeIsVirtual.store(false, std::memory_order_release);
  Scheduler::shared().rebase(nanoseconds() - before);
}

std::int64_t Clock::nanosecondsOf(double seconds) {
  constexpr double longest = 100.0 * 365 * 24 * 3600;
  if (!(seconds > 0)) return 0;
  return static_cast<std::int64_t>(std::llround(std::min(seconds, longest) * nanosecondsInSecond));
}

void Clock::moveVirtualTimeTo(std::int64_t nanoseconds) { virtualNow.store(nanoseconds, std::memory_order_release); }

double CACurrentMediaTime() { return Clock::mediaTime(); }

VirtualTime::VirtualTime(double startSecondsSince1970) { Clock::useVirtualTime(startSecondsSince1970); }

VirtualTime::~VirtualTime() {
  RunLoop::dropEverything();
  Clock::useRealTime();
}

}  // namespace platform
