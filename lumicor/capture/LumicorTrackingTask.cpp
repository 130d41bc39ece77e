#include "lumicor/capture/LumicorTrackingTask.h"

#include "lumicor/capture/LumicorActionElement.h"
#include "lumicor/capture/LumicorBarButtonItemHooks.h"
#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/capture/LumicorProxyInstallation.h"
#include "lumicor/capture/LumicorScreenshots.h"
#include "lumicor/capture/LumicorTrackingControlView.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementsTask.h"
#include "lumicor/ui/LumicorToast.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIControl.h"

namespace lumicor {

namespace {

void tell(const char* message) { LumicorToast::show(message, Lumicor::shared().getCurrentViewController()); }

Ref<UIView> currentScreen() {
  const Ref<UIViewController>& screen = Lumicor::shared().getCurrentViewController();
  return screen ? screen->viewIfLoaded() : nullptr;
}

LumicorSnapshot snapshotFor(const LumicorAction& action, std::int64_t index) {
  LumicroElement actionElement = LumicorActionElement::of(action);
  const Ref<UIView> screen = currentScreen();
  LumicorScreenElements content;
  if (screen) content = LumicorElementsTask::getAllElements(screen, action.name);
  const CGSize size = screen ? screen->bounds().size : CGSize();
  std::vector<LumicroElement> inputs = LumicorActionElement::inputsAmong(content.elements);
  return {Lumicor::shared().getCurrentView(),
          LumicorUtils::truncated(size.height),
          LumicorUtils::truncated(size.width),
          LumicorUtils::getViewOrientation(),
          std::move(content.elements),
          std::move(inputs),
          std::move(actionElement),
          std::move(content.scrollDetails),
          "Default",
          "",
          index};
}

/// An action may bring controls to the screen without another one coming to the front.
void lookAfterNewControls() {
  DispatchQueue::main().async([] {
    const Ref<UIViewController>& screen = Lumicor::shared().getCurrentViewController();
    if (Lumicor::isTracking && screen) LumicorProxyInstallation::installFor(*screen);
  });
}

void append(const LumicorAction& action, std::int64_t index) {
  LumicorScreenshots::take(Lumicor::shared().getCurrentView());
  LumicorTrackingTask::taskFlow.push_back(snapshotFor(action, index));
  tell("Action registered. Proceed...");
  lookAfterNewControls();
}

bool isOfTheControlBar(const Ref<UIView>& view) {
  const auto& bar = Lumicor::shared().trackingButton;
  return bar && bar->contains(view);
}

}  // namespace

// ---- Actions

std::int64_t LumicorTrackingTask::nextIndex() { return taskFlow.empty() ? 0 : taskFlow.back().index() + 1; }

LumicorTrackingTask::Doing::Doing() {
  if (doings_ == 0) {
    LumicorPendingInputs::settle();  // doings of their own, which must not look like parts of one
    doing_ = nextIndex();
  }
  ++doings_;
}

LumicorTrackingTask::Doing::~Doing() { --doings_; }

void LumicorTrackingTask::registerAction(const std::string& name, const Ref<UIView>& view,
                                         const std::optional<std::string>& identifier,
                                         const std::optional<std::string>& value) {
  if (!Lumicor::isTracking || isClosed_ || isOfTheControlBar(view)) return;
  LumicorPendingInputs::settle();
  if (!identifier) return tell("Accessibility Identifier not found");
  const Doing doing;
  append({name, view, *identifier, value, std::to_string(doing_)}, nextIndex());
}

/// The screen as the demonstration left it; it needs no name, as nothing was done to it.
void LumicorTrackingTask::registerClosing() {
  const Ref<UIView> screen = currentScreen();
  const std::optional<std::string> identifier = screen ? screen->accessibilityIdentifier() : std::nullopt;
  const std::int64_t index = nextIndex();
  append({"Recording Stopped", screen, identifier.value_or(""), std::nullopt, std::to_string(index)}, index);
}

void LumicorTrackingTask::registerUserAction(const std::string& actionName, const Ref<UIView>& view,
                                             const std::optional<std::string>& value) {
  registerAction(actionName, view, view->accessibilityIdentifier(), value);
}

void LumicorTrackingTask::handleControlAction(const std::string& actionName, const Ref<UIControl>& control,
                                              const LumicorOriginalAction& original) {
  const Doing doing;
  registerUserAction(actionName, control);
  original.send();
}

void LumicorTrackingTask::registerItem(const std::string& actionName, const UIBarButtonItem& item) {
  const Ref<UIView> view = item.view();
  std::optional<std::string> identifier = item.accessibilityIdentifier();
  if (!identifier && view) identifier = view->accessibilityIdentifier();
  registerAction(actionName, view, identifier, item.title());
}

void LumicorTrackingTask::handleBarButtonAction(const std::string& actionName, const Ref<UIBarButtonItem>& item,
                                                const LumicorOriginalAction& original) {
  const Doing doing;
  registerItem(actionName, *item);
  const LumicorBarButtonItemHooks::HandedOver once(item.get());
  original.send();
}

void LumicorTrackingTask::handleBarButtonPress(const std::string& actionName, const Ref<UIBarButtonItem>& item,
                                               const std::function<void()>& sendOriginal) {
  const Doing doing;
  registerItem(actionName, *item);
  sendOriginal();
}

void LumicorTrackingTask::handleTabSelection(const std::string& actionName, const Ref<UITabBarController>& controller,
                                             const Ref<UIViewController>& selected,
                                             const Ref<NSObject>& originalDelegate) {
  static const SEL didSelect = sel("tabBarController:didSelectViewController:");
  const Doing doing;
  registerUserAction(actionName, controller->tabBar());
  sendOptional(originalDelegate, didSelect, controller, selected);
}

// ---- Screens

void LumicorTrackingTask::willShowScreen(const Ref<UIViewController>& screen) {
  if (screen != Lumicor::shared().getCurrentViewController()) LumicorPendingInputs::settle();
}

void LumicorTrackingTask::setUpScreen(const Ref<UIViewController>& screen) {
  Lumicor::shared().setCurrentView(NSStringFromClass(screen->classForCoder()));
}

void LumicorTrackingTask::handleScreenChange(const Ref<UIViewController>& screen) {
  LumicorProxyInstallation::forgetLostControls();
  // Those of the screen that is going are let go of by the end of this turn.
  DispatchQueue::main().async(&LumicorProxyInstallation::forgetLostControls);
  if (Lumicor::isTracking) LumicorProxyInstallation::installFor(*screen);
}

}  // namespace lumicor
