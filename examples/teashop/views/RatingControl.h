#pragma once

#include <array>

#include "platform/uikit/controls/UIButton.h"

namespace teashop {

/// Five stars to tap, named "rate-1" to "rate-5". It sends valueChanged.
class RatingControl final : public platform::Object<RatingControl, platform::UIControl> {
 public:
  static constexpr std::int64_t stars = 5;
  void initWithFrame(platform::CGRect frame) override;
  /// 0 before anything was chosen.
  std::int64_t rating() const { return rating_; }
  platform::CGSize intrinsicContentSize() const override { return {stars * 44.0, 44}; }
  void layoutSubviews() override;

  static void exportMethods(platform::MethodTable<RatingControl>& table);

 private:
  void starTapped(const platform::Ref<platform::NSObject>& sender);
  void showRating();
  std::array<platform::Ref<platform::UIButton>, stars> buttons_;
  std::int64_t rating_ = 0;
};

}  // namespace teashop
