#pragma once

#include <string>

#include "platform/uikit/views/UIView.h"

namespace platform {
class UIImageView;
}

namespace lumicor {

using namespace platform;

/// A small white card near the bottom of the screen that plays an animation while the assistant works, over a dimmed
/// screen. The animation comes from the service. Main thread, except show() and dismiss(): any.
class LumicorProcessingDialogView final : public Object<LumicorProcessingDialogView, UIView> {
 public:
  /// Where the service keeps the animation, a GIF: "/assets/processing.gif" at the session's endpoint.
  static std::string animationAddress();

  /// The card has a frame of its own, whatever it is given.
  void initWithFrame(CGRect frame) override;

  /// Both happen in a later turn of the main queue. A dialog that is shown is not shown again.
  void show();
  void dismiss();

  const Ref<UIImageView>& gifImageView() const { return gifImageView_; }
  /// None while it is not shown.
  const Ref<UIView>& overlayView() const { return overlayView_; }

  // Points.
  static constexpr double dialogWidth = 50;
  static constexpr double dialogHeight = 50;
  static constexpr double loaderSize = 40;
  static constexpr double padding = 10;
  double dialogYPosition() const { return dialogYPosition_; }

 private:
  void setUpCard();
  void setUpAnimation();
  void showNow();
  void dismissNow();

  Ref<UIImageView> gifImageView_;
  Ref<UIView> overlayView_;
  double dialogYPosition_ = 0;
};

}  // namespace lumicor
