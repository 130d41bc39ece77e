#include "platform/uikit/controls/UIControl.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/touch/ApplicationHost.h"

namespace platform {

namespace {

/// How far outside its bounds a finger that went down on a control still counts as on it, in points.
constexpr double trackingSlop = 70;

bool isOn(const UIControl& control, const Ref<UITouch>& touch) {
  const CGPoint at = touch->locationInView(&control);
  const CGRect all = control.bounds();
  return at.x >= all.origin.x - trackingSlop && at.x <= all.origin.x + all.size.width + trackingSlop &&
         at.y >= all.origin.y - trackingSlop && at.y <= all.origin.y + all.size.height + trackingSlop;
}

}  // namespace

void UIControl::exportMethods(MethodTable<UIControl>& table) {
  Exchangeable<&UIControl::sendAction, &UIControl::platformSendAction>::addTo(table.owner(), "sendAction:to:forEvent:");
  table.add<&UIControl::sendActionsForControlEvents>("sendActionsForControlEvents:");
  table.add<&UIControl::isEnabled>("isEnabled");
  table.add<&UIControl::setEnabled>("setEnabled:");
  table.add<&UIControl::isSelected>("isSelected");
  table.add<&UIControl::setSelected>("setSelected:");
}

// ---- Targets

void UIControl::addTarget(const Ref<NSObject>& target, SEL action, UIControlEvents events) {
  if (!action) return;
  for (Registration& known : registrations_) {
    if (known.action == action && known.hasTarget == (target != nullptr) && known.target.lock() == target) {
      known.events = known.events | events;
      return;
    }
  }
  registrations_.push_back({target, target != nullptr, action, events});
}

void UIControl::removeTarget(const Ref<NSObject>& target, SEL action, UIControlEvents events) {
  for (Registration& known : registrations_) {
    if (target && known.target.lock() != target) continue;
    if (action && !(known.action == action)) continue;
    known.events = static_cast<UIControlEvents>(static_cast<unsigned>(known.events) & ~static_cast<unsigned>(events));
  }
  std::erase_if(registrations_, [](const Registration& known) {
    return static_cast<unsigned>(known.events) == 0 || (known.hasTarget && known.target.expired());
  });
}

std::vector<Ref<NSObject>> UIControl::allTargets() const {
  std::vector<Ref<NSObject>> targets;
  for (const Registration& known : registrations_) {
    Ref<NSObject> target = known.target.lock();
    if (target && std::find(targets.begin(), targets.end(), target) == targets.end()) {
      targets.push_back(std::move(target));
    }
  }
  return targets;
}

std::vector<SEL> UIControl::actionsForTarget(const Ref<NSObject>& target, UIControlEvents events) const {
  std::vector<SEL> actions;
  for (const Registration& known : registrations_) {
    if (known.hasTarget == (target != nullptr) && known.target.lock() == target && (known.events & events)) {
      actions.push_back(known.action);
    }
  }
  return actions;
}

bool UIControl::isStillRegistered(const Registration& registration) const {
  return std::any_of(registrations_.begin(), registrations_.end(), [&](const Registration& known) {
    return known.action == registration.action && known.hasTarget == registration.hasTarget &&
           known.target.lock() == registration.target.lock() && (known.events & registration.events);
  });
}

void UIControl::sendActions(UIControlEvents events, const Ref<UIEvent>& event) {
  const Ref<UIControl> keeper = self();
  std::vector<Registration> due;
  for (const Registration& known : registrations_) {
    if (known.events & events) due.push_back(known);
  }
  for (const Registration& registration : due) {
    Ref<NSObject> target = registration.target.lock();
    if (registration.hasTarget && !target) continue;  // it died: an action for it is not one for the chain
    if (!isStillRegistered(registration)) continue;   // an earlier action took it away
    sendAction(registration.action, std::move(target), event);
  }
}

void UIControl::platformSendAction(SEL action, Ref<NSObject> target, Ref<UIEvent> event) {
  ApplicationHost::shared().sendAction(action, target, actionSender(), event);
}

// ---- State

unsigned UIControl::state() const {
  unsigned state = UIControlState::normal;
  if (isHighlighted()) state |= UIControlState::highlighted;
  if (!isEnabled()) state |= UIControlState::disabled;
  if (isSelected()) state |= UIControlState::selected;
  return state;
}

void UIControl::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  if (!enabled && tracking_) {
    const Ref<UIControl> keeper = self();
    finishTracking();
    cancelTracking(nullptr);
    sendActions(UIControlEvents::touchCancel, nullptr);
  }
  stateDidChange();
}

void UIControl::setSelected(bool selected) {
  if (selected_ == selected) return;
  selected_ = selected;
  stateDidChange();
}

void UIControl::setHighlighted(bool highlighted) {
  if (highlighted_ == highlighted) return;
  highlighted_ = highlighted;
  stateDidChange();
}

// ---- Touches

bool UIControl::beginTracking(const Ref<UITouch>&, const Ref<UIEvent>&) { return true; }
bool UIControl::continueTracking(const Ref<UITouch>&, const Ref<UIEvent>&) { return true; }
void UIControl::endTracking(const Ref<UITouch>&, const Ref<UIEvent>&) {}
void UIControl::cancelTracking(const Ref<UIEvent>&) {}

void UIControl::finishTracking() {
  tracking_ = nullptr;
  touchInside_ = false;
  setHighlighted(false);
}

void UIControl::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  if (!isEnabled() || tracking_ || touches.empty()) return;
  const Ref<UIControl> keeper = self();
  const Ref<UITouch> touch = touches.front();
  if (!beginTracking(touch, event)) return;
  tracking_ = touch;
  touchInside_ = true;
  setHighlighted(true);
  sendActions(UIControlEvents::touchDown, event);
}

void UIControl::touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) {
  if (!tracking_ || std::find(touches.begin(), touches.end(), tracking_) == touches.end()) return;
  const Ref<UIControl> keeper = self();
  const Ref<UITouch> touch = tracking_;
  if (!continueTracking(touch, event)) {
    if (tracking_) finishTracking();
    return;
  }
  if (!tracking_) return;
  const bool inside = isOn(*this, touch);
  if (inside != touchInside_) {
    touchInside_ = inside;
    setHighlighted(inside);
    sendActions(inside ? UIControlEvents::touchDragEnter : UIControlEvents::touchDragExit, event);
  }
  if (tracking_) sendActions(inside ? UIControlEvents::touchDragInside : UIControlEvents::touchDragOutside, event);
}

void UIControl::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  if (!tracking_ || std::find(touches.begin(), touches.end(), tracking_) == touches.end()) return;
  const Ref<UIControl> keeper = self();
  const Ref<UITouch> touch = tracking_;
  const bool inside = isOn(*this, touch);
  finishTracking();
  endTracking(touch, event);
  sendActions(inside ? UIControlEvents::touchUpInside : UIControlEvents::touchUpOutside, event);
  if (inside && sendsPrimaryAction()) sendActions(UIControlEvents::primaryActionTriggered, event);
}

void UIControl::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  if (!tracking_ || std::find(touches.begin(), touches.end(), tracking_) == touches.end()) return;
  const Ref<UIControl> keeper = self();
  finishTracking();
  cancelTracking(event);
  sendActions(UIControlEvents::touchCancel, event);
}

}  // namespace platform
