#include "lumicor/capture/LumicorTextFieldHooks.h"

#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "platform/foundation/NSTimer.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/text/UITextField.h"

namespace lumicor {

namespace {

constexpr double pauseAfterTyping = 2.0;  // seconds
constexpr const char* changeName = "handleTextChange";
constexpr const char* debouncedName = "runDebouncedAction";
const char timerKey = 0;

void stopTimer(UITextField& field) {
  if (const auto timer = as<NSTimer>(field.associatedObject(&timerKey))) timer->invalidate();
  field.setAssociatedObject(&timerKey, nullptr, AssociationPolicy::retain);
}

void runDebouncedAction(UITextField& self) {
  stopTimer(self);
  LumicorPendingInputs::forget(self);
  if (!self.accessibilityIdentifier()) return;
  LumicorTrackingTask::registerUserAction("textField", std::static_pointer_cast<UITextField>(self.shared_from_this()));
}

void handleTextChange(UITextField& self) {
  static const SEL debounced = sel(debouncedName);
  stopTimer(self);
  const Weak<NSObject> field = self.shared_from_this();
  const auto run = [field] {
    if (const Ref<NSObject> alive = field.lock()) alive->perform(debounced);
  };
  const auto timer = NSTimer::scheduledTimer(pauseAfterTyping, false, [run](const Ref<NSTimer>&) { run(); });
  self.setAssociatedObject(&timerKey, timer, AssociationPolicy::retain);
  if (Lumicor::isTracking) LumicorPendingInputs::add(self, run);
}

/// Kept for the process.
Ref<NotificationCenter::Token>& observation() {
  static Ref<NotificationCenter::Token>& token = *new Ref<NotificationCenter::Token>();
  return token;
}

}  // namespace

void LumicorTextFieldHooks::setupTextChangeObserver(const Notification& notification) {
  const auto field = as<UITextField>(notification.object());
  if (!field) return;
  static const SEL change = sel(changeName);
  field->addTarget(field, change, UIControlEvents::editingChanged);
}

void LumicorTextFieldHooks::install() {
  Class& cls = UITextField::cls();
  class_addMethod<&handleTextChange>(cls, sel(changeName));
  class_addMethod<&runDebouncedAction>(cls, sel(debouncedName));
  observation() = NotificationCenter::defaultCenter().addObserver(UITextFieldTextDidBeginEditingNotification, nullptr,
                                                                  &LumicorTextFieldHooks::setupTextChangeObserver);
}

}  // namespace lumicor
