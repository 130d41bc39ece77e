#pragma once

#include <functional>
#include <string>

#include "lumicor/capture/LumicorRecorder.h"
#include "lumicor/ui/LumicorLoaderView.h"
#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// Drives the recording of a demonstration from its control bar, and hands the demonstration over at its end: the
/// video, the screenshots, the task and its snapshots, in the background. One for the process. Main thread.
class LumicorRecordingTask final : public Object<LumicorRecordingTask, NSObject> {
 public:
  static LumicorRecordingTask& shared();

  /// The card over the dimmed screen, while a demonstration starts or is handed over.
  void showLoader();
  const Ref<LumicorLoaderView>& loaderView() const { return loaderView_; }

  /// Of the whole screen, to the usual file. A start that fails resets.
  void startRecording();
  /// Ends the recording, and the demonstration with it.
  void stopRecording();
  /// Without a recording there is nothing to start; the demonstration goes on without a video.
  void goWithoutRecording();

  /// Recording was not allowed: says so, and resets.
  void noteRefusal();
  /// What a stop has come to. A failure alone is followed by the finished file, so it ends nothing.
  void handleStop(const LumicorRecorder::StopResult& result);

  /// Back to where a demonstration can start: no loader, nothing tracked, an empty flow.
  void reset();

 private:
  void removeLoader();
  void noteNothingRecorded();
  void uploadVideo(const std::string& address);
  void handOver(const std::string& recordingKey);
  void registerTask(const std::string& recordingKey, const std::vector<std::string>& screenshotKeys);
  /// The second way to end: runs what it is given, and tells of success.
  void complete(const std::function<void()>& ending);

  Ref<LumicorLoaderView> loaderView_;
  Ref<LumicorRecorder> recorder_;  // none without a recording
};

}  // namespace lumicor
