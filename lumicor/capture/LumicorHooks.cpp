#include "lumicor/capture/LumicorHooks.h"

#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UIStoryboardSegue.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor {

namespace {

// Seconds.
constexpr double pauseAfterDisappearance = 1.0;
constexpr double pauseAfterSegue = 2.5;

const SEL& swizzledViewDidAppear() {
  static const SEL selector = sel("swizzled_viewDidAppear:");
  return selector;
}
const SEL& swizzledViewWillDisappear() {
  static const SEL selector = sel("swizzled_viewWillDisappear:");
  return selector;
}
const SEL& swizzledPrepareForSegue() {
  static const SEL selector = sel("swizzled_prepareFor:sender:");
  return selector;
}

bool isTracked(const UIViewController& screen) {
  return LumicorUtils::shouldTrack(NSStringFromClass(screen.classForCoder()));
}

void makeCurrent(const Ref<UIViewController>& screen) {
  Lumicor::shared().setCurrentViewController(screen);
  LumicorTrackingTask::setUpScreen(screen);
}

void tellScreenChange(const Ref<UIViewController>& screen) {
  if (Lumicor::shared().getInitialized()) LumicorTrackingTask::handleScreenChange(screen);
}

/// The screen in front, or none when a container on the way shows nothing.
Ref<UIViewController> topmostScreen() {
  const Ref<UIWindow> window = UIApplication::shared().keyWindow();
  Ref<UIViewController> screen = window ? window->rootViewController() : nullptr;
  while (screen) {
    if (Ref<UIViewController> presented = screen->presentedViewController()) {
      screen = std::move(presented);
    } else if (const auto navigation = as<UINavigationController>(screen)) {
      screen = navigation->visibleViewController();
    } else if (const auto tabs = as<UITabBarController>(screen)) {
      screen = tabs->selectedViewController();
    } else {
      break;
    }
  }
  return screen;
}

/// Where the pending segue leads.
Weak<UIViewController>& segueDestination() {
  static Weak<UIViewController> destination;
  return destination;
}

/// A segue to a navigation or tab bar controller has arrived as soon as a screen inside has appeared: that screen is in
/// front, not what holds it.
void noteArrivalInside(const UIViewController& screen) {
  const Ref<UIViewController> destination = segueDestination().lock();
  if (!as<UINavigationController>(destination) && !as<UITabBarController>(destination)) return;
  for (auto at = screen.parentViewController(); at; at = at->parentViewController()) {
    if (at == destination) Lumicor::shared().setCurrentSegueController(nullptr);
  }
}

void screenAppeared(UIViewController& self, bool animated) {
  static const MethodCall<void(bool)> original(UIViewController::cls(), swizzledViewDidAppear());
  original(self, animated);
  const auto screen = self.NSObject::self(&self);
  if (isTracked(self)) {
    makeCurrent(screen);
    noteArrivalInside(self);
  }
  tellScreenChange(screen);
}

void noteScreenBehind() {
  const Ref<UIViewController> screen = topmostScreen();
  if (!screen) return;
  if (isTracked(*screen)) makeCurrent(screen);
  tellScreenChange(screen);
}

void screenDisappears(UIViewController& self, bool animated) {
  static const MethodCall<void(bool)> original(UIViewController::cls(), swizzledViewWillDisappear());
  original(self, animated);
  if (!self.isBeingDismissed() && !self.isMovingFromParentViewController()) return;
  DispatchQueue::main().asyncAfter(pauseAfterDisappearance, &noteScreenBehind);
}

void noteSegueDestination(const Ref<UIStoryboardSegue>& segue) {
  if (!Lumicor::shared().getCurrentSegueController()) return;
  const Ref<UIViewController> destination = segue->destinationViewController();
  makeCurrent(destination);
  tellScreenChange(destination);
  Lumicor::shared().setCurrentSegueController(nullptr);
}

void segueIsPrepared(UIViewController& self, Ref<UIStoryboardSegue> segue, Ref<NSObject> sender) {
  static const MethodCall<void(Ref<UIStoryboardSegue>, Ref<NSObject>)> original(UIViewController::cls(),
                                                                                swizzledPrepareForSegue());
  original(self, segue, sender);
  const Ref<UIViewController> destination = segue->destinationViewController();
  if (!destination || !isTracked(*destination)) return;
  Lumicor::shared().setCurrentSegueController(segue->sourceViewController());
  segueDestination() = destination;
  DispatchQueue::main().asyncAfter(pauseAfterSegue, [segue] { noteSegueDestination(segue); });
}

/// The exchange of one method; left alone silently when either side is missing.
void exchange(Class& cls, SEL platformMethod, SEL replacement) {
  Method* const original = class_getInstanceMethod(cls, platformMethod);
  Method* const own = class_getInstanceMethod(cls, replacement);
  if (original && own) method_exchangeImplementations(original, own);
}

/// The same where a missing method is a programming error.
void exchangeOrFail(Class& cls, SEL platformMethod, SEL replacement) {
  if (!class_getInstanceMethod(cls, platformMethod) || !class_getInstanceMethod(cls, replacement)) {
    fatalError("a method to exchange is missing: " + platformMethod.name());
  }
  exchange(cls, platformMethod, replacement);
}

void installScreenHooks() {
  Class& cls = UIViewController::cls();
  class_addMethod<&screenAppeared>(cls, swizzledViewDidAppear());
  class_addMethod<&screenDisappears>(cls, swizzledViewWillDisappear());
  class_addMethod<&segueIsPrepared>(cls, swizzledPrepareForSegue());
  exchange(cls, sel("viewDidAppear:"), swizzledViewDidAppear());
  exchange(cls, sel("viewWillDisappear:"), swizzledViewWillDisappear());
  exchangeOrFail(cls, sel("prepareForSegue:sender:"), swizzledPrepareForSegue());
}

}  // namespace

void LumicorHooks::install() {
  static bool installed = false;
  if (installed) return;
  installed = true;
  installScreenHooks();
}

}  // namespace lumicor
