#include "lumicor/capture/LumicorControlHooks.h"

#include <algorithm>

#include "lumicor/capture/LumicorBarButtonItemHooks.h"
#include "lumicor/capture/LumicorMethodExchange.h"
#include "lumicor/capture/LumicorOriginalAction.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/text/UITextField.h"

namespace lumicor {

namespace {

constexpr const char* ownName = "swizzled_sendAction:to:for:";
constexpr std::string_view barButtonClass = "_UIButtonBarButton";

// Objects stay of any class on the way through: telling theirs costs more than the rest of an idle hook.
void callThrough(UIControl& self, SEL action, const Ref<NSObject>& target, const Ref<NSObject>& event) {
  static const MethodCall<void(SEL, Ref<NSObject>, Ref<NSObject>)> original(UIControl::cls(), sel(ownName));
  original(self, action, target, event);
}

bool isBarButton(const UIControl& control) {
  return NSStringFromClass(control.classForCoder()).find(barButtonClass) != std::string::npos;
}

template <class Bar>
Ref<Bar> nearest(const Ref<UIView>& view) {
  for (Ref<UIView> at = view; at; at = at->superview()) {
    if (auto bar = as<Bar>(at)) return bar;
  }
  return nullptr;
}

Ref<UIBarButtonItem> itemShownBy(const Ref<UIView>& view, const std::vector<Ref<UIBarButtonItem>>& items) {
  const auto shows = [&](const Ref<UIBarButtonItem>& item) {
    return item && (item->customView() == view || item->view() == view);
  };
  const auto found = std::ranges::find_if(items, shows);
  return found == items.end() ? nullptr : *found;
}

/// The item of the bar around a button, or none: the button that leads back is no item.
Ref<UIBarButtonItem> itemShownBy(const Ref<UIView>& view) {
  if (const auto toolbar = nearest<UIToolbar>(view)) {
    if (auto item = itemShownBy(view, toolbar->items())) return item;
  }
  const auto bar = nearest<UINavigationBar>(view);
  if (!bar) return nullptr;
  for (const Ref<UINavigationItem>& shown : bar->items()) {
    if (auto item = itemShownBy(view, shown->leftBarButtonItems())) return item;
    if (auto item = itemShownBy(view, shown->rightBarButtonItems())) return item;
  }
  return nullptr;
}

/// The name's form is the debugging form of an optional text; it is what services know these actions by.
std::string actionName(const std::string& identifier) { return "Action on Optional(\"" + identifier + "\")"; }

void handOver(UIControl& self, SEL action, const Ref<NSObject>& target, const Ref<NSObject>& event) {
  const std::optional<std::string> identifier = self.accessibilityIdentifier();
  const bool isOfABar = isBarButton(self);
  const bool isNobodys = !identifier && !isOfABar;
  if (isNobodys || !Lumicor::shared().getInitialized() || dynamic_cast<UITextField*>(&self)) {
    return callThrough(self, action, target, event);
  }
  const auto control = std::static_pointer_cast<UIControl>(self.shared_from_this());
  const LumicorOriginalAction original{control, action, target, as<UIEvent>(event)};
  if (!isOfABar) return LumicorTrackingTask::handleControlAction(actionName(*identifier), control, original);

  if (action.name().find("invalidate") != std::string::npos) return;  // swallowed on purpose
  if (const auto item = itemShownBy(control)) {
    return LumicorTrackingTask::handleBarButtonAction("uiBarButtonItem", item, original);
  }
  callThrough(self, action, target, event);
}

void actionLeaves(UIControl& self, SEL action, const Ref<NSObject>& target, const Ref<NSObject>& event) {
  if (!Lumicor::isTracking) [[likely]]
    return callThrough(self, action, target, event);
  handOver(self, action, target, event);
}

}  // namespace

void LumicorOriginalAction::send() const { callThrough(*control, action, target, event); }

void LumicorControlHooks::install() {
  LumicorMethodExchange::install<&actionLeaves>(UIControl::cls(), "sendAction:to:forEvent:", ownName);
}

}  // namespace lumicor
