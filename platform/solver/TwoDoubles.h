#pragma once

#include <cmath>

namespace platform {

/// A number of about 32 decimal places, as the sum of two doubles of which the second is what the first lacks. Range
/// as that of a double. The sums and products are those of T. J. Dekker, "A Floating-Point Technique for Extending the
/// Available Precision", Numerische Mathematik 18, 1971.
class TwoDoubles {
 public:
  constexpr TwoDoubles(double value = 0) : high_(value) {}
  explicit operator double() const { return high_ + low_; }

  TwoDoubles operator-() const { return {-high_, -low_}; }
  friend TwoDoubles operator+(TwoDoubles a, TwoDoubles b) {
    const double sum = a.high_ + b.high_;
    const double part = sum - a.high_;
    const double lost = (a.high_ - (sum - part)) + (b.high_ - part);
    return normal(sum, lost + a.low_ + b.low_);
  }
  friend TwoDoubles operator-(TwoDoubles a, TwoDoubles b) { return a + -b; }
  friend TwoDoubles operator*(TwoDoubles a, TwoDoubles b) {
    const double product = a.high_ * b.high_;
    return normal(product, std::fma(a.high_, b.high_, -product) + (a.high_ * b.low_ + a.low_ * b.high_));
  }
  friend TwoDoubles operator/(TwoDoubles a, TwoDoubles b) {
    const double first = a.high_ / b.high_;
    const TwoDoubles rest = a - b * first;
    const double second = rest.high_ / b.high_;
    return normal(first, second) + (rest - b * second).high_ / b.high_;
  }
  TwoDoubles& operator+=(TwoDoubles other) { return *this = *this + other; }
  TwoDoubles& operator-=(TwoDoubles other) { return *this = *this - other; }
  TwoDoubles& operator*=(TwoDoubles other) { return *this = *this * other; }

  friend bool operator==(TwoDoubles a, TwoDoubles b) { return a.high_ == b.high_ && a.low_ == b.low_; }
  friend bool operator<(TwoDoubles a, TwoDoubles b) {
    return a.high_ < b.high_ || (a.high_ == b.high_ && a.low_ < b.low_);
  }
  friend bool operator>(TwoDoubles a, TwoDoubles b) { return b < a; }
  friend bool operator<=(TwoDoubles a, TwoDoubles b) { return a < b || a == b; }
  friend bool operator>=(TwoDoubles a, TwoDoubles b) { return b <= a; }
  friend TwoDoubles abs(TwoDoubles a) { return a.high_ < 0 ? -a : a; }

 private:
  constexpr TwoDoubles(double high, double low) : high_(high), low_(low) {}
  static TwoDoubles normal(double high, double low) {
    const double sum = high + low;
    return {sum, low - (sum - high)};
  }
  double high_;
  double low_ = 0;
};

}  // namespace platform
