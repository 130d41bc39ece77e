#include "platform/uikit/touch/UILongPressGestureRecognizer.h"

#include <algorithm>
#include <cmath>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

void UILongPressGestureRecognizer::touchesBegan(const UITouches&, const Ref<UIEvent>&) {
  if (state() != UIGestureRecognizerState::possible) return;
  if (numberOfTouches() > touchesRequired_) {
    setState(UIGestureRecognizerState::failed);
    return;
  }
  if (numberOfTouches() < touchesRequired_) return;
  start_ = locationInView(nullptr);
  DispatchQueue::main().asyncAfter(minimumDuration_, [weak = weakSelf(), press = ++press_] {
    const Ref<UILongPressGestureRecognizer> recognizer = weak.lock();
    if (recognizer && recognizer->press_ == press) recognizer->setState(UIGestureRecognizerState::began);
  });
}

void UILongPressGestureRecognizer::touchesMoved(const UITouches&, const Ref<UIEvent>&) {
  if (state() != UIGestureRecognizerState::possible) {
    setState(UIGestureRecognizerState::changed);
    return;
  }
  if (numberOfTouches() < touchesRequired_) return;
  const CGPoint now = locationInView(nullptr);
  if (std::hypot(now.x - start_.x, now.y - start_.y) > allowableMovement_) {
    setState(UIGestureRecognizerState::failed);
  }
}

void UILongPressGestureRecognizer::touchesEnded(const UITouches&, const Ref<UIEvent>&) {
  const bool isPressed = state() != UIGestureRecognizerState::possible;
  const auto isDown = [](const Ref<UITouch>& touch) {
    return touch->phase() != UITouchPhase::ended && touch->phase() != UITouchPhase::cancelled;
  };
  if (isPressed && std::count_if(touches().begin(), touches().end(), isDown) >= touchesRequired_) return;
  setState(isPressed ? UIGestureRecognizerState::ended : UIGestureRecognizerState::failed);
}

void UILongPressGestureRecognizer::reset() { ++press_; }

}  // namespace platform
