#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/NSError.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/RPError.h"
#include "platform/runtime/Object.h"

namespace platform {

class ScreenCapture;

enum class RPSampleBufferType { video, audioApp, audioMic };

/// Hands out the pictures of the application's screen while it records: the first two frames and the last always, those
/// between only when something changed, at most 60 a second. Views that the host hides from captures
/// (`UIView::setHiddenFromCapture`) are black in them. Sound is not recorded.
/// Owner:   one for the process; letting go of one of your own ends what it records.
/// Queue:   every member may be called on any thread and returns at once. Every handler and completion runs on the
///          recorder's own serial queue (`queue`), in order: the completion of the start, the buffers, the completion
///          of the stop, and no buffer after that. The permission question runs on the main thread.
/// Units:   pictures in pixels of the screen; times are `Clock::mediaTime` in nanoseconds, growing from buffer to
///          buffer.
/// Failure: told to the completions as errors of RPRecordingErrorDomain.
class RPScreenRecorder : public Object<RPScreenRecorder, NSObject> {
 public:
  using CaptureHandler =
      std::function<void(const CMSampleBufferRef& buffer, RPSampleBufferType type, const std::optional<NSError>&)>;
  using Completion = std::function<void(const std::optional<NSError>& error)>;
  /// Asks the person, and answers whenever they did: with no error to allow it. The answer may come on any thread; of
  /// several the first counts.
  using PermissionAnswer = std::function<void(std::optional<NSError> refusal)>;
  using PermissionQuestion = std::function<void(const PermissionAnswer& answer)>;

  RPScreenRecorder();
  ~RPScreenRecorder() override;
  static Ref<RPScreenRecorder> shared();
  /// Puts another in its place, such as a test's; none, the platform's own again. Whoever took the former one keeps it.
  static void setShared(Ref<RPScreenRecorder> recorder);

  virtual void setMicrophoneEnabled(bool enabled) { isMicrophoneEnabled_ = enabled; }
  virtual bool isMicrophoneEnabled() const { return isMicrophoneEnabled_; }
  /// From the moment the start is granted until the stop.
  virtual bool isRecording() const;

  /// The completion gets the error of a start that fails: a refusal, -5830 while it is recording or starting, -5803
  /// when there is no screen that could be recorded.
  virtual void startCapture(CaptureHandler handler, Completion completion);
  /// Delivers what the screen shows now as the last buffer, and then calls back; with -5829 when nothing is recorded.
  /// Stopped while the permission is asked for, the start fails with -5806 and the stop succeeds.
  virtual void stopCapture(Completion completion);

  /// How a host has the person asked; without one, and for none, recording is allowed.
  void setPermissionQuestion(PermissionQuestion question);
  const DispatchQueue& queue() const { return queue_; }

 private:
  const DispatchQueue queue_;
  const std::shared_ptr<ScreenCapture> capture_;
  std::atomic<bool> isMicrophoneEnabled_{false};
};

}  // namespace platform
