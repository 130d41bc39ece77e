#pragma once

#include <functional>
#include <string>

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

inline const std::string UITransitionContextFromViewControllerKey = "UITransitionContextFromViewController";
inline const std::string UITransitionContextToViewControllerKey = "UITransitionContextToViewController";
inline const std::string UITransitionContextFromViewKey = "UITransitionContextFromView";
inline const std::string UITransitionContextToViewKey = "UITransitionContextToView";

/// What an animation controller works on: the two screens, their views and the view that holds them meanwhile.
///
/// An animation controller is any object that answers "transitionDuration:" (double, of the context) and
/// "animateTransition:" (void, of the context). It puts the incoming view into the container, moves things as it
/// likes, and calls completeTransition once; it may answer "animationEnded:" (void, of a bool).
///
/// The context holds both controllers strongly for as long as an animation controller keeps it. Main thread.
class UIViewControllerContextTransitioning : public Object<UIViewControllerContextTransitioning, NSObject> {
 public:
  struct Description {
    Ref<UIView> container;
    Ref<UIViewController> from;
    Ref<UIViewController> to;
    CGRect initialFrom;
    CGRect finalFrom;
    CGRect initialTo;
    CGRect finalTo;
    bool animated = true;
  };
  using Completion = std::function<void(bool completed)>;

  UIViewControllerContextTransitioning(Description description, Completion completion);
  ~UIViewControllerContextTransitioning() override;

  const Ref<UIView>& containerView() const { return what_.container; }
  /// None for an unknown key.
  Ref<UIViewController> viewControllerForKey(const std::string& key) const;
  Ref<UIView> viewForKey(const std::string& key) const;
  /// The empty rectangle for a controller that takes no part.
  CGRect initialFrameForViewController(const Ref<UIViewController>& controller) const;
  CGRect finalFrameForViewController(const Ref<UIViewController>& controller) const;
  bool isAnimated() const { return what_.animated; }
  bool isInteractive() const { return false; }
  bool transitionWasCancelled() const { return cancelled_; }

  /// The end. False puts everything back as it was before. A second call does nothing, nor does one after the platform
  /// has ended a transition that overran.
  void completeTransition(bool didComplete);
  /// The platform ends it, as completed, without the animation controller. Later calls do nothing.
  void abandon();

 private:
  Description what_;
  Completion completion_;
  bool cancelled_ = false;
};

}  // namespace platform
