#pragma once

#include <functional>
#include <optional>

#include "platform/foundation/Date.h"
#include "platform/uikit/controls/UIControl.h"

namespace platform {

class UIPickerView;

enum class UIDatePickerMode { time, date, dateAndTime };

/// A date or time of day chosen on wheels, in UTC, from the beginning of 1740 to the end of 2199; sends valueChanged.
/// Main thread.
class UIDatePicker : public Object<UIDatePicker, UIControl> {
 public:
  void initWithFrame(CGRect frame) override;
  static void exportMethods(MethodTable<UIDatePicker>& table);

  virtual Date date() const { return date_; }
  void setDate(Date date) { setDate(date, false); }
  /// Held to minimum and maximum, and to what the wheels can show. A date that is no number changes nothing, a limit
  /// that is none is no limit.
  virtual void setDate(Date date, bool animated);
  UIDatePickerMode datePickerMode() const { return mode_; }
  void setDatePickerMode(UIDatePickerMode mode);
  std::optional<Date> minimumDate() const { return minimum_; }
  void setMinimumDate(std::optional<Date> date);
  std::optional<Date> maximumDate() const { return maximum_; }
  void setMaximumDate(std::optional<Date> date);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void stateDidChange() override;

 private:
  std::int64_t componentCount(const Ref<NSObject>& picker);
  std::int64_t rowCount(const Ref<NSObject>& picker, std::int64_t component);
  std::string rowTitle(const Ref<NSObject>& picker, std::int64_t row, std::int64_t component);
  double componentWidth(const Ref<NSObject>& picker, std::int64_t component);
  void didSelect(const Ref<NSObject>& picker, std::int64_t row, std::int64_t component);
  void showDate(const std::function<void(std::int64_t row, std::int64_t component)>& show);
  Date held(Date date) const;

  Ref<UIPickerView> wheels_;
  Date date_{0};
  UIDatePickerMode mode_ = UIDatePickerMode::dateAndTime;
  std::optional<Date> minimum_;
  std::optional<Date> maximum_;
};

}  // namespace platform
