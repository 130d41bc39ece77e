#include "platform/uikit/controllers/UITabBarController.h"

#include <algorithm>
#include <utility>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/controllers/UILayoutContainerView.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/device/UIScreen.h"

namespace platform {

namespace {

/// Holds the view of the selected screen. Its name is what a reader of the tree expects there.
class UITransitionView : public Object<UITransitionView, UIView> {};

constexpr unsigned fillsSuperview = UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight;

}  // namespace

UITabBarController::UITabBarController() = default;
UITabBarController::~UITabBarController() = default;

void UITabBarController::exportMethods(MethodTable<UITabBarController>& table) {
  table.add<&UITabBarController::selectedIndex>("selectedIndex")
      .add<&UITabBarController::setSelectedIndex>("setSelectedIndex:");
}

// ---- Screens

void UITabBarController::setViewControllers(std::vector<Ref<UIViewController>> controllers, bool) {
  std::erase(controllers, nullptr);
  if (controllers == children_) return;
  const Ref<UIViewController> me = self();
  const auto old = std::exchange(children_, std::move(controllers));
  const auto isIn = [](const auto& list, const Ref<UIViewController>& one) {
    return std::find(list.begin(), list.end(), one) != list.end();
  };
  std::vector<Ref<UIViewController>> gone;
  std::vector<Ref<UIViewController>> fresh;
  for (const Ref<UIViewController>& one : old) {
    if (!isIn(children_, one)) gone.push_back(one);
  }
  for (const Ref<UIViewController>& one : children_) {
    if (!isIn(old, one)) fresh.push_back(one);
  }
  for (const Ref<UIViewController>& one : gone) {
    one->movingFromParent_ = true;
    one->willMoveToParent(nullptr);
  }
  for (const Ref<UIViewController>& one : fresh) {
    if (one->parentViewController()) one->removeFromParentViewController();
    one->movingToParent_ = true;
    one->willMoveToParent(me);
    one->parent_ = me;
  }
  updateItems();
  if (!isIn(children_, selected_)) {
    select(children_.empty() ? nullptr : children_.front());
  } else {
    tabBar()->setSelectedItem(selected_->tabBarItem());
  }
  for (const Ref<UIViewController>& one : fresh) {
    one->didMoveToParent(me);
    one->movingToParent_ = false;
  }
  for (const Ref<UIViewController>& one : gone) {
    if (one->parent_.lock() == me) one->parent_.reset();
    one->setBarInsets({});
    one->didMoveToParent(nullptr);
    one->movingFromParent_ = false;
  }
}

std::int64_t UITabBarController::selectedIndex() const {
  const auto place = std::find(children_.begin(), children_.end(), selected_);
  return selected_ && place != children_.end() ? place - children_.begin() : -1;
}

void UITabBarController::setSelectedIndex(std::int64_t index) {
  if (index < 0 || index >= static_cast<std::int64_t>(children_.size())) return;
  select(children_[static_cast<std::size_t>(index)]);
}

void UITabBarController::setSelectedViewController(const Ref<UIViewController>& controller) {
  if (std::find(children_.begin(), children_.end(), controller) != children_.end()) select(controller);
}

/// The screen follows the selection; a selection made by a callback on the way is followed next.
void UITabBarController::select(const Ref<UIViewController>& controller) {
  selected_ = controller;
  tabBar()->setSelectedItem(controller ? controller->tabBarItem() : nullptr);
  if (selecting_ || childrenAwaitAppearance_) return;
  if (appearance_ == Appearance::appearing || appearance_ == Appearance::disappearing) return;
  const auto keeper = self();
  selecting_ = true;
  for (int turns = 0; shown_ != selected_ && turns < 16; ++turns) {
    const Ref<UIViewController> from = std::exchange(shown_, nullptr);
    const Ref<UIViewController> to = selected_;
    const bool onScreen = appearance_ == Appearance::appeared;
    if (onScreen && to) {
      to->loadViewIfNeeded();
      fit(to);
      to->beginAppearanceTransition(true, false);
    }
    if (onScreen && from) from->beginAppearanceTransition(false, false);
    if (from && from->isViewLoaded()) from->view()->removeFromSuperview();
    if (!onScreen) break;  // shown when this controller appears
    shown_ = to;
    if (to) content_->addSubview(to->view());
    layOut();
    if (from) from->endAppearanceTransition();
    if (to) to->endAppearanceTransition();
  }
  selecting_ = false;
}

// ---- The tab bar

Ref<UITabBar> UITabBarController::tabBar() {
  if (!tabBar_) {
    tabBar_ = make<UITabBar>(CGRect{0, 0, UIScreen::main().bounds().size.width, UITabBar::standardHeight});
    tabBar_->host_ = self();
  }
  return tabBar_;
}

void UITabBarController::updateItems() {
  std::vector<Ref<UITabBarItem>> items;
  for (const Ref<UIViewController>& one : children_) items.push_back(one->tabBarItem());
  tabBar()->setItems(std::move(items));
  if (selected_ && selectedIndex() >= 0) tabBar_->setSelectedItem(selected_->tabBarItem());
}

/// A person's tap: the delegate may refuse, and is told.
void UITabBarController::itemTapped(const Ref<UITabBarItem>& item) {
  const auto place = std::find_if(children_.begin(), children_.end(),
                                  [&](const Ref<UIViewController>& one) { return one->tabBarItem() == item; });
  if (place == children_.end()) return;
  const auto keeper = self();
  const Ref<UIViewController> controller = *place;
  static const SEL shouldSelect = sel("tabBarController:shouldSelectViewController:");
  static const SEL didSelect = sel("tabBarController:didSelectViewController:");
  if (!askOptional<bool>(delegate(), shouldSelect, self(), controller).value_or(true)) return;
  if (controller == selected_) {
    if (const auto navigation = as<UINavigationController>(controller))
      navigation->popToRootViewControllerAnimated(true);
  } else {
    select(controller);
  }
  sendOptional(delegate(), didSelect, self(), controller);
}

bool UITabBarController::isTabBarPushedAway() const {
  const auto hides = [](const Ref<UIViewController>& one) { return one->hidesBottomBarWhenPushed(); };
  const auto navigation = as<UINavigationController>(selected_);
  if (!navigation) return false;
  const auto& stack = navigation->viewControllers();
  return std::any_of(stack.begin(), stack.end(), hides);
}

// ---- View and layout

void UITabBarController::loadView() {
  auto container = make<UILayoutContainerView>(UIScreen::main().bounds());
  container->setAutoresizingMask(fillsSuperview);
  container->setClipsToBounds(true);
  content_ = make<UITransitionView>(container->bounds());
  content_->setAutoresizingMask(fillsSuperview);
  container->addSubview(content_);
  container->addSubview(tabBar());
  container->setLayout([weak = weakSelf()] {
    if (const auto self = weak.lock()) self->layOut();
  });
  setView(container);
  layOut();
}

void UITabBarController::fit(const Ref<UIViewController>& controller) {
  controller->view()->setFrame(content_->bounds());
  controller->view()->setAutoresizingMask(fillsSuperview);
  const bool takesRoom = !tabBar_->isHidden() && !isTabBarPushedAway();
  controller->setBarInsets({.bottom = takesRoom ? UITabBar::standardHeight : 0});
}

void UITabBarController::layOut() {
  if (!isViewLoaded() || !content_) return;
  const CGSize size = view_->bounds().size;
  content_->setFrame(view_->bounds());
  const double height = UITabBar::standardHeight + view_->safeAreaInsets().bottom;
  const double x = isTabBarPushedAway() ? -size.width : 0;
  tabBar()->setFrame({x, size.height - height, size.width, height});
  if (shown_ && shown_->isViewLoaded()) fit(shown_);
}

void UITabBarController::makeRoom() {
  if (shown_ && shown_->isViewLoaded() && content_) fit(shown_);
}

void UITabBarController::forwardAppearanceBegin(bool appearing, bool animated) {
  if (!appearing) {
    if (shown_) shown_->beginAppearanceTransition(false, animated);
    return;
  }
  shown_ = selected_;
  layOut();
  if (!shown_) return;
  shown_->loadViewIfNeeded();
  fit(shown_);
  shown_->beginAppearanceTransition(true, animated);
  if (shown_->view()->superview() != content_) content_->addSubview(shown_->view());
}

void UITabBarController::viewDidAppear(bool animated) {
  Super::viewDidAppear(animated);
  handAppearanceOn(animated);
}

void UITabBarController::forwardAppearanceEnd(bool, bool) {
  if (shown_) shown_->endAppearanceTransition();
  if (shown_ != selected_)
    DispatchQueue::main().async([weak = weakSelf()] {
      if (const auto self = weak.lock()) self->select(self->selected_);
    });
}

}  // namespace platform
