#include "lumicor/capture/LumicorProxyInstallation.h"

#include <unordered_map>

#include "lumicor/capture/LumicorPickerViewDelegateProxy.h"
#include "lumicor/capture/LumicorSearchBarDelegateProxy.h"
#include "lumicor/capture/LumicorTabBarDelegateProxy.h"
#include "lumicor/capture/LumicorTextViewDelegateProxy.h"
#include "lumicor/core/Lumicor.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/lists/UIDatePicker.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/text/UISearchBar.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"

namespace lumicor {

namespace {

/// The proxy in front of a control, put there when it is not. A delegate that the host set over it may hand calls on to
/// it, so it is not turned round in front of that one: another takes its place.
template <class Control, class Proxy>
const Ref<Proxy>& standInFront(std::map<Ref<Control>, Ref<Proxy>>& table, const Ref<Control>& control) {
  Ref<Proxy>& proxy = table[control];
  const Ref<NSObject> delegate = control->delegate();
  if (proxy && delegate == proxy) return proxy;
  if (!proxy || delegate != proxy->originalDelegate()) {
    const auto successor = make<Proxy>(delegate);
    if (proxy) proxy->giveWayTo(*successor);
    proxy = successor;
  }
  control->setDelegate(proxy);
  return proxy;
}

enum class Kind { other, searchBar, textView, picker, field, datePicker };

Kind kindOf(const UIView& view) {
  static std::unordered_map<const Class*, Kind> known;  // a screen has many views of few classes
  const Class& cls = view.knownClass();
  const auto found = known.find(&cls);
  if (found != known.end()) return found->second;
  Kind kind = Kind::other;
  if (cls.isSubclassOf(UISearchBar::cls())) kind = Kind::searchBar;
  if (cls.isSubclassOf(UITextView::cls())) kind = Kind::textView;
  if (cls.isSubclassOf(UIPickerView::cls())) kind = Kind::picker;
  if (cls.isSubclassOf(UITextField::cls())) kind = Kind::field;
  if (cls.isSubclassOf(UIDatePicker::cls())) kind = Kind::datePicker;
  return known[&cls] = kind;
}

void installOn(const Ref<UIView>& view, Kind kind) {
  Lumicor& session = Lumicor::shared();
  if (kind == Kind::searchBar) {
    standInFront(session.searchBarDelegates, std::static_pointer_cast<UISearchBar>(view));
  } else if (kind == Kind::textView) {
    standInFront(session.textViewDelegates, std::static_pointer_cast<UITextView>(view));
  } else if (kind == Kind::picker) {
    standInFront(session.pickerViewDelegates, std::static_pointer_cast<UIPickerView>(view));
  } else if (kind == Kind::field) {
    const auto field = std::static_pointer_cast<UITextField>(view);
    const auto keyboard = as<UIPickerView>(field->inputView());
    if (keyboard) standInFront(session.pickerViewDelegates, keyboard)->setParentTextField(field);
  }
}

void editingBegan(const Notification& notification) {
  const auto edited = as<UIView>(notification.object());
  if (!edited || !Lumicor::isTracking) return;
  installOn(edited, kindOf(*edited));
  for (Ref<UIView> at = edited->superview(); at; at = at->superview()) {
    if (kindOf(*at) == Kind::searchBar) return installOn(at, Kind::searchBar);
  }
}

template <class Control, class Proxy>
void forgetLost(std::map<Ref<Control>, Ref<Proxy>>& table) {
  std::erase_if(table, [](const auto& entry) { return entry.first.use_count() == 1; });
}

}  // namespace

void LumicorProxyInstallation::installIn(const Ref<UIView>& view) {
  std::vector<Ref<UIView>> open{view};
  while (!open.empty()) {
    const Ref<UIView> at = std::move(open.back());
    open.pop_back();
    const Kind kind = kindOf(*at);
    installOn(at, kind);
    if (kind == Kind::datePicker) continue;
    open.insert(open.end(), at->subviews().begin(), at->subviews().end());
  }
}

void LumicorProxyInstallation::installFor(UIViewController& screen) {
  const auto itself = std::static_pointer_cast<UIViewController>(screen.shared_from_this());
  const auto own = as<UITabBarController>(itself);
  if (const auto tabs = own ? own : screen.tabBarController()) standInFront(Lumicor::shared().tabBarDelegates, tabs);
  if (const auto& search = screen.navigationItem()->searchController()) {
    standInFront(Lumicor::shared().searchBarDelegates, search->searchBar());
  }
  if (const auto view = screen.viewIfLoaded()) installIn(view);
}

void LumicorProxyInstallation::watchEditing() {
  static std::vector<Ref<NotificationCenter::Token>>& observations = *new std::vector<Ref<NotificationCenter::Token>>();
  for (const auto& name : {UITextFieldTextDidBeginEditingNotification, UITextViewTextDidBeginEditingNotification}) {
    observations.push_back(NotificationCenter::defaultCenter().addObserver(name, nullptr, &editingBegan));
  }
}

void LumicorProxyInstallation::forgetLostControls() {
  Lumicor& session = Lumicor::shared();
  forgetLost(session.tabBarDelegates);
  forgetLost(session.searchBarDelegates);
  forgetLost(session.pickerViewDelegates);
  forgetLost(session.textViewDelegates);
}

}  // namespace lumicor
