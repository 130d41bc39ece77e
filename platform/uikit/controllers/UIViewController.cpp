#include "platform/uikit/controllers/UIViewController.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/controllers/ModalPresentation.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UIViewStorage.h"

namespace platform {

UIViewController::UIViewController() = default;

UIViewController::~UIViewController() {
  if (view_) UIView::hierarchyChanged();
}

void UIViewController::exportMethods(MethodTable<UIViewController>& table) {
  Class& cls = table.owner();
  Exchangeable<&UIViewController::viewDidAppear, &UIViewController::platformViewDidAppear>::addTo(cls,
                                                                                                  "viewDidAppear:");
  Exchangeable<&UIViewController::viewWillDisappear, &UIViewController::platformViewWillDisappear>::addTo(
      cls, "viewWillDisappear:");
  Exchangeable<&UIViewController::willMoveToParent, &UIViewController::platformWillMoveToParent>::addTo(
      cls, "willMoveToParentViewController:");
  Exchangeable<&UIViewController::prepareForSegue, &UIViewController::platformPrepareForSegue>::addTo(
      cls, "prepareForSegue:sender:");
  table.add<&UIViewController::viewWillAppear>("viewWillAppear:")
      .add<&UIViewController::viewDidDisappear>("viewDidDisappear:")
      .add<&UIViewController::didMoveToParent>("didMoveToParentViewController:")
      .add<&UIViewController::performSegue>("performSegueWithIdentifier:sender:")
      .add<&UIViewController::title>("title")
      .add<&UIViewController::setTitle>("setTitle:");
}

// ---- View

const Ref<UIView>& UIViewController::view() {
  if (view_ || loadingView_) return view_;
  const Ref<UIViewController> keeper = self();
  loadingView_ = true;
  loadView();
  loadingView_ = false;
  if (!view_) UIViewController::loadView();
  viewDidLoad();
  return view_;
}

Ref<UIViewController> UIView::viewController() const {
  return std::static_pointer_cast<UIViewController>(storage_->host.lock());
}

void UIViewController::setView(const Ref<UIView>& view) {
  if (view_ == view) return;
  const Ref<UIViewController> keeper = self();
  UIView::hierarchyChanged();
  if (view_ && view_->viewController() == keeper) view_->storage_->host.reset();
  view_ = view;
  if (!view_) return;
  view_->storage_->host = keeper;
  view_->updateSafeAreaInsets();
}

void UIViewController::loadView() {
  auto view = make<UIView>(UIScreen::main().bounds());
  view->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  setView(view);
}

void UIViewController::setTitle(const std::string& title) {
  title_ = title;
  if (navigationItem_) navigationItem_->setTitle(title);
  if (tabBarItem_) tabBarItem_->setTitle(title);
}

Ref<UIResponder> UIViewController::nextResponder() {
  if (const Ref<UIViewController> presenting = presenting_.lock()) return presenting;
  return view_ ? view_->superview() : nullptr;
}

// ---- Appearance

void UIViewController::viewWillAppear(bool) {}
void UIViewController::viewDidDisappear(bool) {}
void UIViewController::platformViewDidAppear(bool) {}
void UIViewController::platformViewWillDisappear(bool) {}

void UIViewController::beginAppearanceTransition(bool appearing, bool animated) {
  const Appearance wanted = appearing ? Appearance::appearing : Appearance::disappearing;
  const Appearance reached = appearing ? Appearance::appeared : Appearance::disappeared;
  if (appearance_ == wanted || appearance_ == reached) return;
  const Ref<UIViewController> keeper = self();
  if (appearing) loadViewIfNeeded();
  appearance_ = wanted;
  appearanceAnimated_ = animated;
  if (appearing) {
    viewWillAppear(animated);
  } else {
    viewWillDisappear(animated);
  }
  if (appearance_ == wanted) forwardAppearanceBegin(appearing, animated);
}

void UIViewController::endAppearanceTransition() {
  if (appearance_ != Appearance::appearing && appearance_ != Appearance::disappearing) return;
  const Ref<UIViewController> keeper = self();
  const bool appeared = appearance_ == Appearance::appearing;
  const bool animated = appearanceAnimated_;
  appearance_ = appeared ? Appearance::appeared : Appearance::disappeared;
  if (!appeared) {
    forwardAppearanceEnd(false, animated);
    return viewDidDisappear(animated);
  }
  childrenAwaitAppearance_ = true;
  if (!appearsBeforeItsChildren()) handAppearanceOn(animated);
  viewDidAppear(animated);
  handAppearanceOn(animated);  // also when an override left its base out
}

void UIViewController::handAppearanceOn(bool animated) {
  if (!std::exchange(childrenAwaitAppearance_, false)) return;
  if (appearance_ == Appearance::appeared) forwardAppearanceEnd(true, animated);
}

void UIViewController::forwardAppearanceBegin(bool appearing, bool animated) {
  const auto children = childViewControllers();
  for (const Ref<UIViewController>& child : children) {
    if (child->view_ && child->view_->isDescendantOfView(view_.get())) {
      child->beginAppearanceTransition(appearing, animated);
    }
  }
}

void UIViewController::forwardAppearanceEnd(bool appeared, bool) {
  const Appearance underWay = appeared ? Appearance::appearing : Appearance::disappearing;
  const auto children = childViewControllers();
  for (const Ref<UIViewController>& child : children) {
    if (child->appearance_ == underWay) child->endAppearanceTransition();
  }
}

void UIViewController::viewWillMoveToWindow(const Ref<UIWindow>& window) {
  const bool appearing = window != nullptr;
  if (appearance_ != (appearing ? Appearance::disappeared : Appearance::appeared)) return;
  appearanceByWindow_ = true;
  beginAppearanceTransition(appearing, false);
}

void UIViewController::viewDidMoveToWindow(const Ref<UIWindow>&) {
  if (std::exchange(appearanceByWindow_, false)) endAppearanceTransition();
}

// ---- Containment

void UIViewController::addChildViewController(const Ref<UIViewController>& child) {
  if (!child || child.get() == this) return;
  const Ref<UIViewController> old = child->parentViewController();
  if (old.get() == this) return;
  if (old) child->removeFromParentViewController();
  const Ref<UIViewController> keeper = self();
  // The platform's containers keep books of their own.
  if (const auto navigation = as<UINavigationController>(keeper)) return navigation->pushViewController(child, false);
  if (const auto tabs = as<UITabBarController>(keeper)) {
    auto all = children_;
    all.push_back(child);
    return tabs->setViewControllers(std::move(all));
  }
  child->movingToParent_ = true;
  child->willMoveToParent(keeper);
  children_.push_back(child);
  child->parent_ = keeper;
}

void UIViewController::removeFromParentViewController() {
  const Ref<UIViewController> parent = parentViewController();
  if (!parent) return;
  const Ref<UIViewController> keeper = self();
  const auto without = [&] {
    auto rest = parent->childViewControllers();
    std::erase(rest, keeper);
    return rest;
  };
  if (const auto navigation = as<UINavigationController>(parent)) {
    navigation->setViewControllers(without(), false);
  } else if (const auto tabs = as<UITabBarController>(parent)) {
    tabs->setViewControllers(without(), false);
  } else {
    std::erase(parent->children_, keeper);
    parent_.reset();
    didMoveToParent(nullptr);
  }
}

void UIViewController::platformWillMoveToParent(Ref<UIViewController> parent) {
  if (!parent && !parent_.expired()) movingFromParent_ = true;
}

void UIViewController::didMoveToParent(const Ref<UIViewController>& parent) {
  movingToParent_ = false;
  if (!parent) movingFromParent_ = false;
}

Ref<UIViewController> UIViewController::rootAncestor() {
  Ref<UIViewController> root = self();
  while (const Ref<UIViewController> parent = root->parentViewController()) root = parent;
  return root;
}

// ---- Presentation

void UIViewController::presentViewController(const Ref<UIViewController>& controller, bool animated,
                                             std::function<void()> completion) {
  if (controller) ModalPresentation::present(rootAncestor(), controller, animated, std::move(completion));
}

void UIViewController::dismissViewController(bool animated, std::function<void()> completion) {
  Ref<UIViewController> presenting = rootAncestor();
  if (!presenting->presented_) presenting = presentingViewController();
  if (presenting) ModalPresentation::dismiss(presenting, animated, std::move(completion));
}

Ref<UIViewController> UIViewController::presentedViewController() const {
  if (presented_) return presented_;
  const Ref<UIViewController> parent = parentViewController();
  return parent ? parent->presentedViewController() : nullptr;
}

Ref<UIViewController> UIViewController::presentingViewController() const {
  if (Ref<UIViewController> presenting = presenting_.lock()) return presenting;
  const Ref<UIViewController> parent = parentViewController();
  return parent ? parent->presentingViewController() : nullptr;
}

// ---- Containers around

Ref<UINavigationController> UIViewController::navigationController() const {
  Ref<UIViewController> at = parentViewController();
  while (at) {
    if (auto navigation = as<UINavigationController>(at)) return navigation;
    at = at->parentViewController();
  }
  return nullptr;
}

Ref<UITabBarController> UIViewController::tabBarController() const {
  Ref<UIViewController> at = parentViewController();
  while (at) {
    if (auto tabs = as<UITabBarController>(at)) return tabs;
    at = at->parentViewController();
  }
  return nullptr;
}

const Ref<UINavigationItem>& UIViewController::navigationItem() {
  if (!navigationItem_) {
    navigationItem_ = make<UINavigationItem>();
    if (!title_.empty()) navigationItem_->setTitle(title_);
  }
  return navigationItem_;
}

const Ref<UITabBarItem>& UIViewController::tabBarItem() {
  if (tabBarItem_) return tabBarItem_;
  // A navigation controller without an item of its own stands in the tab bar with that of its root.
  const auto& children = childViewControllers();
  if (!children.empty() && isKindOfClass(UINavigationController::cls())) return children.front()->tabBarItem();
  tabBarItem_ = make<UITabBarItem>();
  if (!title_.empty()) tabBarItem_->setTitle(title_);
  return tabBarItem_;
}

void UIViewController::setTabBarItem(const Ref<UITabBarItem>& item) {
  tabBarItem_ = item;
  if (const Ref<UITabBarController> tabs = tabBarController()) tabs->updateItems();
}

void UIViewController::setToolbarItems(std::vector<Ref<UIBarButtonItem>> items, bool animated) {
  toolbarItems_ = std::move(items);
  if (const Ref<UINavigationController> navigation = navigationController()) {
    navigation->toolbarItemsDidChange(*this, animated);
  }
}

// ---- Safe area

void UIViewController::setAdditionalSafeAreaInsets(UIEdgeInsets insets) {
  if (additionalSafeAreaInsets_ == insets) return;
  additionalSafeAreaInsets_ = insets;
  if (view_) view_->updateSafeAreaInsets();
}

void UIViewController::setBarInsets(UIEdgeInsets insets) {
  if (barInsets_ == insets) return;
  barInsets_ = insets;
  if (view_) view_->updateSafeAreaInsets();
}

UIEdgeInsets UIViewController::safeAreaContribution() const {
  return {additionalSafeAreaInsets_.top + barInsets_.top, additionalSafeAreaInsets_.left + barInsets_.left,
          additionalSafeAreaInsets_.bottom + barInsets_.bottom, additionalSafeAreaInsets_.right + barInsets_.right};
}

// ---- Segues

void UIViewController::registerSegue(const std::string& identifier, SegueKind kind,
                                     std::function<Ref<UIViewController>()> destination) {
  segues_[identifier] = {kind, std::move(destination)};
}

bool UIViewController::shouldPerformSegue(const std::string&, const Ref<NSObject>&) { return true; }

void UIViewController::performSegue(const std::string& identifier, const Ref<NSObject>& sender) {
  const auto known = segues_.find(identifier);
  const bool mayBeUnknown = std::exchange(unknownSegueIsPassedOver_, false);
  if (known == segues_.end()) {
    if (mayBeUnknown) return;
    fatalError(isa().name() + " has no segue with identifier '" + identifier + "'");
  }
  const Segue plan = known->second;
  const Ref<UIViewController> destination = plan.destination();
  if (!destination) return;
  const auto segue = make<UIStoryboardSegue>(identifier, plan.kind, self(), destination);
  prepareForSegue(segue, sender);
  segue->perform();
}

void UIViewController::performSegueIfKnown(const std::string& identifier, const Ref<NSObject>& sender) {
  const Ref<UIViewController> keeper = self();
  unknownSegueIsPassedOver_ = true;
  performSegue(identifier, sender);
  unknownSegueIsPassedOver_ = false;
}

void UIViewController::platformPrepareForSegue(Ref<UIStoryboardSegue>, Ref<NSObject>) {}

}  // namespace platform
