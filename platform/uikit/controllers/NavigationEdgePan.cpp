#include "platform/uikit/controllers/NavigationEdgePan.h"

#include <cmath>

#include "platform/uikit/controllers/NavigationTransition.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace platform {

namespace {

/// Points a second that carry the screen away, or back, wherever the finger is.
constexpr double flickSpeed = 400;

}  // namespace

void NavigationEdgePan::exportMethods(MethodTable<NavigationEdgePan>& table) {
  table.add<&NavigationEdgePan::panned>("panned:")
      .add<&NavigationEdgePan::shouldBegin>("gestureRecognizerShouldBegin:")
      .add<&NavigationEdgePan::shouldReceiveTouch>("gestureRecognizer:shouldReceiveTouch:")
      .add<&NavigationEdgePan::othersWait>("gestureRecognizer:shouldBeRequiredToFailByGestureRecognizer:");
}

void NavigationEdgePan::init(const Ref<UINavigationController>& controller) {
  controller_ = controller;
  recognizer_ = make<UIPanGestureRecognizer>();
  recognizer_->addTarget(self(), sel("panned:"));
  recognizer_->setDelegate(self());
  recognizer_->setMaximumNumberOfTouches(1);
}

bool NavigationEdgePan::shouldReceiveTouch(Ref<UIGestureRecognizer>, Ref<UITouch> touch) {
  const Ref<UINavigationController> controller = controller_.lock();
  return controller && touch->locationInView(controller->view().get()).x <= edgeWidth &&
         controller->canPopInteractively();
}

bool NavigationEdgePan::shouldBegin(Ref<UIGestureRecognizer>) {
  const Ref<UINavigationController> controller = controller_.lock();
  if (!controller || !controller->canPopInteractively()) return false;
  const CGPoint speed = recognizer_->velocityInView(controller->view().get());
  return speed.x > std::abs(speed.y);
}

bool NavigationEdgePan::othersWait(Ref<UIGestureRecognizer>, Ref<UIGestureRecognizer> other) {
  return other->isKindOfClass(UIPanGestureRecognizer::cls());
}

void NavigationEdgePan::panned(Ref<UIGestureRecognizer>) {
  const Ref<UINavigationController> controller = controller_.lock();
  if (!controller) return;
  const UIView* const view = controller->view().get();
  const double fraction = recognizer_->translationInView(view).x / view->bounds().size.width;
  const auto state = recognizer_->state();
  using State = UIGestureRecognizerState;
  if (state == State::began) controller->beginInteractivePop();
  const std::shared_ptr<NavigationTransition> transition = controller->transition_;
  if (!transition || !transition->isInteractive()) return;
  if (state == State::began || state == State::changed) {
    transition->moveTo(fraction);
  } else {
    const double speed = recognizer_->velocityInView(view).x;
    const bool far = speed > flickSpeed || (fraction > 0.5 && speed > -flickSpeed);
    transition->release(state == State::ended && far);
  }
}

}  // namespace platform
