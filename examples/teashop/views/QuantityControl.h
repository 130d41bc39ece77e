#pragma once

#include <cstdint>
#include <string>

#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/views/UILabel.h"

namespace teashop {

/// Minus, a number, plus. It reports valueChanged. Its parts are named after `prefix`: "<prefix>Minus",
/// "<prefix>Value",
/// "<prefix>Plus".
class QuantityControl final : public platform::Object<QuantityControl, platform::UIControl> {
 public:
  void initWithFrame(platform::CGRect frame) override;
  void setPrefix(const std::string& prefix);
  std::int64_t quantity() const { return quantity_; }
  /// Kept between minimum and maximum.
  void setQuantity(std::int64_t quantity);
  void setRange(std::int64_t minimum, std::int64_t maximum);
  platform::CGSize intrinsicContentSize() const override { return {148, 44}; }

  static void exportMethods(platform::MethodTable<QuantityControl>& table);

 private:
  void decrease();
  void increase();
  void changeBy(std::int64_t difference);
  platform::Ref<platform::UIButton> makeButton(const std::string& title, const char* action);

  platform::Ref<platform::UIButton> minus_;
  platform::Ref<platform::UILabel> value_;
  platform::Ref<platform::UIButton> plus_;
  std::int64_t quantity_ = 1;
  std::int64_t minimum_ = 1;
  std::int64_t maximum_ = 20;
};

}  // namespace teashop
