#include "platform/uikit/application/UIKeyboardWindow.h"

namespace platform {

namespace {

/// Above everything that an application shows.
constexpr double keyboardWindowLevel = 10'000'000;

}  // namespace

void UIKeyboardWindow::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setWindowLevel(keyboardWindowLevel);
}

Ref<UIView> UIKeyboardWindow::hitTest(CGPoint point, const Ref<UIEvent>& event) {
  Ref<UIView> hit = Super::hitTest(point, event);
  return hit.get() == this ? nullptr : hit;
}

}  // namespace platform
