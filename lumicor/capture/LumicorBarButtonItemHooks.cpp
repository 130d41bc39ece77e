#include "lumicor/capture/LumicorBarButtonItemHooks.h"

#include <utility>

#include "lumicor/capture/LumicorMethodExchange.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UIBarButtonItem.h"

namespace lumicor {

namespace {

constexpr const char* ownName = "swizzled_initWithBarButtonSystemItem:target:action:";
constexpr const char* invokeName = "invokeOriginalAction:";

/// What the host gave an item when it was made; attached to the item for its life.
struct HostAction : Object<HostAction, NSObject> {
  Weak<NSObject> target;
  bool hasTarget = false;  // else the action is for the responder chain
  SEL action;
};
const char hostActionKey = 0;

/// The item whose press the tracking flow has in hand.
const UIBarButtonItem*& handedOver() {
  static const UIBarButtonItem* item = nullptr;
  return item;
}

void initialise(UIBarButtonItem& self, UIBarButtonSystemItem item, const Ref<NSObject>& target, SEL action) {
  static const MethodCall<void(UIBarButtonSystemItem, Ref<NSObject>, SEL)> original(UIBarButtonItem::cls(),
                                                                                    sel(ownName));
  static const SEL invoke = sel(invokeName);
  original(self, item, self.shared_from_this(), invoke);
  const auto host = make<HostAction>();
  host->target = target;
  host->hasTarget = target != nullptr;
  host->action = action;
  self.setAssociatedObject(&hostActionKey, host, AssociationPolicy::retain);
}

/// Where the action goes: to the host's target while it lives; without one, to whoever answers from the bar upwards.
Ref<NSObject> receiver(const UIBarButtonItem& item, const HostAction& host) {
  if (host.hasTarget) return host.target.lock();
  const Ref<UIView> view = item.view();
  return view ? Ref<NSObject>(view->targetForAction(host.action)) : nullptr;
}

void sendHostAction(UIBarButtonItem& item, const Ref<NSObject>& sender) {
  const auto host = as<HostAction>(item.associatedObject(&hostActionKey));
  if (!host || !host->action) return;
  const Ref<NSObject> target = receiver(item, *host);
  if (host->hasTarget && !target) return;  // it died: the action is for nobody else
  UIApplication::shared().sendAction(host->action, target, sender, nullptr);
}

void invokeOriginalAction(UIBarButtonItem& self, const Ref<NSObject>& sender) {
  const auto item = std::static_pointer_cast<UIBarButtonItem>(self.shared_from_this());
  if (!Lumicor::isTracking || handedOver() == &self) return sendHostAction(self, sender);
  LumicorTrackingTask::handleBarButtonPress("uiBarButtonItem", item, [&] { sendHostAction(*item, sender); });
}

}  // namespace

LumicorBarButtonItemHooks::HandedOver::HandedOver(const UIBarButtonItem* item)
    : before_(std::exchange(handedOver(), item)) {}

LumicorBarButtonItemHooks::HandedOver::~HandedOver() { handedOver() = before_; }

void LumicorBarButtonItemHooks::install() {
  Class& cls = UIBarButtonItem::cls();
  class_addMethod<&invokeOriginalAction>(cls, sel(invokeName));
  LumicorMethodExchange::install<&initialise>(cls, "initWithBarButtonSystemItem:target:action:", ownName,
                                              LumicorMethodExchange::WhenMissing::printLine);
}

}  // namespace lumicor
