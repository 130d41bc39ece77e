#include "lumicor/capture/LumicorTrackingTask.h"

#include "lumicor/core/Lumicor.h"
#include "platform/uikit/UIViewController.h"

namespace lumicor {

namespace {

LumicorTrackingTask::ActionListener& actionListener() {
  static LumicorTrackingTask::ActionListener listener;
  return listener;
}

}  // namespace

void LumicorTrackingTask::setActionListener(ActionListener listener) { actionListener() = std::move(listener); }

void LumicorTrackingTask::registerUserAction(const std::string& actionName, const Ref<UIView>& view) {
  if (const ActionListener listener = actionListener()) listener(actionName, view);
}

void LumicorTrackingTask::setUpScreen(const Ref<UIViewController>& screen) {
  Lumicor::shared().setCurrentView(NSStringFromClass(screen->classForCoder()));
}

}  // namespace lumicor
