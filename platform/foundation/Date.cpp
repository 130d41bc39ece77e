#include "platform/foundation/Date.h"

#include <cmath>
#include <ctime>

#include "platform/dispatch/Clock.h"

namespace platform {

Date Date::now() { return Date(Clock::secondsSince1970()); }

double Date::timeIntervalSinceNow() const { return seconds_ - Clock::secondsSince1970(); }

std::int64_t Date::millisecondsSince1970() const { return static_cast<std::int64_t>(std::floor(seconds_ * 1000)); }

std::string Date::iso8601() const {
  const auto whole = static_cast<std::time_t>(std::floor(seconds_));
  std::tm parts{};
  ::gmtime_r(&whole, &parts);
  char text[64];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

}  // namespace platform
