#pragma once

#include "platform/uikit/controls/UIButton.h"

namespace teashop {

/// The one button of a screen that moves things on: filled, full width, darker while held, pale when it cannot be used.
class PrimaryButton final : public platform::Object<PrimaryButton, platform::UIButton> {
 public:
  void initWithFrame(platform::CGRect frame) override;
  void stateDidChange() override;
  platform::CGSize intrinsicContentSize() const override;
};

}  // namespace teashop
