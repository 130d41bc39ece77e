#pragma once

#include <cmath>
#include <compare>
#include <cstdint>

namespace platform {

/// An instant or a length of time: `value` parts, of which `timescale` make a second. Without a timescale it is none at
/// all (`isValid`). A value; any thread.
struct CMTime {
  std::int64_t value = 0;
  std::int32_t timescale = 0;

  bool isValid() const { return timescale > 0; }
  /// 0 when it is none.
  double seconds() const { return isValid() ? static_cast<double>(value) / timescale : 0; }
  /// Halves of a second equal twice as many quarters. One that is none equals its like only, and comes first.
  friend std::strong_ordering operator<=>(const CMTime& a, const CMTime& b) {
    if (!a.isValid() || !b.isValid()) return a.isValid() <=> b.isValid();
    return static_cast<Wide>(a.value) * b.timescale <=> static_cast<Wide>(b.value) * a.timescale;
  }
  friend bool operator==(const CMTime& a, const CMTime& b) { return (a <=> b) == 0; }

 private:
  __extension__ using Wide = __int128;
};

inline constexpr CMTime kCMTimeInvalid{};
inline constexpr CMTime kCMTimeZero{0, 1};

constexpr CMTime CMTimeMake(std::int64_t value, std::int32_t timescale) { return {value, timescale}; }
/// Rounded to the timescale; none for what is no number or too large.
inline CMTime CMTimeMakeWithSeconds(double seconds, std::int32_t timescale) {
  const double parts = seconds * timescale;
  if (timescale <= 0 || !(std::fabs(parts) < 9e18)) return kCMTimeInvalid;
  return {std::llround(parts), timescale};
}
inline double CMTimeGetSeconds(const CMTime& time) { return time.seconds(); }

}  // namespace platform
