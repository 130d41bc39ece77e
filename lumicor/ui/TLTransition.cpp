#include "lumicor/ui/TLTransition.h"

#include "lumicor/ui/TLFloaterManager.h"
#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/controllers/UIViewControllerTransitioning.h"
#include "platform/uikit/device/UIAccessibility.h"

namespace lumicor {

namespace {

constexpr double duration = 0.3;
constexpr const char* fadeKey = "fadeAnimation";
constexpr double fullScreenCornerRadius = 0.1;  // as good as none, but of the same kind of path as the circle

Ref<UIBezierPath> buttonPath(const TLFloaterView& button, const UIView& screen) {
  const CGRect frame = button.frameIn(screen.bounds().size);
  return UIBezierPath::bezierPathWithRoundedRect(frame, frame.size.height / 2);
}

Ref<UIBezierPath> screenPath(const UIView& view) {
  return UIBezierPath::bezierPathWithRoundedRect(view.bounds(), fullScreenCornerRadius);
}

/// The two views that take part, or none when one is missing.
struct Views {
  Ref<UIView> from;
  Ref<UIView> to;
};

Views viewsOf(const UIViewControllerContextTransitioning& context) {
  const auto from = context.viewControllerForKey(UITransitionContextFromViewControllerKey);
  const auto to = context.viewControllerForKey(UITransitionContextToViewControllerKey);
  if (!from || !to) return {};
  return {from->view(), to->view()};
}

}  // namespace

void TLTransition::exportMethods(MethodTable<TLTransition>& table) {
  table.add<&TLTransition::transitionDuration>("transitionDuration:")
      .add<&TLTransition::animateTransition>("animateTransition:")
      .add<&TLTransition::animationDidStop>("animationDidStop:finished:");
}

double TLTransition::transitionDuration(const Ref<UIViewControllerContextTransitioning>&) const { return duration; }

void TLTransition::animateMask(const Ref<UIView>& view, const Ref<UIBezierPath>& start, const Ref<UIBezierPath>& end) {
  auto mask = make<CAShapeLayer>();
  mask->setFrame(view->bounds());
  mask->setPath(end->cgPath());
  view->layer()->setMask(mask);
  auto animation = make<CABasicAnimation>("path");
  animation->setFromValue(start->cgPath());
  animation->setToValue(end->cgPath());
  animation->setDuration(duration);
  animation->setTimingFunction(CAMediaTimingFunction());  // linear
  animation->setDelegate(self());
  mask->addAnimation(animation, "pathAnimation");
}

void TLTransition::animateFade(const Ref<UIView>& view, double from, double to) {
  auto fade = make<CABasicAnimation>("opacity");
  fade->setFromValue(from);
  fade->setToValue(to);
  fade->setDuration(duration);
  fade->setFillMode(CAMediaTimingFillMode::forwards);
  fade->setRemovedOnCompletion(false);  // what fades out is gone before it could show again
  fade->setDelegate(self());
  view->layer()->addAnimation(fade, fadeKey);
}

void TLTransition::animationDidStop(const Ref<NSObject>&, bool) {
  const auto context = std::exchange(transitionCtx, nullptr);
  if (!context) return;
  const Views views{context->viewForKey(UITransitionContextFromViewKey),
                    context->viewForKey(UITransitionContextToViewKey)};
  context->completeTransition(true);
  for (const Ref<UIView>& view : {views.from, views.to}) {
    if (!view) continue;
    view->layer()->setMask(nullptr);
    view->layer()->removeAnimationForKey(fadeKey);
  }
  if (const auto cover = std::exchange(cover_, nullptr)) cover->removeFromSuperview();
}

void TLTransitionPush::animateTransition(const Ref<UIViewControllerContextTransitioning>& context) {
  transitionCtx = context;
  const Views views = viewsOf(*context);
  if (!views.from || !views.to) return;
  context->containerView()->addSubview(views.from);
  context->containerView()->addSubview(views.to);
  TLFloaterManager& manager = TLFloaterManager::shared();
  // The host's bars go at once, while most of the host still shows: a picture of them stays in their place.
  cover_ = manager.takeCover();
  if (cover_) context->containerView()->insertSubviewBelow(cover_, views.to);
  const auto& button = manager.floaterView();
  if (!button) return;
  if (UIAccessibility::isReduceMotionEnabled()) {
    animateFade(views.to, 0, 1);
  } else {
    animateMask(views.to, buttonPath(*button, *views.to), screenPath(*views.to));
  }
  if (button->changeStatusInNextTransaction) {
    button->setShow(false);
  } else {
    button->changeStatusInNextTransaction = true;
  }
}

void TLTransitionPop::animateTransition(const Ref<UIViewControllerContextTransitioning>& context) {
  transitionCtx = context;
  const Views views = viewsOf(*context);
  if (!views.from || !views.to) return;
  context->containerView()->addSubview(views.to);
  context->containerView()->addSubview(views.from);
  const auto& button = TLFloaterManager::shared().floaterView();
  if (!button) return;
  if (UIAccessibility::isReduceMotionEnabled()) {
    animateFade(views.from, 1, 0);
  } else {
    animateMask(views.from, screenPath(*views.to), buttonPath(*button, *views.to));
  }
}

void TLTransitionPop::animationDidStop(const Ref<NSObject>& animation, bool finished) {
  Super::animationDidStop(animation, finished);
  const auto& button = TLFloaterManager::shared().floaterView();
  if (!button) return;
  if (button->changeStatusInNextTransaction) {
    TLFloaterManager::shared().bringButtonBack();
  } else {
    button->changeStatusInNextTransaction = true;
  }
}

}  // namespace lumicor
