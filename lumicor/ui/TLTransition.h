#pragma once

#include "platform/runtime/Object.h"

namespace platform {
class UIBezierPath;
class UIView;
class UIViewControllerContextTransitioning;
}  // namespace platform

namespace lumicor {

using namespace platform;

/// What opening and closing the chat share: a mask in the shape of the floating button that grows to the whole screen,
/// or shrinks back. The delegate of its own animation. Main thread.
class TLTransition : public Object<TLTransition, NSObject> {
 public:
  static void exportMethods(MethodTable<TLTransition>& table);

  /// Seconds.
  double transitionDuration(const Ref<UIViewControllerContextTransitioning>& context) const;
  virtual void animateTransition(const Ref<UIViewControllerContextTransitioning>& context) = 0;
  /// Completes the transition, whether the animation ran to its end or not.
  virtual void animationDidStop(const Ref<NSObject>& animation, bool finished);

  /// The transition under way, kept until the animation stops.
  Ref<UIViewControllerContextTransitioning> transitionCtx;

 protected:
  /// Masks the view with `end` and moves the mask there from `start`.
  void animateMask(const Ref<UIView>& view, const Ref<UIBezierPath>& start, const Ref<UIBezierPath>& end);
  /// The same for people who want no motion: fades the view from one opacity to the other.
  void animateFade(const Ref<UIView>& view, double from, double to);

  /// Shows the host as it stood, with its bars, until the chat covers it; none when nobody took the picture.
  Ref<UIView> cover_;
};

/// The chat grows out of the floating button, which fades out.
class TLTransitionPush final : public Object<TLTransitionPush, TLTransition> {
 public:
  void animateTransition(const Ref<UIViewControllerContextTransitioning>& context) override;
};

/// The chat shrinks back into the floating button, which then fades in.
class TLTransitionPop final : public Object<TLTransitionPop, TLTransition> {
 public:
  void animateTransition(const Ref<UIViewControllerContextTransitioning>& context) override;
  void animationDidStop(const Ref<NSObject>& animation, bool finished) override;
};

}  // namespace lumicor
