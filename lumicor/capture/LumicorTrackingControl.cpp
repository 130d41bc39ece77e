// The control bar's half of the tracking flow: how a demonstration starts and ends.

#include "lumicor/capture/LumicorActionElement.h"
#include "lumicor/capture/LumicorPendingInputs.h"
#include "lumicor/capture/LumicorRecordingTask.h"
#include "lumicor/capture/LumicorScreenshots.h"
#include "lumicor/capture/LumicorTrackingControlView.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/controls/UIButton.h"

namespace lumicor {

namespace {

constexpr const char* startTitle = "Start";
constexpr const char* stopTitle = "Stop";

void setBar(const char* title, bool isEnabled, const char* caption) {
  if (const auto& bar = Lumicor::shared().trackingButton) bar->setState(title, isEnabled, caption);
}

}  // namespace

void LumicorTrackingTask::showTrackingControlView(const Ref<UIView>&) {
  Lumicor& session = Lumicor::shared();
  if (session.trackingButton) session.trackingButton->removeFromSuperview();
  session.trackingButton = make<LumicorTrackingControlView>();
  session.trackingButton->setClickListener(&LumicorTrackingTask::click);
  if (Lumicor::isTracking) setBar(stopTitle, !isClosed_, "on");
  if (const auto window = UIApplication::shared().keyWindow()) session.trackingButton->placeIn(window);
}

void LumicorTrackingTask::click() {
  const auto& bar = Lumicor::shared().trackingButton;
  if (bar && !bar->clickButton()->isEnabled()) return;  // on its way already, and pressed by other means than a finger
  const bool isStop = bar && bar->clickButton()->title(UIControlState::normal) == stopTitle;
  isStop ? stop() : start();
}

void LumicorTrackingTask::start() {
  LumicorRecordingTask& recording = LumicorRecordingTask::shared();
  LumicorPendingInputs::settle();  // what was typed while the one before was saved belongs to none
  Lumicor::isTracking = true;
  isClosed_ = false;
  taskFlow.clear();
  LumicorScreenshots::begin();
  setBar(startTitle, false, "starting");
  recording.showLoader();
  if (const auto screen = LumicorUtils::getCurrentViewController()) beginOn(screen);
  if (!LumicorUtils::isRunningOnSimulator()) return recording.startRecording();
  recording.goWithoutRecording();
  recordingBegan();
}

/// It may have been in front before anybody looked.
void LumicorTrackingTask::beginOn(const Ref<UIViewController>& screen) {
  if (LumicorUtils::shouldTrack(NSStringFromClass(screen->classForCoder()))) {
    Lumicor::shared().setCurrentViewController(screen);
    setUpScreen(screen);
  }
  handleScreenChange(screen);
}

void LumicorTrackingTask::stop() {
  setBar(stopTitle, false, "saving");
  DispatchQueue::main().async([] {
    if (isClosed_) return;
    if (!Lumicor::isTracking) return LumicorRecordingTask::shared().reset();  // the host has ended it by the flag
    LumicorPendingInputs::settle();
    if (!taskFlow.empty()) registerClosing();
    isClosed_ = true;
    LumicorRecordingTask::shared().stopRecording();
  });
}

void LumicorTrackingTask::recordingBegan() { setBar(stopTitle, true, "on"); }

void LumicorTrackingTask::recordingReset() {
  isClosed_ = false;
  setBar(startTitle, true, "off");
}

}  // namespace lumicor
