#include "platform/uikit/touch/UIGestureRecognizer.h"

#include <algorithm>

#include "platform/uikit/touch/GestureEnvironment.h"

namespace platform {

UIGestureRecognizer::UIGestureRecognizer() = default;
UIGestureRecognizer::~UIGestureRecognizer() = default;

void UIGestureRecognizer::exportMethods(MethodTable<UIGestureRecognizer>& table) {
  Exchangeable<&UIGestureRecognizer::initWithTarget, &UIGestureRecognizer::platformInitWithTarget>::addTo(
      table.owner(), "initWithTarget:action:");
  table.add<&UIGestureRecognizer::addTarget>("addTarget:action:");
  table.add<&UIGestureRecognizer::removeTarget>("removeTarget:action:");
}

void UIGestureRecognizer::platformInitWithTarget(Ref<NSObject> target, SEL action) {
  if (target && action) addTarget(target, action);
}

// ---- Targets

void UIGestureRecognizer::addTarget(const Ref<NSObject>& target, SEL action) {
  if (!target || !action) return;
  for (const Action& known : actions_) {
    if (known.action == action && known.target.lock() == target) return;
  }
  actions_.push_back({target, action});
}

void UIGestureRecognizer::removeTarget(const Ref<NSObject>& target, SEL action) {
  std::erase_if(actions_, [&](const Action& known) {
    const Ref<NSObject> knownTarget = known.target.lock();
    return !knownTarget || ((!target || knownTarget == target) && (!action || known.action == action));
  });
}

void UIGestureRecognizer::requireGestureRecognizerToFail(const Ref<UIGestureRecognizer>& other) {
  if (other && other.get() != this) failureRequirements_.push_back(other);
}

// ---- State

void UIGestureRecognizer::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  if (!enabled) GestureEnvironment::shared().stop(self());
}

void UIGestureRecognizer::setState(UIGestureRecognizerState state) {
  GestureEnvironment::shared().noteChange(self(), state);
}

bool UIGestureRecognizer::canPreventGestureRecognizer(const Ref<UIGestureRecognizer>&) { return true; }
bool UIGestureRecognizer::canBePreventedByGestureRecognizer(const Ref<UIGestureRecognizer>&) { return true; }

// ---- Where

std::int64_t UIGestureRecognizer::numberOfTouches() const { return static_cast<std::int64_t>(touches_.size()); }

CGPoint UIGestureRecognizer::locationInView(const TouchSurface* view) const {
  CGPoint middle = lastLocation_;
  if (!touches_.empty()) {
    middle = {};
    for (const Ref<UITouch>& touch : touches_) {
      const CGPoint location = touch->locationInView(nullptr);
      middle.x += location.x / static_cast<double>(touches_.size());
      middle.y += location.y / static_cast<double>(touches_.size());
    }
  }
  return view ? view->pointFromWindow(middle, lastWindow_.lock().get()) : middle;
}

CGPoint UIGestureRecognizer::locationOfTouch(std::int64_t index, const TouchSurface* view) const {
  if (index < 0 || index >= numberOfTouches()) fatalError("a gesture recogniser has no touch of that index");
  return touches_[static_cast<std::size_t>(index)]->locationInView(view);
}

// ---- Touches

void UIGestureRecognizer::touchesBegan(const UITouches&, const Ref<UIEvent>&) {}
void UIGestureRecognizer::touchesMoved(const UITouches&, const Ref<UIEvent>&) {}

void UIGestureRecognizer::touchesEnded(const UITouches&, const Ref<UIEvent>&) {
  if (touches_.size() > 1) return;
  const bool underWay = state_ == UIGestureRecognizerState::began || state_ == UIGestureRecognizerState::changed;
  setState(underWay ? UIGestureRecognizerState::ended : UIGestureRecognizerState::failed);
}

void UIGestureRecognizer::touchesCancelled(const UITouches&, const Ref<UIEvent>&) {
  setState(UIGestureRecognizerState::cancelled);
}

}  // namespace platform
