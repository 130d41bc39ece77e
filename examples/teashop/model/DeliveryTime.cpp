#include "examples/teashop/model/DeliveryTime.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace teashop {

using platform::Date;

namespace {

constexpr double secondsOfDay = 86400;

std::chrono::sys_days daysOf(Date date) {
  return std::chrono::sys_days(std::chrono::days(std::lround(std::floor(date.timeIntervalSince1970() / secondsOfDay))));
}

std::optional<int> number(std::string_view digits) {
  int value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return error == std::errc() && end == digits.data() + digits.size() ? std::optional(value) : std::nullopt;
}

}  // namespace

std::optional<Date> deliveryTime::dayFromText(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = number(text.substr(0, 4));
  const auto month = number(text.substr(5, 2));
  const auto day = number(text.substr(8, 2));
  if (!year || !month || !day || *month < 1 || *day < 1) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  return Date(static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count()) * secondsOfDay);
}

std::string deliveryTime::textOfDay(Date day) { return day.iso8601().substr(0, 10); }

std::string deliveryTime::dayInWords(Date day) {
  static constexpr const char* weekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                             "Thursday", "Friday", "Saturday"};
  static constexpr const char* months[] = {"January", "February", "March",     "April",   "May",      "June",
                                           "July",    "August",   "September", "October", "November", "December"};
  const std::chrono::sys_days days = daysOf(day);
  const std::chrono::year_month_day date(days);
  return std::string(weekdays[std::chrono::weekday(days).c_encoding()]) + ", " +
         std::to_string(static_cast<unsigned>(date.day())) + ' ' + months[static_cast<unsigned>(date.month()) - 1] +
         ' ' + std::to_string(static_cast<int>(date.year()));
}

Date deliveryTime::firstDay() {
  const double today = std::floor(Date::now().timeIntervalSince1970() / secondsOfDay);
  return Date((today + 2) * secondsOfDay);
}

const std::vector<std::string>& deliveryTime::timesOfDay() {
  static const std::vector<std::string> times = {"Morning", "Afternoon", "Evening"};
  return times;
}

const std::vector<std::string>& deliveryTime::handovers() {
  static const std::vector<std::string> handovers = {"ring the bell", "leave at the door", "at a neighbour"};
  return handovers;
}

}  // namespace teashop
