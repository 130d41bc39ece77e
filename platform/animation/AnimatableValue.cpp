#include "platform/animation/AnimatableValue.h"

#include <type_traits>

#include "platform/animation/TransformParts.h"

namespace platform {

namespace {

// a + b * times, for every type that has a sum.
double sum(double a, double b, double times) { return a + b * times; }
CGPoint sum(CGPoint a, CGPoint b, double times) { return a + b * times; }
CGSize sum(CGSize a, CGSize b, double times) { return {a.width + b.width * times, a.height + b.height * times}; }
CGRect sum(const CGRect& a, const CGRect& b, double times) {
  return {sum(a.origin, b.origin, times), sum(a.size, b.size, times)};
}
UIColor sum(const UIColor& a, const UIColor& b, double times) {
  return {a.red() + b.red() * times, a.green() + b.green() * times, a.blue() + b.blue() * times,
          a.alpha() + b.alpha() * times};
}

template <class T>
constexpr bool hasSum = requires(const T& value) {
  sum(value, value, 1.0);
};

CGPath mixed(const CGPath& a, const CGPath& b, double fraction) { return a.blendedTo(b, fraction); }
CGAffineTransform mixed(const CGAffineTransform& a, const CGAffineTransform& b, double fraction) {
  return TransformParts(a).mixedWith(TransformParts(b), fraction).transform();
}
template <class T>
T mixed(const T& a, const T& b, double fraction) {
  return sum(a, sum(b, a, -1), fraction);
}

}  // namespace

AnimatableValue blend(const AnimatableValue& from, const AnimatableValue& to, double fraction) {
  return std::visit(
      [&]<class T>(const T& end) -> AnimatableValue {
        if constexpr (!std::is_same_v<T, std::monostate>) {
          if (const T* const start = std::get_if<T>(&from)) return mixed(*start, end, fraction);
        }
        return to;
      },
      to);
}

AnimatableValue accumulate(const AnimatableValue& value, const AnimatableValue& difference, double times) {
  return std::visit(
      [&]<class T>(const T& start) -> AnimatableValue {
        if constexpr (hasSum<T>) {
          if (const T* const step = std::get_if<T>(&difference)) return sum(start, *step, times);
        }
        return value;
      },
      value);
}

AnimatableValue difference(const AnimatableValue& from, const AnimatableValue& to) {
  return std::visit(
      [&]<class T>(const T& end) -> AnimatableValue {
        if constexpr (hasSum<T>) {
          if (const T* const start = std::get_if<T>(&from)) return sum(end, *start, -1);
        }
        return {};
      },
      to);
}

}  // namespace platform
