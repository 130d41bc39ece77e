#include "platform/uikit/controllers/NavigationTransition.h"

#include <algorithm>
#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/controllers/UIViewControllerTransitioning.h"
#include "platform/uikit/device/UIAccessibility.h"

namespace platform {

namespace {

/// How far the lower screen gives way, in parts of its width, and how dark it becomes.
constexpr double parallax = 0.3;
constexpr double shadeAlpha = 0.12;

}  // namespace

NavigationTransition::NavigationTransition(const Ref<UINavigationController>& controller, Plan plan)
    : controller_(controller), plan_(std::move(plan)) {}

NavigationTransition::~NavigationTransition() = default;

void NavigationTransition::start() {
  const auto keeper = shared_from_this();
  const Ref<UINavigationController> controller = controller_.lock();
  if (!controller) return;
  controller->showItems(plan_.animated);
  if (!plan_.animated || !plan_.from || !plan_.to) {
    controller->applyBars(false, 0);
    end(true);
  } else if (plan_.animator) {
    runAnimator();
  } else {
    slide();
  }
}

void NavigationTransition::finish() {
  if (ended_) return;
  const auto keeper = shared_from_this();
  if (context_) context_->abandon();
  const Ref<UINavigationController> controller = controller_.lock();
  becomeCertain();
  if (ended_) return;
  if (interactive_ && controller) {
    controller->showItems(false);
    controller->applyBars(false, 0);
  }
  end(true);
}

void NavigationTransition::end(bool completed) {
  if (std::exchange(ended_, true)) return;
  const auto keeper = shared_from_this();
  clearSlide();
  if (plan_.animator) {
    sendOptional(plan_.animator, sel("animationEnded:"), completed);
    // It is often the animation controller that calls, from the middle of its own work: let it live through this turn.
    DispatchQueue::main().async([keeper] {});
  }
  if (const Ref<UINavigationController> controller = controller_.lock()) controller->transitionEnded(completed);
}

// ---- The platform's slide

void NavigationTransition::placeForSlide() {
  const Ref<UINavigationController> controller = controller_.lock();
  const Ref<UIView>& content = controller->content_;
  const Ref<UIView> from = plan_.from->view();
  const Ref<UIView> to = plan_.to->view();
  fromTransform_ = from->transform();
  toTransform_ = to->transform();
  controller->place(plan_.to);
  const bool push = plan_.operation != UINavigationControllerOperation::pop;
  if (push) {
    content->bringSubviewToFront(to);
  } else {
    content->insertSubviewBelow(to, from);
  }
  shade_ = make<UIView>(content->bounds());
  shade_->setBackgroundColor(UIColor::black());
  shade_->setUserInteractionEnabled(false);
  content->insertSubviewBelow(shade_, push ? to : from);
  slides_ = true;
  UIView::performWithoutAnimation([&] { content->layoutIfNeeded(); });
}

void NavigationTransition::arrange(double fraction) {
  fraction_ = fraction;
  const bool push = plan_.operation != UINavigationControllerOperation::pop;
  const double width = plan_.from->view()->bounds().size.width;
  const double away = push ? 1 - fraction : fraction;  // of the upper screen, in parts of the width
  const auto shift = [](const CGAffineTransform& own, double dx) {
    return own.then(CGAffineTransform::translation(dx, 0));
  };
  const auto& upper = push ? plan_.to : plan_.from;
  const auto& lower = push ? plan_.from : plan_.to;
  if (fades_) {
    upper->view()->setAlpha(1 - away);
    return;
  }
  upper->view()->setTransform(shift(push ? toTransform_ : fromTransform_, away * width));
  lower->view()->setTransform(shift(push ? fromTransform_ : toTransform_, (away - 1) * parallax * width));
  shade_->setAlpha((1 - away) * shadeAlpha);
}

void NavigationTransition::slide() {
  placeForSlide();
  fades_ = UIAccessibility::isReduceMotionEnabled();
  UIView::performWithoutAnimation([this] { arrange(0); });
  const Ref<UINavigationController> controller = controller_.lock();
  controller->applyBars(true, UINavigationController::transitionDuration);
  UIView::animateWithDuration(
      UINavigationController::transitionDuration, 0, UIViewAnimationCurve::easeInOut, [this] { arrange(1); },
      [weak = weak_from_this()](bool) {
        if (const auto self = weak.lock()) self->end(true);
      });
}

void NavigationTransition::clearSlide() {
  if (!slides_) return;
  const auto reset = [](UIViewController& screen, const CGAffineTransform& transform) {
    screen.view()->layer()->removeAnimationForKey("transform");
    UIView::performWithoutAnimation([&] { screen.view()->setTransform(transform); });
  };
  if (fades_) {
    for (const auto& screen : {plan_.from, plan_.to}) {
      screen->view()->layer()->removeAnimationForKey("opacity");
      UIView::performWithoutAnimation([&] { screen->view()->setAlpha(1); });
    }
  }
  reset(*plan_.from, fromTransform_);
  reset(*plan_.to, toTransform_);
  shade_->removeFromSuperview();
}

// ---- A finger

void NavigationTransition::startInteractive() {
  interactive_ = true;
  certain_ = false;
  placeForSlide();
  arrange(0);
}

void NavigationTransition::moveTo(double fraction) {
  if (!ended_) UIView::performWithoutAnimation([&] { arrange(std::clamp(fraction, 0.0, 1.0)); });
}

void NavigationTransition::becomeCertain() {
  if (std::exchange(certain_, true)) return;
  if (const Ref<UINavigationController> controller = controller_.lock()) controller->announceLeaving(plan_.leaving);
}

void NavigationTransition::release(bool complete) {
  if (ended_) return;
  const auto keeper = shared_from_this();
  if (complete) becomeCertain();
  if (ended_) return;  // who was told has had it finished at once
  const Ref<UINavigationController> controller = controller_.lock();
  if (!controller) return;
  const double rest = complete ? 1 - fraction_ : fraction_;
  const double seconds = UINavigationController::transitionDuration * std::max(rest, 0.2);
  if (complete) {
    controller->showItems(true);
    controller->applyBars(true, seconds);
  }
  UIView::animateWithDuration(
      seconds, 0, UIViewAnimationCurve::easeOut, [&] { arrange(complete ? 1 : 0); },
      [weak = weak_from_this(), complete](bool) {
        if (const auto self = weak.lock()) self->end(complete);
      });
}

// ---- An animation controller

void NavigationTransition::runAnimator() {
  const Ref<UINavigationController> controller = controller_.lock();
  const CGRect whole = controller->content_->bounds();
  context_ = make<UIViewControllerContextTransitioning>(
      UIViewControllerContextTransitioning::Description{
          .container = controller->content_,
          .from = plan_.from,
          .to = plan_.to,
          .initialFrom = plan_.from->view()->frame(),
          .finalFrom = {},
          .initialTo = {},
          .finalTo = whole,
      },
      [weak = weak_from_this()](bool completed) {
        if (const auto self = weak.lock()) self->end(completed);
      });
  const Ref<UIViewControllerContextTransitioning> context = context_;
  const double seconds = plan_.animator->perform<double>(sel("transitionDuration:"), context);
  controller->applyBars(true, seconds);
  DispatchQueue::main().asyncAfter(std::max(0.0, seconds) + grace, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->finish();
  });
  plan_.animator->perform(sel("animateTransition:"), context);
}

}  // namespace platform
