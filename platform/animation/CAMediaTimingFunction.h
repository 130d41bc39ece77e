#pragma once

#include <string_view>

namespace platform {

inline constexpr std::string_view kCAMediaTimingFunctionLinear = "linear";
inline constexpr std::string_view kCAMediaTimingFunctionEaseIn = "easeIn";
inline constexpr std::string_view kCAMediaTimingFunctionEaseOut = "easeOut";
inline constexpr std::string_view kCAMediaTimingFunctionEaseInEaseOut = "easeInEaseOut";
inline constexpr std::string_view kCAMediaTimingFunctionDefault = "default";

/// The pace of an animation: how far it has come after a part of its time. A plain value; any thread.
class CAMediaTimingFunction {
 public:
  /// Linear.
  constexpr CAMediaTimingFunction() = default;
  /// A cubic from (0, 0) to (1, 1); the x of both control points is held within 0 and 1.
  CAMediaTimingFunction(double x1, double y1, double x2, double y2);
  /// One of the names above; linear for another.
  static CAMediaTimingFunction functionWithName(std::string_view name);
  /// A spring let go: damping ratio above 0 (1 and more does not swing), first speed in ways a duration. It has come to
  /// rest when the time is over.
  static CAMediaTimingFunction spring(double dampingRatio, double initialVelocity);

  /// `time` 0 to 1 (held within); exactly 0 at 0 and 1 at 1.
  double valueAt(double time) const;
  friend constexpr bool operator==(const CAMediaTimingFunction&, const CAMediaTimingFunction&) = default;

 private:
  enum class Kind { linear, cubic, spring };
  double springAt(double time) const;
  double cubicAt(double time) const;

  Kind kind_ = Kind::linear;
  double x1_ = 0, y1_ = 0, x2_ = 1, y2_ = 1;  // for a spring: damping ratio and velocity
};

}  // namespace platform
