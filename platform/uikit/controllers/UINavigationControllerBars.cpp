// Where the parts of a navigation controller stand: bars, screens, the room that they leave each other.

#include <algorithm>
#include <utility>

#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/controllers/NavigationEdgePan.h"
#include "platform/uikit/controllers/NavigationTransition.h"
#include "platform/uikit/controllers/UILayoutContainerView.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

namespace {

/// Holds the views of the screens. Its name is what a reader of the tree expects there.
class UINavigationTransitionView : public Object<UINavigationTransitionView, UIView> {};

constexpr unsigned fillsSuperview = UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight;

}  // namespace

void UINavigationController::loadView() {
  auto container = make<UILayoutContainerView>(UIScreen::main().bounds());
  container->setAutoresizingMask(fillsSuperview);
  container->setClipsToBounds(true);
  content_ = make<UINavigationTransitionView>(container->bounds());
  content_->setAutoresizingMask(fillsSuperview);
  content_->setClipsToBounds(true);
  container->addSubview(content_);
  container->addSubview(toolbar());
  container->addSubview(navigationBar());
  container->setLayout([weak = weakSelf()] {
    if (const auto self = weak.lock()) self->layOut();
  });
  container->addGestureRecognizer(interactivePopGestureRecognizer());
  setView(container);
  showItems(false);
  layOutBars();
  settleBars();
}

Ref<UIGestureRecognizer> UINavigationController::interactivePopGestureRecognizer() {
  if (!edgePan_) edgePan_ = make<NavigationEdgePan>(self());
  return edgePan_->recognizer();
}

// ---- Screens

void UINavigationController::layOut() {
  content_->setFrame(view_->bounds());
  if (shown_ && shown_->isViewLoaded()) fit(shown_);
  if (arriving_ && arriving_->isViewLoaded()) fit(arriving_);
  layOutBars();
}

void UINavigationController::fit(const Ref<UIViewController>& controller) {
  const CGRect whole = content_->bounds();
  const Ref<UIView>& view = controller->view();
  view->setBounds({view->bounds().origin, whole.size});
  view->setCenter(whole.center());
  view->setAutoresizingMask(fillsSuperview);
}

/// Before a screen comes: the tab bar's room is given or taken first, so that the screen is laid out once, as it will
/// stand. The screen that goes keeps what it had.
void UINavigationController::makeRoom(const Ref<UIViewController>& leaving) {
  const Ref<UITabBarController> tabs = tabBarController();
  if (!tabs) return;
  const double before = view_->safeAreaInsets().bottom;
  tabs->makeRoom();
  const double taken = before - view_->safeAreaInsets().bottom;
  if (!leaving || taken == 0) return;
  UIEdgeInsets kept = leaving->barInsets_;
  kept.bottom += taken;
  leaving->setBarInsets(kept);
}

void UINavigationController::place(const Ref<UIViewController>& controller) {
  fit(controller);
  if (controller->view()->superview() != content_) content_->addSubview(controller->view());
  updateInsets();
  controller->view()->updateSafeAreaInsets();
}

void UINavigationController::updateInsets() {
  const Ref<UIViewController>& screen = arriving_ ? arriving_ : shown_;
  if (!screen || !bar_) return;
  screen->setBarInsets({.top = navigationBarHidden_ ? 0 : bar_->contentHeight(),
                        .bottom = toolbarHidden_ ? 0 : UIToolbar::standardHeight});
}

// ---- Bars

Ref<UINavigationBar> UINavigationController::navigationBar() {
  if (!bar_) {
    bar_ = make<UINavigationBar>(CGRect{0, 0, UIScreen::main().bounds().size.width, UINavigationBar::standardHeight});
    bar_->setDelegate(self());
    bar_->host_ = self();
    showItems(false);
  }
  return bar_;
}

Ref<UIToolbar> UINavigationController::toolbar() {
  if (!toolbar_) {
    toolbar_ = make<UIToolbar>(CGRect{0, 0, UIScreen::main().bounds().size.width, UIToolbar::standardHeight});
  }
  return toolbar_;
}

void UINavigationController::setNavigationBarHidden(bool hidden, bool animated) {
  if (navigationBarHidden_ == hidden) return;
  navigationBarHidden_ = hidden;
  if (settling_ && animated) return;  // the transition that begins moves the bar along with the screens
  if (isViewLoaded()) applyBars(animated && view_->window(), hideShowBarDuration);
}

void UINavigationController::setToolbarHidden(bool hidden, bool animated) {
  if (toolbarHidden_ == hidden) return;
  toolbarHidden_ = hidden;
  if (settling_ && animated) return;
  if (isViewLoaded()) applyBars(animated && view_->window(), hideShowBarDuration);
}

void UINavigationController::applyBars(bool animated, double seconds) {
  const Ref<UITabBarController> tabs = tabBarController();
  const auto move = [this, &tabs] {
    layOutBars();
    if (tabs) tabs->layOut();
  };
  if (!animated) {
    UIView::performWithoutAnimation(move);
    settleBars();
    return;
  }
  if (!navigationBarHidden_) bar_->setHidden(false);
  if (!toolbarHidden_) toolbar_->setHidden(false);
  UIView::animateWithDuration(
      seconds, 0, UIViewAnimationCurve::easeInOut,
      [&] {
        move();
        view_->layoutIfNeeded();
      },
      [weak = weakSelf()](bool) {
        if (const auto self = weak.lock()) self->settleBars();
      });
}

void UINavigationController::settleBars() {
  bar_->setHidden(navigationBarHidden_);
  toolbar_->setHidden(toolbarHidden_);
}

/// A hidden bar lies just outside the edge, so that it slides from there when it comes.
void UINavigationController::layOutBars() {
  const CGSize size = view_->bounds().size;
  const UIEdgeInsets safe = view_->safeAreaInsets();
  const double height = bar_->contentHeight();
  bar_->setTopExtension(safe.top);
  bar_->setFrame({0, navigationBarHidden_ ? -height : safe.top, size.width, height});
  toolbar_->setBottomExtension(safe.bottom);
  const double toolbarTop = toolbarHidden_ ? size.height : size.height - safe.bottom - UIToolbar::standardHeight;
  toolbar_->setFrame({0, toolbarTop, size.width, UIToolbar::standardHeight});
  updateInsets();
}

void UINavigationController::showItems(bool animated) {
  if (!bar_) return;
  std::vector<Ref<UINavigationItem>> items;
  for (const Ref<UIViewController>& controller : children_) items.push_back(controller->navigationItem());
  const double before = bar_->contentHeight();
  bar_->setItems(std::move(items), animated);
  if (const Ref<UIViewController> top = topViewController()) toolbar()->setItems(top->toolbarItems(), animated);
  if (bar_->contentHeight() != before) barHeightDidChange(animated);
}

void UINavigationController::barHeightDidChange(bool animated) {
  if (isViewLoaded() && !settling_ && !transition_) applyBars(animated && view_->window(), hideShowBarDuration);
}

void UINavigationController::toolbarItemsDidChange(const UIViewController& controller, bool animated) {
  if (topViewController().get() == &controller) toolbar()->setItems(controller.toolbarItems(), animated);
}

bool UINavigationController::shouldPopItem(Ref<NSObject>, Ref<NSObject>) {
  popViewControllerAnimated(true);
  return false;  // the bar follows the stack
}

}  // namespace platform
