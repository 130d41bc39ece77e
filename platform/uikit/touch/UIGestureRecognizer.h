#pragma once

#include <cstdint>
#include <vector>

#include "platform/runtime/Exchangeable.h"
#include "platform/uikit/touch/UITouch.h"

namespace platform {

/// `recognized` is what a discrete recogniser (a tap, a swipe) calls its `ended`.
enum class UIGestureRecognizerState { possible, began, changed, ended, cancelled, failed, recognized = ended };

/// Watches the touches of a view and its subviews for one gesture and tells its targets. Owned by its view
/// (`addGestureRecognizer`); targets and delegate are held weakly. Main thread.
///
/// Delegate selectors, all optional: "gestureRecognizerShouldBegin:", "gestureRecognizer:shouldReceiveTouch:",
/// "gestureRecognizer:shouldRecognizeSimultaneouslyWithGestureRecognizer:",
/// "gestureRecognizer:shouldRequireFailureOfGestureRecognizer:",
/// "gestureRecognizer:shouldBeRequiredToFailByGestureRecognizer:"; each answers a bool.
///
/// A subclass overrides touchesBegan … touchesCancelled and reset, and moves the state with setState.
class UIGestureRecognizer : public Object<UIGestureRecognizer, NSObject> {
 public:
  UIGestureRecognizer();
  ~UIGestureRecognizer() override;
  void init() { initWithTarget(nullptr, SEL()); }
  void init(const Ref<NSObject>& target, SEL action) { initWithTarget(target, action); }
  static void exportMethods(MethodTable<UIGestureRecognizer>& table);

  /// Exchangeable ("initWithTarget:action:").
  virtual void initWithTarget(Ref<NSObject> target, SEL action) {
    Exchangeable<&UIGestureRecognizer::initWithTarget, &UIGestureRecognizer::platformInitWithTarget>::call(
        *this, target, action);
  }
  void platformInitWithTarget(Ref<NSObject> target, SEL action);

  /// A pair that is there already is not added again. An action takes nothing or the recogniser.
  void addTarget(const Ref<NSObject>& target, SEL action);
  /// None stands for every target, an empty selector for every action.
  void removeTarget(const Ref<NSObject>& target, SEL action);

  UIGestureRecognizerState state() const { return state_; }
  Ref<UIView> view() const;  // with the views
  bool isEnabled() const { return enabled_; }
  /// Disabling cancels a gesture under way.
  void setEnabled(bool enabled);
  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }

  /// Once recognised, the view gets touchesCancelled and no more of these touches. Default true.
  bool cancelsTouchesInView() const { return cancelsTouchesInView_; }
  void setCancelsTouchesInView(bool cancels) { cancelsTouchesInView_ = cancels; }
  /// The view hears of the touches only once this recogniser has failed. Default false.
  bool delaysTouchesBegan() const { return delaysTouchesBegan_; }
  void setDelaysTouchesBegan(bool delays) { delaysTouchesBegan_ = delays; }
  /// The view hears of a touch's end only once this recogniser has failed. Default true.
  bool delaysTouchesEnded() const { return delaysTouchesEnded_; }
  void setDelaysTouchesEnded(bool delays) { delaysTouchesEnded_ = delays; }

  /// This recogniser waits until the other one has failed. The other is held weakly.
  void requireGestureRecognizerToFail(const Ref<UIGestureRecognizer>& other);

  std::int64_t numberOfTouches() const;
  /// The touches that it follows; one that ends is still among them while touchesEnded runs.
  const UITouches& touches() const { return touches_; }
  /// The middle of the touches, in the view's coordinates (the window's for none).
  virtual CGPoint locationInView(const TouchSurface* view) const;
  CGPoint locationOfTouch(std::int64_t index, const TouchSurface* view) const;

  // ---- For subclasses. The base ends (or fails) when the last finger lifts or is cancelled.
  virtual void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event);
  virtual void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event);
  virtual void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event);
  virtual void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event);
  /// Back to the start; the state has become `possible`.
  virtual void reset() {}
  virtual bool canPreventGestureRecognizer(const Ref<UIGestureRecognizer>& other);
  virtual bool canBePreventedByGestureRecognizer(const Ref<UIGestureRecognizer>& other);

 protected:
  /// `began` and `ended` out of `possible` are wishes that the platform grants, puts off or refuses.
  void setState(UIGestureRecognizerState state);

 private:
  friend class GestureEnvironment;
  friend class UIView;
  struct Action {
    Weak<NSObject> target;
    SEL action;
  };
  std::vector<Action> actions_;
  std::vector<Weak<UIGestureRecognizer>> failureRequirements_;
  Weak<NSObject> delegate_;
  TouchSurface* view_ = nullptr;  // the view clears it
  UITouches touches_;
  CGPoint lastLocation_;
  Weak<TouchSurface> lastWindow_;
  UIGestureRecognizerState state_ = UIGestureRecognizerState::possible;
  bool enabled_ = true;
  bool cancelsTouchesInView_ = true;
  bool delaysTouchesBegan_ = false;
  bool delaysTouchesEnded_ = true;
};

}  // namespace platform
