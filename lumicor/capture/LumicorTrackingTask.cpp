#include "lumicor/capture/LumicorTrackingTask.h"

#include "lumicor/core/Lumicor.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace lumicor {

namespace {

LumicorTrackingListener& current() {
  static LumicorTrackingListener listener;
  return listener;
}

}  // namespace

void LumicorTrackingTask::setListener(LumicorTrackingListener listener) { current() = std::move(listener); }

void LumicorTrackingTask::registerUserAction(const std::string& actionName, const Ref<UIView>& view) {
  if (const auto hear = current().onUserAction) hear(actionName, view);
}

void LumicorTrackingTask::setUpScreen(const Ref<UIViewController>& screen) {
  Lumicor::shared().setCurrentView(NSStringFromClass(screen->classForCoder()));
}

void LumicorTrackingTask::handleScreenChange(const Ref<UIViewController>& screen) {
  if (const auto hear = current().onScreenChange) hear(screen);
}

void LumicorTrackingTask::showTrackingControlView(const Ref<UIView>& view) {
  if (const auto hear = current().onShowControl) hear(view);
}

}  // namespace lumicor
