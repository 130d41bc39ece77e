#include "lumicor/actions/TLStepOperation.h"

#include "lumicor/actions/TLPickerRow.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor {

namespace {

constexpr double resignDelay = 0.5;
constexpr std::string_view seguePrefix = "SegueIdentifier-";

void resignLater(const Ref<UIResponder>& responder) {
  DispatchQueue::main().asyncAfter(resignDelay, [weak = Weak<UIResponder>(responder)] {
    if (const auto alive = weak.lock()) alive->resignFirstResponder();
  });
}

template <class View>
Ref<View> enclosing(const Ref<UIView>& view) {
  for (Ref<UIView> at = view->superview(); at; at = at->superview()) {
    if (auto found = as<View>(at)) return found;
  }
  return nullptr;
}

// ---- Operations on the target view, one for each kind

/// Selects the row that the value names; a value that names no row of the picker selects nothing.
void selectPickerRow(const Ref<UIPickerView>& picker, const std::string& value) {
  static const SEL didSelect = sel("pickerView:didSelectRow:inComponent:");
  const std::optional<TLPickerRow> at = TLPickerRow::parse(value);
  if (!picker || !at) return;
  if (at->component < 0 || at->component >= picker->numberOfComponents()) return;
  if (at->row < 0 || at->row >= picker->numberOfRowsInComponent(at->component)) return;
  picker->selectRow(at->row, at->component, true);
  sendOptional(picker->delegate(), didSelect, picker, at->row, at->component);
}

void pickInTextField(const Ref<UITextField>& field, const TLAction& step, TLTaskResult&) {
  field->becomeFirstResponder();
  selectPickerRow(as<UIPickerView>(field->inputView()), step.value);
  resignLater(field);
}

/// The result is said in the chat and kept in its history: of a secret it tells no more than a reader sees.
void typeIntoTextField(const Ref<UITextField>& field, const TLAction& step, TLTaskResult& result) {
  result.resultValue = field->accessibilityValue().value_or(field->wasSecure() ? "" : step.value);
  field->setText(step.value);
  field->sendActionsForControlEvents(UIControlEvents::editingChanged);
  NotificationCenter::defaultCenter().post(UITextFieldTextDidChangeNotification, field);
}

void typeIntoTextView(const Ref<UITextView>& view, const TLAction& step, TLTaskResult& result) {
  result.resultValue = view->text().value_or(step.value);
  view->setText(step.value);
  NotificationCenter::defaultCenter().post(UITextViewTextDidChangeNotification, view);
}

void searchInSearchBar(const Ref<UISearchBar>& bar, const TLAction& step, TLTaskResult&) {
  static const SEL searchClicked = sel("searchBarSearchButtonClicked:");
  static const SEL textDidChange = sel("searchBar:textDidChange:");
  bar->becomeFirstResponder();
  bar->setText(step.value);
  const Ref<NSObject> delegate = bar->delegate();
  if (delegate && delegate->respondsToSelector(searchClicked)) {
    sendOptional(delegate, textDidChange, bar, step.value);
    sendOptional(delegate, searchClicked, bar);
  }
  resignLater(bar);
}

void cancelSearchBar(const Ref<UISearchBar>& bar, const TLAction&, TLTaskResult&) {
  static const SEL cancelClicked = sel("searchBarCancelButtonClicked:");
  sendOptional(bar->delegate(), cancelClicked, bar);
}

void pressButton(const Ref<UIButton>& button, const TLAction&, TLTaskResult& result) {
  const auto label = button->titleLabelIfMade();
  result.resultValue = label ? label->text().value_or("") : "";
  button->sendActionsForControlEvents(UIControlEvents::touchUpInside);
}

/// A selected cell whose step names a segue: the screen in front performs it, when it knows one of that name.
void performSegueNamedIn(const std::string& elementId) {
  const std::size_t at = elementId.find(seguePrefix);
  if (at == std::string::npos) return;
  const std::string identifier = elementId.substr(at + seguePrefix.size());
  const Ref<UIViewController> top = LumicorUtils::getCurrentViewController();
  if (top) top->performSegueIfKnown(identifier, top);
}

void selectTableRow(const Ref<UITableViewCell>& cell, const TLAction& step, TLTaskResult&) {
  static const SEL didSelect = sel("tableView:didSelectRowAtIndexPath:");
  const auto table = enclosing<UITableView>(cell);
  const auto indexPath = table ? table->indexPathForCell(cell) : std::nullopt;
  if (!indexPath) return;
  table->selectRow(*indexPath, false, UITableViewScrollPosition::none);
  sendOptional(table->delegate(), didSelect, table, *indexPath);
  performSegueNamedIn(step.elementId);
}

void selectCollectionItem(const Ref<UICollectionViewCell>& cell, const TLAction& step, TLTaskResult&) {
  static const SEL didSelect = sel("collectionView:didSelectItemAtIndexPath:");
  const auto collection = enclosing<UICollectionView>(cell);
  const auto indexPath = collection ? collection->indexPathForCell(cell) : std::nullopt;
  if (!indexPath) return;
  collection->selectItem(*indexPath, false, UICollectionViewScrollPosition::none);
  sendOptional(collection->delegate(), didSelect, collection, *indexPath);
  performSegueNamedIn(step.elementId);
}

void turnPicker(const Ref<UIPickerView>& picker, const TLAction& step, TLTaskResult&) {
  picker->becomeFirstResponder();
  selectPickerRow(picker, step.value);
  resignLater(picker);
}

void pressControl(const Ref<UIControl>& control, const TLAction&, TLTaskResult&) {
  control->sendActionsForControlEvents(UIControlEvents::touchUpInside);
}

// ---- Which operation: the first row whose class and kind of step match decides

template <class>
struct ViewOf;
template <class View>
struct ViewOf<void (*)(const Ref<View>&, const TLAction&, TLTaskResult&)> {
  using type = View;
};

struct Row {
  std::string_view actionType;  ///< empty: steps of every kind
  bool (*perform)(const Ref<UIView>& view, const TLAction& step, TLTaskResult& result);
};

/// Performs the operation when the view is of the class that it takes.
template <auto operation>
bool whenItIs(const Ref<UIView>& view, const TLAction& step, TLTaskResult& result) {
  const auto target = as<typename ViewOf<decltype(operation)>::type>(view);
  if (!target) return false;
  operation(target, step, result);
  return true;
}

constexpr Row rows[] = {
    {TLActionType::pickerView, whenItIs<&pickInTextField>},
    {"", whenItIs<&typeIntoTextField>},
    {"", whenItIs<&typeIntoTextView>},
    {TLActionType::search, whenItIs<&searchInSearchBar>},
    {TLActionType::searchCancel, whenItIs<&cancelSearchBar>},
    {"", whenItIs<&pressButton>},
    {"", whenItIs<&selectTableRow>},
    {"", whenItIs<&selectCollectionItem>},
    {"", whenItIs<&turnPicker>},
    {"", whenItIs<&pressControl>},
};

bool performOnView(const Ref<UIView>& view, const TLAction& step, TLTaskResult& result) {
  if (!view) return false;
  for (const Row& row : rows) {
    if (!row.actionType.empty() && row.actionType != step.actionType) continue;
    if (row.perform(view, step, result)) return true;
  }
  return false;
}

// ---- What follows, whatever the target view was

bool selectTab(const Ref<UITabBarController>& tabs, std::int64_t index) {
  if (!tabs) return false;
  tabs->setSelectedIndex(index);
  return true;
}

bool switchTab(const TLAction& step, const TLStepTarget& target) {
  const auto index = LumicorUtils::decimalInteger(step.value);
  if (!index || step.actionType != TLActionType::tabBar) return false;
  if (target.tabBarHolder) return selectTab(target.tabBarHolder, *index);
  if (!target.searchController) return false;
  const auto navigation = LumicorUtils::getNavigationControllerFromRoot();
  const auto top = navigation ? navigation->topViewController() : nullptr;
  return top && selectTab(top->tabBarController(), *index);
}

/// The reverse order of a search bar that was found as the target view: first the button, then the text.
void searchThroughController(UISearchController& search, const std::string& value) {
  static const SEL searchClicked = sel("searchBarSearchButtonClicked:");
  static const SEL textDidChange = sel("searchBar:textDidChange:");
  search.setActive(true);
  const auto bar = search.searchBar();
  bar->setText(value);
  sendOptional(bar->delegate(), searchClicked, bar);
  sendOptional(bar->delegate(), textDidChange, bar, bar->text().value_or(""));
  resignLater(bar);
}

bool useSearchController(const TLAction& step, const TLStepTarget& target) {
  if (!target.searchController) return false;
  if (step.actionType == TLActionType::search) {
    searchThroughController(*target.searchController, step.value);
    return true;
  }
  if (step.actionType != TLActionType::searchCancel) return false;
  static const SEL cancelClicked = sel("searchBarCancelButtonClicked:");
  const auto bar = target.searchController->searchBar();
  sendOptional(bar->delegate(), cancelClicked, bar);
  return true;
}

/// The actions of every target, and those without one, which go up the responder chain from the control.
void sendTouchUpActions(const Ref<UIControl>& control) {
  auto targets = control->allTargets();
  targets.push_back(nullptr);
  for (const Ref<NSObject>& target : targets) {
    for (const SEL action : control->actionsForTarget(target, UIControlEvents::touchUpInside)) {
      UIApplication::shared().sendAction(action, target, control, nullptr);
    }
  }
}

/// An item that was given no target does what its button does under a finger: the action goes up the responder chain.
void pressBarButtonItem(const Ref<UIBarButtonItem>& item) {
  if (const auto target = item->target(); target && item->action()) {
    UIApplication::shared().sendAction(item->action(), target, item, nullptr);
  } else if (const auto control = as<UIControl>(item->customView())) {
    sendTouchUpActions(control);
  } else if (!item->customView() && !item->sendsToTarget()) {
    const auto button = item->view();
    const auto receiver = button ? button->targetForAction(item->action()) : nullptr;
    UIApplication::shared().sendAction(item->action(), receiver, item, nullptr);
  }
}

}  // namespace

void performStep(const TLAction& step, const TLStepTarget& target, TLTaskResult& result) {
  if (!performOnView(target.view, step, result)) result.success = false;
  if (switchTab(step, target)) result.success = true;
  if (useSearchController(step, target)) result.success = true;
  if (target.barButtonItem) {
    pressBarButtonItem(target.barButtonItem);
    result.success = true;
    result.resultValue.clear();
  }
}

void performSystemBack() {
  const Ref<UIViewController> screen = Lumicor::shared().getCurrentViewController();
  const auto navigation = screen ? screen->navigationController() : nullptr;
  if (navigation) navigation->popViewControllerAnimated(false);
}

}  // namespace lumicor
