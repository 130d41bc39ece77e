#pragma once

#include <cstdint>

namespace platform {

/// The only source of time: queues, timers and animations all read it. Real in an application; virtual in a test, where
/// it stands still until `RunLoop::advance` moves it. Any thread reads it; the kind is switched on the main thread.
class Clock {
 public:
  /// 1 May 2024, 12:00:00 UTC: the instant at which virtual time starts unless told otherwise.
  static constexpr double defaultVirtualStart = 1714564800.0;
  /// What `mediaTime` tells when virtual time starts: not zero, so that an unset instant is never mistaken for it.
  static constexpr double virtualMediaTimeAtStart = 1000.0;

  /// Seconds that only grow, from no particular start.
  static double mediaTime();
  static double secondsSince1970();

  static void useVirtualTime(double startSecondsSince1970 = defaultVirtualStart);
  static void useRealTime();
  static bool isVirtual();

  /// Media time in whole nanoseconds, which is how work is ordered: sums of decimal delays stay exact.
  static std::int64_t nanoseconds();
  /// A delay in nanoseconds: never negative, and bounded (a delay that is no number is none at all).
  static std::int64_t nanosecondsOf(double seconds);

 private:
  friend class RunLoop;
  static void moveVirtualTimeTo(std::int64_t nanoseconds);
};

/// The same seconds as `Clock::mediaTime`.
double CACurrentMediaTime();

/// Virtual time for the life of this object, which is how a test holds it. At its end background work is waited for,
/// whatever is still pending on any queue is dropped, and time is real again. Main thread.
class VirtualTime {
 public:
  explicit VirtualTime(double startSecondsSince1970 = Clock::defaultVirtualStart);
  ~VirtualTime();
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;
};

}  // namespace platform
