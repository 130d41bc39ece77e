#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Date.h"

namespace teashop {

/// When an order may come: days as "2030-12-24", in UTC, and times of a day.
namespace deliveryTime {

/// Midnight of the day that the text names; none for a text that names no day of the calendar.
std::optional<platform::Date> dayFromText(std::string_view text);
/// "2030-12-24"
std::string textOfDay(platform::Date day);
/// "Tuesday, 24 December 2030"
std::string dayInWords(platform::Date day);
/// The first day on which an order can come: the one after tomorrow.
platform::Date firstDay();

/// "Morning", "Afternoon", "Evening"
const std::vector<std::string>& timesOfDay();
/// What to do when nobody opens at once.
const std::vector<std::string>& handovers();

}  // namespace deliveryTime

}  // namespace teashop
