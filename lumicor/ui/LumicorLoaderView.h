#pragma once

#include "platform/uikit/views/UIView.h"

namespace platform {
class CAShapeLayer;
class UILabel;
}  // namespace platform

namespace lumicor {

using namespace platform;

/// A white card with a turning arc and "Starting Session...", over a dimmed screen. Its creator gives it a frame, 150
/// by 150 points as a rule. Main thread.
class LumicorLoaderView final : public Object<LumicorLoaderView, UIView> {
 public:
  void initWithFrame(CGRect frame) override;

  /// Dims the key window and puts the card on top of it, where its frame says. Nothing happens while it is shown.
  void show();
  /// Takes the card and the dimming away.
  void dismiss();

  const Ref<CAShapeLayer>& spinnerLayer() const { return spinnerLayer_; }
  const Ref<UILabel>& loadingLabel() const { return loadingLabel_; }
  /// None while it is not shown.
  const Ref<UIView>& overlayView() const { return overlayView_; }

 private:
  void setUpSpinner();
  void setUpLabel();
  void startSpinning();

  Ref<CAShapeLayer> spinnerLayer_;
  Ref<UILabel> loadingLabel_;
  Ref<UIView> overlayView_;
};

}  // namespace lumicor
