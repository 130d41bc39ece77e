#include "platform/uikit/controllers/UISearchController.h"

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"

namespace platform {

namespace {

constexpr double dimmingAlpha = 0.2;
constexpr unsigned fillsSuperview = UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight;

}  // namespace

UISearchController::UISearchController() = default;

UISearchController::~UISearchController() {
  const Ref<UIViewController> host = resultsHost_.lock();
  if (!host || results_->parentViewController() != host) return;
  results_->view()->removeFromSuperview();
  results_->removeFromParentViewController();
}

void UISearchController::exportMethods(MethodTable<UISearchController>& table) {
  table.add<&UISearchController::editingBegan>("editingBegan")
      .add<&UISearchController::textChanged>("textChanged")
      .add<&UISearchController::cancelTapped>("cancelTapped")
      .add<&UISearchController::setActive>("setActive:")
      .add<&UISearchController::isActive>("isActive");
}

void UISearchController::init(const Ref<UIViewController>& searchResultsController) {
  results_ = searchResultsController;
  searchBar_ = make<UISearchBar>(CGRect{0, 0, 320, 52});
  const Ref<UITextField>& field = searchBar_->searchTextField();
  field->addTarget(self(), sel("editingBegan"), UIControlEvents::editingDidBegin);
  field->addTarget(self(), sel("textChanged"), UIControlEvents::editingChanged);
  if (const Ref<UIButton>& cancel = searchBar_->cancelButton()) {
    cancel->addTarget(self(), sel("cancelTapped"), UIControlEvents::touchUpInside);
  }
}

void UINavigationItem::setSearchController(const Ref<UISearchController>& controller) {
  searchController_ = controller;
  searchBar_ = controller ? controller->searchBar() : nullptr;
  changed(false);
}

void UISearchController::editingBegan() { setActive(true); }
void UISearchController::cancelTapped() { setActive(false); }

void UISearchController::textChanged() {
  if (!active_) return;
  showContent();
  update();
}

void UISearchController::setActive(bool active) {
  if (active_ == active) return;
  const auto keeper = self();
  active_ = active;
  tell(active ? "willPresentSearchController:" : "willDismissSearchController:");
  searchBar_->setShowsCancelButton(active, true);
  if (active) {
    if (!searchBar_->searchTextField()->isFirstResponder()) searchBar_->becomeFirstResponder();
    showContent();
  } else {
    searchBar_->setText("");
    searchBar_->resignFirstResponder();
    hideContent();
  }
  update();
  tell(active ? "didPresentSearchController:" : "didDismissSearchController:");
}

void UISearchController::update() {
  static const SEL selector = sel("updateSearchResultsForSearchController:");
  sendOptional(updater_.lock(), selector, self());
}

void UISearchController::tell(const char* selector) { sendOptional(delegate(), sel(selector), self()); }

// ---- What lies over the searched screen

/// The screen around the bar; of a bar in a navigation bar the top of the stack.
Ref<UIViewController> UISearchController::searchedController() const {
  Ref<UIResponder> at = searchBar_->superview();
  while (at && !as<UIViewController>(at)) at = at->nextResponder();
  if (const auto navigation = as<UINavigationController>(at)) return navigation->topViewController();
  return as<UIViewController>(at);
}

void UISearchController::showContent() {
  const Ref<UIViewController> searched = searchedController();
  if (!searched || !searched->isViewLoaded()) return;
  const Ref<UIView>& view = searched->view();
  const bool hasText = !searchBar_->text().value_or("").empty();
  if (results_ && hasText) {
    return showResults(*searched);
  }
  hideContent();
  if (!obscures_) return;
  dimming_ = make<UIControl>(view->bounds());
  dimming_->setAutoresizingMask(fillsSuperview);
  dimming_->setBackgroundColor(UIColor::black().colorWithAlphaComponent(dimmingAlpha));
  dimming_->addTarget(self(), sel("cancelTapped"), UIControlEvents::touchUpInside);
  view->addSubview(dimming_);
}

void UISearchController::showResults(UIViewController& searched) {
  const Ref<UIView>& view = searched.view();
  const bool isNew = results_->parentViewController().get() != &searched;
  if (!isNew && results_->view()->superview() == view) return;
  if (isNew) searched.addChildViewController(results_);
  results_->view()->setFrame(view->bounds());
  results_->view()->setAutoresizingMask(fillsSuperview);
  view->addSubview(results_->view());
  if (!isNew) return;
  results_->didMoveToParent(results_->parentViewController());
  resultsHost_ = results_->parentViewController();
}

/// Results that are hidden stay where they are in the hierarchy of screens: they have not been removed from it.
void UISearchController::hideContent() {
  if (dimming_) dimming_->removeFromSuperview();
  dimming_ = nullptr;
  if (results_ && results_->isViewLoaded()) results_->view()->removeFromSuperview();
}

}  // namespace platform
