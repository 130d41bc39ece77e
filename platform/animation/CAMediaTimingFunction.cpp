#include "platform/animation/CAMediaTimingFunction.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

double cubic(double p1, double p2, double t) {
  const double s = 1 - t;
  return 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t;
}

/// Natural frequency at which a spring of that damping has come to rest within a thousandth after one unit of time.
double frequencyOf(double damping) {
  constexpr double rest = 6.9;  // e^-6.9 is a thousandth
  return damping < 1 ? rest / damping : rest * (damping + std::sqrt(damping * damping - 1));
}

}  // namespace

CAMediaTimingFunction::CAMediaTimingFunction(double x1, double y1, double x2, double y2)
    : kind_(Kind::cubic), x1_(std::clamp(x1, 0.0, 1.0)), y1_(y1), x2_(std::clamp(x2, 0.0, 1.0)), y2_(y2) {}

CAMediaTimingFunction CAMediaTimingFunction::functionWithName(std::string_view name) {
  if (name == kCAMediaTimingFunctionEaseIn) return {0.42, 0, 1, 1};
  if (name == kCAMediaTimingFunctionEaseOut) return {0, 0, 0.58, 1};
  if (name == kCAMediaTimingFunctionEaseInEaseOut) return {0.42, 0, 0.58, 1};
  if (name == kCAMediaTimingFunctionDefault) return {0.25, 0.1, 0.25, 1};
  return {};
}

CAMediaTimingFunction CAMediaTimingFunction::spring(double dampingRatio, double initialVelocity) {
  CAMediaTimingFunction function;
  function.kind_ = Kind::spring;
  function.x1_ = std::isfinite(dampingRatio) ? std::clamp(dampingRatio, 0.05, 10.0) : 1;
  function.y1_ = std::isfinite(initialVelocity) ? initialVelocity : 0;
  return function;
}

double CAMediaTimingFunction::valueAt(double time) const {
  if (!(time > 0)) return 0;
  if (time >= 1) return 1;
  switch (kind_) {
    case Kind::cubic:
      return cubicAt(time);
    case Kind::spring:
      return springAt(time);
    case Kind::linear:
      break;
  }
  return time;
}

double CAMediaTimingFunction::cubicAt(double time) const {
  // x grows with the parameter, so halving always finds it.
  double low = 0, high = 1;
  for (int i = 0; i < 40; ++i) {
    const double middle = (low + high) / 2;
    (cubic(x1_, x2_, middle) < time ? low : high) = middle;
  }
  return cubic(y1_, y2_, (low + high) / 2);
}

double CAMediaTimingFunction::springAt(double time) const {
  const double damping = x1_, velocity = y1_;
  const double frequency = frequencyOf(damping);
  // The distance still to go starts at 1 and changes at -velocity.
  const auto distance = [&](double t) {
    const double decay = damping * frequency;
    if (damping < 1) {
      const double swing = frequency * std::sqrt(1 - damping * damping);
      return std::exp(-decay * t) * (std::cos(swing * t) + (decay - velocity) / swing * std::sin(swing * t));
    }
    if (damping == 1) return std::exp(-frequency * t) * (1 + (frequency - velocity) * t);
    const double root = frequency * std::sqrt(damping * damping - 1);
    const double slow = -decay + root, fast = -decay - root;
    const double part = (-velocity - fast) / (slow - fast);
    return part * std::exp(slow * t) + (1 - part) * std::exp(fast * t);
  };
  // The little that is left at the end is spread over the whole time, so that it ends exactly there.
  return 1 - (distance(time) - distance(1) * time);
}

}  // namespace platform
