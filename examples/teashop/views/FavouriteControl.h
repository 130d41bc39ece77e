#pragma once

#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/views/UIImageView.h"

namespace teashop {

/// A heart that is filled or not. A tap turns it over and sends valueChanged. 44 by 44 points.
class FavouriteControl final : public platform::Object<FavouriteControl, platform::UIControl> {
 public:
  void initWithFrame(platform::CGRect frame) override;
  platform::CGSize intrinsicContentSize() const override { return {44, 44}; }
  void layoutSubviews() override;
  void stateDidChange() override;

  static void exportMethods(platform::MethodTable<FavouriteControl>& table);

 private:
  void turnOver();
  platform::Ref<platform::UIImageView> heart_;
};

}  // namespace teashop
