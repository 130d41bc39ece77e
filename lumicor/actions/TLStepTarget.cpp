#include "lumicor/actions/TLStepTarget.h"

#include <algorithm>
#include <unordered_set>

#include "lumicor/core/Lumicor.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"

namespace lumicor {

namespace {

using Items = std::vector<Ref<UIBarButtonItem>>;

void append(Items& items, const Items& more) { items.insert(items.end(), more.begin(), more.end()); }

/// The items of the bars around a screen, in the order they are searched: navigation bar, toolbar, toolbars of its own.
Items barButtonItems(UIViewController& screen) {
  Items items;
  if (const auto navigation = screen.navigationController()) {
    // The bar holds the items of covered screens too; only those of the one in front can be pressed.
    if (const Ref<UINavigationItem> item = navigation->navigationBar()->topItem()) {
      append(items, item->leftBarButtonItems());
      append(items, item->rightBarButtonItems());
    }
    append(items, navigation->toolbar()->items());
  }
  for (const Ref<UIView>& subview : screen.view()->subviews()) {
    if (const auto toolbar = as<UIToolbar>(subview)) append(items, toolbar->items());
  }
  return items;
}

Ref<UIBarButtonItem> barButtonItemWithIdentifier(UIViewController& screen, std::string_view identifier) {
  for (Ref<UIBarButtonItem>& item : barButtonItems(screen)) {
    if (item->accessibilityIdentifier() == identifier) return std::move(item);
  }
  return nullptr;
}

Ref<UIView> barViewWithIdentifier(UIViewController& screen, std::string_view identifier) {
  for (const Ref<UIBarButtonItem>& item : barButtonItems(screen)) {
    if (Ref<UIView> view = viewWithIdentifier(item->customView(), identifier)) return view;
  }
  return nullptr;
}

/// A bar's own button carries the name of its item, and the item is found by itself: as a view as well, it would be
/// pressed twice.
bool isNoItemsButton(const UIView& view) { return !UIBarButtonItem::itemShownBy(view); }

/// Controllers that lead from one to another by presenting and containment, each visited once.
using Visited = std::unordered_set<const UIViewController*>;

Ref<UITabBarController> tabBarHolder(const Ref<UIViewController>& controller, Visited& visited) {
  if (!controller || !visited.insert(controller.get()).second) return nullptr;
  if (auto tabs = as<UITabBarController>(controller)) return tabs;
  if (auto tabs = controller->tabBarController()) return tabs;
  if (auto tabs = tabBarHolder(controller->presentingViewController(), visited)) return tabs;
  for (const Ref<UIViewController>& child : controller->childViewControllers()) {
    if (auto tabs = tabBarHolder(child, visited)) return tabs;
  }
  return nullptr;
}

Ref<UISearchController> searchController(UIViewController& screen) {
  std::vector<Ref<UIViewController>> candidates = {screen.parentViewController(), screen.presentingViewController()};
  const auto& children = screen.childViewControllers();
  candidates.insert(candidates.end(), children.begin(), children.end());
  if (auto own = screen.navigationItem()->searchController()) return own;
  for (const Ref<UIViewController>& candidate : candidates) {
    if (!candidate) continue;
    if (auto found = candidate->navigationItem()->searchController()) return found;
  }
  return nullptr;
}

}  // namespace

Ref<UIView> viewWithIdentifier(const Ref<UIView>& root, std::string_view identifier, TLViewTest test) {
  std::vector<Ref<UIView>> pending;
  if (root) pending.push_back(root);
  while (!pending.empty()) {
    const Ref<UIView> view = std::move(pending.back());
    pending.pop_back();
    if (view->accessibilityIdentifier() == identifier && (!test || test(*view))) return view;
    const auto& subviews = view->subviews();
    pending.insert(pending.end(), subviews.rbegin(), subviews.rend());
  }
  return nullptr;
}

Ref<UIView> TLStepTarget::findView(const std::string& elementId, const std::string& viewName) {
  const Ref<UIViewController> screen = Lumicor::shared().getCurrentViewController();
  if (!screen || NSStringFromClass(screen->classForCoder()) != viewName) return nullptr;
  if (Ref<UIView> view = viewWithIdentifier(screen->view(), elementId, &isNoItemsButton)) return view;
  if (const auto tabs = screen->tabBarController()) {
    return viewWithIdentifier(tabs->view(), elementId, &isNoItemsButton);
  }
  return barViewWithIdentifier(*screen, elementId);
}

TLStepTarget TLStepTarget::find(const TLAction& step) {
  TLStepTarget target;
  target.view = findView(step.elementId, step.viewName);
  if (const Ref<UIViewController> screen = Lumicor::shared().getCurrentViewController()) {
    Visited visited;
    target.barButtonItem = barButtonItemWithIdentifier(*screen, step.elementId);
    target.tabBarHolder = lumicor::tabBarHolder(screen, visited);
    target.searchController = lumicor::searchController(*screen);
  }
  return target;
}

bool TLStepTarget::isThereFor(std::string_view actionType) const {
  const bool isTabStep = actionType == TLActionType::tabBar;
  const bool isSearchStep = actionType == TLActionType::search || actionType == TLActionType::searchCancel;
  if (view && (!isTabStep || tabBarHolder)) return true;
  if (tabBarHolder && !isSearchStep) return true;
  if (searchController && !isTabStep) return true;
  return barButtonItem && !isTabStep && !isSearchStep;
}

}  // namespace lumicor
