#include "lumicor/capture/LumicorGestureHooks.h"

#include "lumicor/capture/LumicorMethodExchange.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/UIView.h"

namespace lumicor {

namespace {

constexpr const char* ownName = "swizzled_initWithTarget:action:";
constexpr const char* handleName = "swizzled_handleGesture:";

void initialise(UIGestureRecognizer& self, const Ref<NSObject>& target, SEL action) {
  static const MethodCall<void(Ref<NSObject>, SEL)> original(UIGestureRecognizer::cls(), sel(ownName));
  static const SEL handle = sel(handleName);
  original(self, target, action);
  if (!target || !action) return;
  self.addTarget(self.shared_from_this(), handle);
  self.addTarget(target, action);  // there already, unless an exchange in between left it out
}

void handleGesture(UIGestureRecognizer& self, const Ref<NSObject>&) {
  if (!Lumicor::isTracking || !Lumicor::shared().getInitialized()) return;
  const Ref<UIView> view = self.view();
  if (!view || !view->accessibilityIdentifier() || !dynamic_cast<UITapGestureRecognizer*>(&self)) return;
  LumicorTrackingTask::registerUserAction(NSStringFromClass(self.classForCoder()), view);
}

}  // namespace

void LumicorGestureHooks::install() {
  Class& cls = UIGestureRecognizer::cls();
  class_addMethod<&handleGesture>(cls, sel(handleName));
  LumicorMethodExchange::install<&initialise>(cls, "initWithTarget:action:", ownName);
}

}  // namespace lumicor
