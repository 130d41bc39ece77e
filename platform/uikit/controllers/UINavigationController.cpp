#include "platform/uikit/controllers/UINavigationController.h"

#include <algorithm>
#include <utility>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/controllers/NavigationEdgePan.h"
#include "platform/uikit/controllers/NavigationTransition.h"
#include "platform/uikit/controllers/UILayoutContainerView.h"

namespace platform {

namespace {

template <class Stack>
bool contains(const Stack& stack, const Ref<UIViewController>& controller) {
  return std::find(stack.begin(), stack.end(), controller) != stack.end();
}

}  // namespace

UINavigationController::UINavigationController() = default;
UINavigationController::~UINavigationController() = default;

void UINavigationController::exportMethods(MethodTable<UINavigationController>& table) {
  table.add<&UINavigationController::pushViewController>("pushViewController:animated:")
      .add<&UINavigationController::popViewControllerAnimated>("popViewControllerAnimated:")
      .add<&UINavigationController::setNavigationBarHidden>("setNavigationBarHidden:animated:")
      .add<&UINavigationController::setToolbarHidden>("setToolbarHidden:animated:")
      .add<&UINavigationController::shouldPopItem>("navigationBar:shouldPopItem:");
}

void UINavigationController::init() {}

void UINavigationController::init(const Ref<UIViewController>& root) {
  init();
  if (root) pushViewController(root, false);
}

// ---- The stack

Ref<UIViewController> UINavigationController::topViewController() const {
  return children_.empty() ? nullptr : children_.back();
}

Ref<UIViewController> UINavigationController::visibleViewController() const {
  Ref<UIViewController> presented = presentedViewController();
  return presented ? presented : topViewController();
}

void UINavigationController::pushViewController(const Ref<UIViewController>& controller, bool animated) {
  if (!controller) return;
  if (contains(children_, controller)) {
    fatalError("a " + controller->isa().name() + " is pushed that is on the navigation stack already");
  }
  Stack stack = children_;
  stack.push_back(controller);
  change(std::move(stack), animated);
}

Ref<UIViewController> UINavigationController::popViewControllerAnimated(bool animated) {
  if (children_.size() < 2) return nullptr;
  const Ref<UIViewController> top = children_.back();
  change(Stack(children_.begin(), children_.end() - 1), animated);
  return top;
}

std::vector<Ref<UIViewController>> UINavigationController::popToRootViewControllerAnimated(bool animated) {
  return children_.size() < 2 ? Stack() : popToViewController(children_.front(), animated);
}

std::vector<Ref<UIViewController>> UINavigationController::popToViewController(const Ref<UIViewController>& controller,
                                                                               bool animated) {
  const auto place = std::find(children_.begin(), children_.end(), controller);
  if (place == children_.end()) fatalError("popToViewController names a controller that is not on the stack");
  Stack gone(place + 1, children_.end());
  if (!gone.empty()) change(Stack(children_.begin(), place + 1), animated);
  return gone;
}

void UINavigationController::setViewControllers(std::vector<Ref<UIViewController>> controllers, bool animated) {
  std::erase(controllers, nullptr);
  for (std::size_t i = 1; i < controllers.size(); ++i) {
    if (std::find(controllers.begin(), controllers.begin() + static_cast<std::ptrdiff_t>(i), controllers[i]) !=
        controllers.begin() + static_cast<std::ptrdiff_t>(i)) {
      fatalError("a navigation stack is set that holds a " + controllers[i]->isa().name() + " twice");
    }
  }
  if (controllers != children_) change(std::move(controllers), animated);
}

/// The one way the stack changes: at once, the screen after it when nothing stands in its way.
void UINavigationController::change(Stack stack, bool animated) {
  const auto keeper = self();
  children_ = std::move(stack);
  adopt();
  if (settling_ || transition_ || childrenAwaitAppearance_ || appearance_ == Appearance::appearing ||
      appearance_ == Appearance::disappearing) {
    waiting_ = true;
    waitingAnimated_ = animated;
    if (!settling_ && transition_ && !animated) transition_->finish();
  } else {
    follow(animated);
  }
}

/// Becomes the parent of what is new on the stack.
void UINavigationController::adopt() {
  const bool before = std::exchange(settling_, true);
  const Ref<UIViewController> me = self();
  const Stack stack = children_;
  for (const Ref<UIViewController>& controller : stack) {
    if (contains(adopted_, controller)) continue;
    if (controller->parentViewController()) controller->removeFromParentViewController();
    adopted_.push_back(controller);
    entering_.push_back(controller);
    controller->movingToParent_ = true;
    controller->willMoveToParent(me);
    controller->parent_ = me;
  }
  settling_ = before;
}

UINavigationController::Stack UINavigationController::leaving() const {
  Stack leaving;
  for (const Ref<UIViewController>& controller : adopted_) {
    if (!contains(children_, controller)) leaving.push_back(controller);
  }
  return leaving;
}

void UINavigationController::announceLeaving(const Stack& leaving) {
  for (auto controller = leaving.rbegin(); controller != leaving.rend(); ++controller) {
    (*controller)->movingFromParent_ = true;
    (*controller)->willMoveToParent(nullptr);
  }
}

void UINavigationController::finishEntering(const Stack& entering) {
  const Ref<UIViewController> me = self();
  for (const Ref<UIViewController>& controller : entering) controller->didMoveToParent(me);
  for (const Ref<UIViewController>& controller : entering) controller->movingToParent_ = false;
}

void UINavigationController::finishLeaving(const Stack& leaving) {
  for (auto controller = leaving.rbegin(); controller != leaving.rend(); ++controller) {
    const Ref<UIViewController> gone = *controller;
    std::erase(adopted_, gone);
    std::erase(entering_, gone);
    gone->parent_.reset();
    gone->setBarInsets({});
    gone->didMoveToParent(nullptr);
    gone->movingToParent_ = gone->movingFromParent_ = false;
  }
}

// ---- From the stack to the screen

/// Shows the top of the stack, or tells those below it what became of them.
void UINavigationController::follow(bool animated) {
  if (appearance_ == Appearance::disappeared) return followSilently();
  if (appearance_ != Appearance::appeared) {
    waiting_ = true;
    waitingAnimated_ = animated;
    return;
  }
  const Ref<UIViewController> top = topViewController();
  if (top != shown_) return begin(top, animated, false);
  followSilently();
}

/// The screen stays, or there is none: only parents change.
void UINavigationController::followSilently() {
  settling_ = true;
  const Stack going = leaving();
  announceLeaving(going);
  if (shown_ && shown_ != topViewController()) {
    if (shown_->isViewLoaded()) shown_->view()->removeFromSuperview();
    shown_ = nullptr;
  }
  showItems(false);
  finishEntering(std::exchange(entering_, {}));
  finishLeaving(going);
  settled_ = children_;
  settling_ = false;
  adopt();
  if (std::exchange(waiting_, false)) follow(waitingAnimated_);
}

void UINavigationController::begin(const Ref<UIViewController>& to, bool animated, bool interactive) {
  using Operation = UINavigationControllerOperation;
  settling_ = true;
  const Ref<UIViewController> from = shown_;
  NavigationTransition::Plan plan;
  plan.from = from;
  plan.to = to;
  plan.animated = animated;
  plan.before = settled_;
  plan.leaving = leaving();
  plan.entering = std::exchange(entering_, {});
  std::erase_if(plan.entering, [&](const Ref<UIViewController>& one) { return contains(plan.leaving, one); });
  if (from && to) plan.operation = contains(plan.entering, to) ? Operation::push : Operation::pop;
  if (animated && from && to && !interactive) plan.animator = animationControllerFor(plan.operation, from, to);

  // A finger may still take it back: then nobody is told to leave before it lets go.
  if (interactive) {
    for (const Ref<UIViewController>& controller : plan.leaving) controller->movingFromParent_ = true;
  } else {
    announceLeaving(plan.leaving);
  }
  arriving_ = to;
  if (to) to->loadViewIfNeeded();
  if (from) from->beginAppearanceTransition(false, animated);
  if (to) {
    makeRoom(from);
    fit(to);
    updateInsets();
    to->beginAppearanceTransition(true, animated);
    tellDelegate("navigationController:willShowViewController:animated:", to, animated);
  }
  transition_ = std::make_shared<NavigationTransition>(self(), std::move(plan));
  as<UILayoutContainerView>(view_)->setBlocksTouches(true);
  updateInsets();
  settling_ = false;
  const std::shared_ptr<NavigationTransition> transition = transition_;
  if (interactive) {
    transition->startInteractive();
  } else {
    transition->start();
  }
}

void UINavigationController::transitionEnded(bool completed) {
  const auto keeper = self();
  settling_ = true;
  const std::shared_ptr<NavigationTransition> transition = std::exchange(transition_, nullptr);
  const NavigationTransition::Plan& plan = transition->plan();
  arriving_ = nullptr;
  as<UILayoutContainerView>(view_)->setBlocksTouches(false);
  if (completed) {
    if (plan.from && plan.from->isViewLoaded()) plan.from->view()->removeFromSuperview();
    shown_ = plan.to;
    if (plan.to) place(plan.to);
    if (plan.from) plan.from->endAppearanceTransition();
    if (plan.to) plan.to->endAppearanceTransition();
    finishEntering(plan.entering);
    finishLeaving(plan.leaving);
    settled_ = children_;
    if (plan.to) tellDelegate("navigationController:didShowViewController:animated:", plan.to, plan.animated);
  } else {
    if (!waiting_) children_ = plan.before;
    goBackTo(plan.from, plan.to);
    const Ref<UIViewController> me = self();
    for (const Ref<UIViewController>& controller : plan.leaving) {
      controller->movingFromParent_ = false;
      if (transition->isCertain()) controller->didMoveToParent(me);  // it had been told to leave
    }
    announceLeaving(plan.entering);
    finishLeaving(plan.entering);
    showItems(plan.animated);
    applyBars(plan.animated, transitionDuration);
  }
  settling_ = false;
  adopt();
  if (std::exchange(waiting_, false)) follow(waitingAnimated_);
}

/// A cancelled transition: the screen that was coming goes, the one that was going comes.
void UINavigationController::goBackTo(const Ref<UIViewController>& from, const Ref<UIViewController>& to) {
  to->beginAppearanceTransition(false, false);
  to->view()->removeFromSuperview();
  to->endAppearanceTransition();
  from->beginAppearanceTransition(true, false);
  place(from);
  from->endAppearanceTransition();
}

// ---- Appearance of the whole

void UINavigationController::forwardAppearanceBegin(bool appearing, bool animated) {
  if (!appearing) {
    if (transition_) transition_->finish();
    if (shown_) shown_->beginAppearanceTransition(false, animated);
    return;
  }
  settling_ = true;
  const Ref<UIViewController> top = topViewController();
  if (shown_ && shown_ != top && shown_->isViewLoaded()) shown_->view()->removeFromSuperview();
  shown_ = top;
  settled_ = children_;
  showItems(false);
  applyBars(false, 0);
  if (top) {
    top->loadViewIfNeeded();
    fit(top);
    top->beginAppearanceTransition(true, animated);
    place(top);
    tellDelegate("navigationController:willShowViewController:animated:", top, animated);
  }
  settling_ = false;
}

void UINavigationController::viewDidAppear(bool animated) {
  Super::viewDidAppear(animated);
  handAppearanceOn(animated);
}

void UINavigationController::forwardAppearanceEnd(bool appeared, bool animated) {
  if (shown_) shown_->endAppearanceTransition();
  if (appeared && shown_) tellDelegate("navigationController:didShowViewController:animated:", shown_, animated);
  if (!waiting_) return;
  DispatchQueue::main().async([weak = weakSelf()] {
    const auto self = weak.lock();
    if (self && !self->transition_ && std::exchange(self->waiting_, false)) self->follow(self->waitingAnimated_);
  });
}

// ---- The delegate, and the finger from the edge

Ref<NSObject> UINavigationController::animationControllerFor(UINavigationControllerOperation operation,
                                                             const Ref<UIViewController>& from,
                                                             const Ref<UIViewController>& to) {
  static const SEL selector =
      sel("navigationController:animationControllerForOperation:fromViewController:toViewController:");
  return askOptional<Ref<NSObject>>(delegate(), selector, self(), operation, from, to).value_or(nullptr);
}

void UINavigationController::tellDelegate(const char* selector, const Ref<UIViewController>& shown, bool animated) {
  sendOptional(delegate(), sel(selector), self(), shown, animated);
}

bool UINavigationController::canPopInteractively() {
  if (children_.size() < 2 || transition_ || settling_ || appearance_ != Appearance::appeared) return false;
  if (navigationBarHidden_ || children_.back()->navigationItem()->hidesBackButton()) return false;
  return !animationControllerFor(UINavigationControllerOperation::pop, children_.back(),
                                 children_[children_.size() - 2]);
}

void UINavigationController::beginInteractivePop() {
  if (!canPopInteractively()) return;
  const auto keeper = self();
  children_.pop_back();
  begin(children_.back(), true, true);
}

}  // namespace platform
