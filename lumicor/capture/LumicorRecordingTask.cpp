#include "lumicor/capture/LumicorRecordingTask.h"

#include <memory>
#include <utility>

#include "lumicor/capture/LumicorFlowCompletion.h"
#include "lumicor/capture/LumicorScreenshots.h"
#include "lumicor/capture/LumicorTrackingTask.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "lumicor/ui/LumicorToast.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

constexpr double loaderSide = 150;

void tell(const char* message) {
  if (const auto controller = LumicorUtils::getCurrentViewController()) LumicorToast::show(message, controller);
}

/// A flow is long: it is completed, encoded and let go of in the background.
void registerInBackground(const JSONValue& data, std::vector<LumicorSnapshot> flow,
                          std::vector<std::string> screenshotKeys) {
  const auto held = std::make_shared<std::vector<LumicorSnapshot>>(std::move(flow));
  DispatchQueue::global(QOS::userInitiated).async([data, held, keys = std::move(screenshotKeys)] {
    LumicorNetworkTask::registerSnapshots(data, LumicorFlowCompletion::completed(std::move(*held), keys));
  });
}

}  // namespace

LumicorRecordingTask& LumicorRecordingTask::shared() {
  static const Ref<LumicorRecordingTask>& task = *new Ref<LumicorRecordingTask>(make<LumicorRecordingTask>());
  return *task;
}

// ---- The loader

void LumicorRecordingTask::showLoader() {
  const Ref<UIWindow> window = UIApplication::shared().keyWindow();
  if (loaderView_ || !window) return;
  const Ref<UIViewController> root = window->rootViewController();
  const CGSize size = root && root->isViewLoaded() ? root->view()->bounds().size : window->bounds().size;
  loaderView_ = make<LumicorLoaderView>(
      CGRect{(size.width - loaderSide) / 2, (size.height - loaderSide) / 2, loaderSide, loaderSide});
  loaderView_->show();
}

void LumicorRecordingTask::removeLoader() {
  if (const auto loader = std::exchange(loaderView_, nullptr)) loader->dismiss();
}

// ---- Start

void LumicorRecordingTask::startRecording() {
  recorder_ = make<LumicorRecorder>();
  const auto recorder = recorder_;
  recorder_->startRecording(
      std::nullopt, UIScreen::main().bounds().size,
      [this, recorder](const NSError& error) {
        LumicorDebugHelper::log("An error occurred: " + error.localizedDescription());
        if (recorder == recorder_) reset();
      },
      [this, recorder] {
        DispatchQueue::main().async([this, recorder] {
          if (recorder != recorder_) return;
          removeLoader();
          LumicorTrackingTask::recordingBegan();
        });
      });
}

void LumicorRecordingTask::goWithoutRecording() {
  recorder_ = nullptr;
  removeLoader();
}

void LumicorRecordingTask::noteRefusal() {
  reset();
  tell("Permission denied");
}

// ---- Stop

void LumicorRecordingTask::stopRecording() {
  if (!recorder_) {
    if (LumicorTrackingTask::taskFlow.empty()) return noteNothingRecorded();
    showLoader();
    return handOver("");
  }
  recorder_->stopRecording([this](const LumicorRecorder::StopResult& result) {
    DispatchQueue::main().async([this, result] { handleStop(result); });
  });
}

void LumicorRecordingTask::handleStop(const LumicorRecorder::StopResult& result) {
  if (!result) {
    LumicorDebugHelper::log("An error occurred: " + result.error().localizedDescription());
    if (recorder_ && !recorder_->videoWriter()) reset();  // no file is finished that would tell of the end
    return;
  }
  if (!*result) return;
  if (LumicorTrackingTask::taskFlow.empty()) return noteNothingRecorded();
  showLoader();
  uploadVideo(**result);
}

void LumicorRecordingTask::noteNothingRecorded() {
  tell("No actions recorded");
  LumicorTrackingTask::taskFlow.clear();
  DispatchQueue::main().async([this] { reset(); });
}

// ---- Handing over

void LumicorRecordingTask::uploadVideo(const std::string& address) {
  const std::optional<URL> url = URL::parse(address);
  DispatchQueue::global(QOS::userInteractive).async([this, path = url ? url->path() : ""] {
    LumicorNetworkTask::uploadMedia("taskRecording", path, "mp4", [this](const std::optional<std::string>& key) {
      DispatchQueue::main().async([this, key] { handOver(key.value_or("")); });
    });
  });
}

void LumicorRecordingTask::handOver(const std::string& recordingKey) {
  LumicorScreenshots::stop();
  LumicorScreenshots::upload(
      [this, recordingKey](std::vector<std::string> screenshotKeys) { registerTask(recordingKey, screenshotKeys); });
}

void LumicorRecordingTask::registerTask(const std::string& recordingKey,
                                        const std::vector<std::string>& screenshotKeys) {
  const auto accepted = [this, screenshotKeys](const JSONValue& data) {
    const auto ending = [&] {
      registerInBackground(data, std::exchange(LumicorTrackingTask::taskFlow, {}), screenshotKeys);
      reset();
    };
    if (!recorder_) return complete(ending);
    ending();
    tell("Task Capture Failed");
  };
  const auto refused = [this] {
    reset();
    tell("Task Capture Failed");
  };
  LumicorNetworkTask::registerTask(recordingKey, accepted, refused);
}

void LumicorRecordingTask::complete(const std::function<void()>& ending) {
  ending();
  tell("Task Capture Successful");
}

void LumicorRecordingTask::reset() {
  removeLoader();
  const auto recorder = std::exchange(recorder_, nullptr);
  if (recorder && recorder->recorder()->isRecording()) recorder->stopRecording([](const auto&) {});
  Lumicor::isTracking = false;
  LumicorTrackingTask::taskFlow.clear();
  LumicorScreenshots::drop();
  LumicorTrackingTask::recordingReset();
}

}  // namespace lumicor
