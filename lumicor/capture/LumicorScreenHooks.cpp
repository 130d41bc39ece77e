#include "lumicor/capture/LumicorScreenHooks.h"

#include "lumicor/capture/LumicorMethodExchange.h"
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

constexpr const char* didAppearName = "swizzled_viewDidAppear:";
constexpr const char* willMoveName = "swizzled_willMoveToParent:";
constexpr const char* willDisappearName = "swizzled_viewWillDisappear:";
constexpr const char* prepareName = "swizzled_prepareFor:sender:";

bool isTracked(const UIViewController& screen) {
  return LumicorUtils::shouldTrack(NSStringFromClass(screen.classForCoder()));
}

void makeCurrent(const Ref<UIViewController>& screen) {
  LumicorTrackingTask::willShowScreen(screen);
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
  static const MethodCall<void(bool)> original(UIViewController::cls(), sel(didAppearName));
  original(self, animated);
  const auto screen = self.NSObject::self(&self);
  if (isTracked(self)) {
    makeCurrent(screen);
    noteArrivalInside(self);
  }
  tellScreenChange(screen);
}

/// A screen that was never shown has no view to name, and gets none made here.
void screenMoves(UIViewController& self, const Ref<NSObject>& parent) {
  static const MethodCall<void(Ref<NSObject>)> original(UIViewController::cls(), sel(willMoveName));
  original(self, parent);
  const Ref<UIView> view = self.viewIfLoaded();
  if (parent || !view || !Lumicor::isTracking) return;
  view->setAccessibilityIdentifier("backButton");
  LumicorTrackingTask::registerUserAction("systemBack", view);
}

void noteScreenBehind() {
  const Ref<UIViewController> screen = topmostScreen();
  if (!screen) return;
  if (isTracked(*screen)) makeCurrent(screen);
  tellScreenChange(screen);
}

void screenDisappears(UIViewController& self, bool animated) {
  static const MethodCall<void(bool)> original(UIViewController::cls(), sel(willDisappearName));
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
                                                                                sel(prepareName));
  original(self, segue, sender);
  const Ref<UIViewController> destination = segue->destinationViewController();
  if (!destination || !isTracked(*destination)) return;
  Lumicor::shared().setCurrentSegueController(segue->sourceViewController());
  segueDestination() = destination;
  DispatchQueue::main().asyncAfter(pauseAfterSegue, [segue] { noteSegueDestination(segue); });
}

}  // namespace

void LumicorScreenHooks::install() {
  using Exchange = LumicorMethodExchange;
  Class& cls = UIViewController::cls();
  Exchange::install<&screenAppeared>(cls, "viewDidAppear:", didAppearName);
  Exchange::install<&screenMoves>(cls, "willMoveToParentViewController:", willMoveName);
  Exchange::install<&screenDisappears>(cls, "viewWillDisappear:", willDisappearName);
  Exchange::install<&segueIsPrepared>(cls, "prepareForSegue:sender:", prepareName, Exchange::WhenMissing::fail);
}

}  // namespace lumicor
