#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace platform {

/// An instant, counted in seconds since 1970.
class Date {
 public:
  constexpr explicit Date(double secondsSince1970) : seconds_(secondsSince1970) {}
  /// The clock's present instant.
  static Date now();

  constexpr double timeIntervalSince1970() const { return seconds_; }
  double timeIntervalSinceNow() const;
  constexpr Date addingTimeInterval(double seconds) const { return Date(seconds_ + seconds); }
  /// Whole milliseconds, rounded down.
  std::int64_t millisecondsSince1970() const;
  /// "2024-05-01T12:00:00Z", in UTC, whole seconds.
  std::string iso8601() const;
  friend constexpr auto operator<=>(const Date&, const Date&) = default;

 private:
  double seconds_;
};

}  // namespace platform
