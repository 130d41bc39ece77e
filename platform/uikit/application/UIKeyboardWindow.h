#pragma once

#include "platform/uikit/application/UIWindow.h"

namespace platform {

/// The window of the software keyboard: covers the screen, yet takes touches on the keyboard alone. Main thread.
class UIKeyboardWindow : public Object<UIKeyboardWindow, UIWindow> {
 public:
  void initWithFrame(CGRect frame) override;
  bool canBecomeKeyWindow() const override { return false; }
  Ref<UIView> hitTest(CGPoint point, const Ref<UIEvent>& event) override;
};

}  // namespace platform
