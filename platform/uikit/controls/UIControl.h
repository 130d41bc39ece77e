#pragma once

#include <cstdint>
#include <vector>

#include "platform/runtime/Exchangeable.h"
#include "platform/uikit/touch/UITouch.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

/// What happened to a control; flags.
enum class UIControlEvents : unsigned {
  touchDown = 1u << 0,
  touchDragInside = 1u << 2,
  touchDragOutside = 1u << 3,
  touchDragEnter = 1u << 4,
  touchDragExit = 1u << 5,
  touchUpInside = 1u << 6,
  touchUpOutside = 1u << 7,
  touchCancel = 1u << 8,
  valueChanged = 1u << 12,
  primaryActionTriggered = 1u << 13,
  editingDidBegin = 1u << 16,
  editingChanged = 1u << 17,
  editingDidEnd = 1u << 18,
  editingDidEndOnExit = 1u << 19,
};
constexpr UIControlEvents operator|(UIControlEvents a, UIControlEvents b) {
  return static_cast<UIControlEvents>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool operator&(UIControlEvents a, UIControlEvents b) {
  return (static_cast<unsigned>(a) & static_cast<unsigned>(b)) != 0;
}

/// The states a control can be in; flags.
struct UIControlState {
  static constexpr unsigned normal = 0;
  static constexpr unsigned highlighted = 1;
  static constexpr unsigned disabled = 2;
  static constexpr unsigned selected = 4;
  static constexpr unsigned focused = 8;
};

/// A view that reports what a person does with it to targets. Targets are held weakly. Main thread.
class UIControl : public Object<UIControl, UIView> {
 public:
  static void exportMethods(MethodTable<UIControl>& table);

  void addTarget(const Ref<NSObject>& target, SEL action, UIControlEvents events);
  /// None stands for every target, an empty selector for every action.
  void removeTarget(const Ref<NSObject>& target, SEL action, UIControlEvents events);
  /// The live targets, each once, in the order they were added.
  std::vector<Ref<NSObject>> allTargets() const;
  /// In the order they were added; a target of none stands for the responder chain.
  std::vector<SEL> actionsForTarget(const Ref<NSObject>& target, UIControlEvents events) const;

  /// Sends every action registered for the events, each through sendAction.
  void sendActionsForControlEvents(UIControlEvents events) { sendActions(events, nullptr); }
  void sendActions(UIControlEvents events, const Ref<UIEvent>& event);
  /// Exchangeable ("sendAction:to:forEvent:"): the one way an action leaves a control.
  virtual void sendAction(SEL action, Ref<NSObject> target, Ref<UIEvent> event) {
    Exchangeable<&UIControl::sendAction, &UIControl::platformSendAction>::call(*this, action, target, event);
  }
  void platformSendAction(SEL action, Ref<NSObject> target, Ref<UIEvent> event);

  virtual bool isEnabled() const { return enabled_; }
  bool claimsTaps() const override { return isEnabled(); }
  virtual void setEnabled(bool enabled);
  virtual bool isSelected() const { return selected_; }
  virtual void setSelected(bool selected);
  virtual bool isHighlighted() const { return highlighted_; }
  virtual void setHighlighted(bool highlighted);
  /// Enabled, selected, highlighted changed: redraw.
  virtual void stateDidChange() {}
  unsigned state() const;

  /// Tracking of the one finger on the control; false ends it. The base keeps `isHighlighted` and sends the touch
  /// events.
  virtual bool beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event);
  virtual bool continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event);
  virtual void endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event);
  virtual void cancelTracking(const Ref<UIEvent>& event);
  bool isTracking() const { return tracking_ != nullptr; }
  /// True for a control that a finger drags (a slider): a scroll view around it leaves such a drag to it.
  virtual bool followsDragging() const { return false; }

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;

 protected:
  /// True for a control whose touchUpInside by a finger is followed by primaryActionTriggered.
  virtual bool sendsPrimaryAction() const { return false; }
  /// In whose name the actions leave: the control itself, unless it stands for something else (a bar button item).
  virtual Ref<NSObject> actionSender() { return self(); }

 private:
  struct Registration {
    Weak<NSObject> target;
    bool hasTarget;
    SEL action;
    UIControlEvents events;
  };
  void finishTracking();
  bool isStillRegistered(const Registration& registration) const;
  std::vector<Registration> registrations_;
  Ref<UITouch> tracking_;
  bool touchInside_ = false;
  bool enabled_ = true;
  bool selected_ = false;
  bool highlighted_ = false;
};

}  // namespace platform
