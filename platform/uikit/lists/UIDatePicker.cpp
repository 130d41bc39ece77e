#include "platform/uikit/lists/UIDatePicker.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "platform/uikit/lists/_UIDatePickerView.h"

namespace platform {

namespace {

using namespace std::chrono;

constexpr std::int64_t secondsADay = 86400;
/// From the beginning of 1740 to the end of 2199: as many days before 1970 as after it.
constexpr std::int64_t firstYear = 1740;
constexpr std::int64_t years = 460;
constexpr std::int64_t daysEitherSide = 84006;
constexpr double bound = static_cast<double>(daysEitherSide) * secondsADay;

constexpr std::array<const char*, 12> months{"January", "February", "March",     "April",   "May",      "June",
                                             "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<const char*, 7> weekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

/// A date taken apart, in UTC.
struct Parts {
  std::int64_t day;      ///< since 1970
  std::int64_t seconds;  ///< of that day
  year_month_day calendar;
};

Parts partsOf(Date date) {
  const auto whole = static_cast<std::int64_t>(std::floor(date.timeIntervalSince1970()));
  const std::int64_t day = whole >= 0 ? whole / secondsADay : -((-whole + secondsADay - 1) / secondsADay);
  return {day, whole - day * secondsADay, year_month_day(sys_days(days(day)))};
}

std::int64_t daysIn(year_month month) {
  return static_cast<std::int64_t>(
      static_cast<unsigned>(year_month_day_last(month.year(), month_day_last(month.month())).day()));
}

std::optional<Date> finite(std::optional<Date> date) {
  return date && std::isfinite(date->timeIntervalSince1970()) ? date : std::nullopt;
}

std::string twoDigits(std::int64_t value) { return (value < 10 ? "0" : "") + std::to_string(value); }

}  // namespace

void UIDatePicker::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  date_ = Date::now();
  wheels_ = make<_UIDatePickerView>(bounds());
  wheels_->setDataSource(self());
  wheels_->setDelegate(self());
  addSubview(wheels_);
  setDate(date_);
}

void UIDatePicker::exportMethods(MethodTable<UIDatePicker>& table) {
  table.add<&UIDatePicker::componentCount>("numberOfComponentsInPickerView:");
  table.add<&UIDatePicker::rowCount>("pickerView:numberOfRowsInComponent:");
  table.add<&UIDatePicker::rowTitle>("pickerView:titleForRow:forComponent:");
  table.add<&UIDatePicker::componentWidth>("pickerView:widthForComponent:");
  table.add<&UIDatePicker::didSelect>("pickerView:didSelectRow:inComponent:");
}

Date UIDatePicker::held(Date date) const {
  const double since = date.timeIntervalSince1970();
  if (!std::isfinite(since)) return date_;
  if (maximum_ && date > *maximum_) date = *maximum_;
  if (minimum_ && date < *minimum_) date = *minimum_;
  return Date(std::clamp(date.timeIntervalSince1970(), -bound, bound - 1));
}

void UIDatePicker::setDate(Date date, bool animated) {
  date_ = held(date);
  showDate([&](std::int64_t row, std::int64_t component) { wheels_->selectRow(row, component, animated); });
}

void UIDatePicker::setDatePickerMode(UIDatePickerMode mode) {
  if (mode_ == mode) return;
  mode_ = mode;
  wheels_->reloadAllComponents();
  setDate(date_);
}

void UIDatePicker::setMinimumDate(std::optional<Date> date) {
  minimum_ = finite(date);
  setDate(date_);
}

void UIDatePicker::setMaximumDate(std::optional<Date> date) {
  maximum_ = finite(date);
  setDate(date_);
}

// ---- The wheels

std::int64_t UIDatePicker::componentCount(const Ref<NSObject>&) { return mode_ == UIDatePickerMode::time ? 2 : 3; }

std::int64_t UIDatePicker::rowCount(const Ref<NSObject>&, std::int64_t component) {
  switch (mode_) {
    case UIDatePickerMode::time:
      return component == 0 ? 24 : 60;
    case UIDatePickerMode::date:
      return std::array<std::int64_t, 3>{31, 12, years}[static_cast<std::size_t>(component)];
    case UIDatePickerMode::dateAndTime:
      return std::array<std::int64_t, 3>{2 * daysEitherSide, 24, 60}[static_cast<std::size_t>(component)];
  }
  return 0;
}

std::string UIDatePicker::rowTitle(const Ref<NSObject>&, std::int64_t row, std::int64_t component) {
  if (mode_ == UIDatePickerMode::time) return twoDigits(row);
  if (mode_ == UIDatePickerMode::date) {
    if (component == 0) return std::to_string(row + 1);
    if (component == 1) return months[static_cast<std::size_t>(row)];
    return std::to_string(firstYear + row);
  }
  if (component > 0) return twoDigits(row);
  const sys_days at{days(row - daysEitherSide)};
  const year_month_day calendar(at);
  const std::string month = months[static_cast<unsigned>(calendar.month()) - 1];
  return std::string(weekdays[weekday(at).c_encoding()]) + " " + std::to_string(static_cast<unsigned>(calendar.day())) +
         " " + month.substr(0, 3);
}

double UIDatePicker::componentWidth(const Ref<NSObject>&, std::int64_t component) {
  if (mode_ == UIDatePickerMode::time) return 64;
  if (mode_ == UIDatePickerMode::date) {
    return std::array<double, 3>{56, 136, 84}[static_cast<std::size_t>(component)];
  }
  return component == 0 ? 150 : 60;
}

void UIDatePicker::showDate(const std::function<void(std::int64_t row, std::int64_t component)>& show) {
  const Parts parts = partsOf(date_);
  const std::int64_t hour = parts.seconds / 3600;
  const std::int64_t minute = parts.seconds / 60 % 60;
  switch (mode_) {
    case UIDatePickerMode::time:
      show(hour, 0);
      show(minute, 1);
      break;
    case UIDatePickerMode::date:
      show(static_cast<unsigned>(parts.calendar.day()) - 1, 0);
      show(static_cast<unsigned>(parts.calendar.month()) - 1, 1);
      show(static_cast<int>(parts.calendar.year()) - firstYear, 2);
      break;
    case UIDatePickerMode::dateAndTime:
      show(parts.day + daysEitherSide, 0);
      show(hour, 1);
      show(minute, 2);
      break;
  }
}

void UIDatePicker::didSelect(const Ref<NSObject>&, std::int64_t, std::int64_t) {
  if (!isEnabled()) return setDate(date_);  // a finger was still on it when it was switched off
  const Parts parts = partsOf(date_);
  const auto row = [this](std::int64_t component) { return wheels_->selectedRowInComponent(component); };
  std::int64_t day = parts.day;
  std::int64_t seconds = parts.seconds;
  if (mode_ == UIDatePickerMode::time) {
    seconds = row(0) * 3600 + row(1) * 60;
  } else if (mode_ == UIDatePickerMode::dateAndTime) {
    day = row(0) - daysEitherSide;
    seconds = row(1) * 3600 + row(2) * 60;
  } else {
    const year_month chosen(year(static_cast<int>(firstYear + row(2))), month(static_cast<unsigned>(row(1) + 1)));
    const std::int64_t inMonth = std::min(row(0) + 1, daysIn(chosen));  // the 31st of a short month is its last day
    day = sys_days(chosen / std::chrono::day(static_cast<unsigned>(inMonth))).time_since_epoch().count();
  }
  date_ = held(Date(static_cast<double>(day * secondsADay + seconds)));
  // Wheels that say something else are set right; one that still turns will tell by itself what it came to.
  showDate([this](std::int64_t right, std::int64_t component) {
    if (wheels_->selectedRowInComponent(component) == right || wheels_->isTurning(component)) return;
    wheels_->selectRow(right, component, true);
  });
  sendActionsForControlEvents(UIControlEvents::valueChanged);
}

// ---- Look

CGSize UIDatePicker::intrinsicContentSize() const { return {320, 216}; }
CGSize UIDatePicker::sizeThatFits(CGSize) const { return intrinsicContentSize(); }

void UIDatePicker::layoutSubviews() {
  Super::layoutSubviews();
  wheels_->setFrame(bounds());
}

void UIDatePicker::stateDidChange() {
  Super::stateDidChange();
  wheels_->setUserInteractionEnabled(isEnabled());
  if (!isEnabled()) setDate(date_);  // wheels that still turn are stopped
  wheels_->setAlpha(isEnabled() ? 1 : 0.5);
}

}  // namespace platform
