#pragma once

#include <functional>
#include <string>

#include "platform/uikit/lists/UIPickerView.h"

namespace teashop {

/// Two wheels: the time of the day, and what to do at the door. It tells what is chosen after every turn, also one by a
/// program that then tells the delegate.
class SlotPicker final : public platform::Object<SlotPicker, platform::UIPickerView> {
 public:
  void initWithFrame(platform::CGRect frame) override;
  void setOnChange(std::function<void(const std::string& slot)> onChange) { onChange_ = std::move(onChange); }
  /// "Afternoon, ring the bell"
  std::string slot() const;

  static void exportMethods(platform::MethodTable<SlotPicker>& table);

 private:
  std::int64_t componentCount(const platform::Ref<platform::UIPickerView>& picker);
  std::int64_t rowCount(const platform::Ref<platform::UIPickerView>& picker, std::int64_t component);
  std::string rowTitle(const platform::Ref<platform::UIPickerView>& picker, std::int64_t row, std::int64_t component);
  void didSelect(const platform::Ref<platform::UIPickerView>& picker, std::int64_t row, std::int64_t component);

  std::function<void(const std::string&)> onChange_;
};

}  // namespace teashop
