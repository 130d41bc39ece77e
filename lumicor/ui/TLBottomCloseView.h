#pragma once

#include "platform/uikit/views/UIView.h"

namespace platform {
class CAShapeLayer;
}

namespace lumicor {

using namespace platform;

/// The dark quarter disc in the bottom-right corner onto which the floating button is dropped to dismiss it. Main
/// thread.
class TLBottomCloseView final : public Object<TLBottomCloseView, UIView> {
 public:
  void initWithFrame(CGRect frame) override;
  void layoutSubviews() override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;

  /// True while the dragged button's centre is inside; the disc is larger then.
  bool insideBottomSelected = false;

 private:
  const Ref<CAShapeLayer>& maskLayer();
  Ref<CAShapeLayer> maskLayer_;
};

}  // namespace lumicor
