#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/media/RPScreenRecorder.h"
#include "platform/uikit/application/ScreenDisplay.h"

namespace platform {

/// What a recorder does: asks, watches the screen frame by frame, and hands buffers over to its queue. Main thread,
/// except where a member says any; lives as long as its recorder and what waits for it.
class ScreenCapture : public std::enable_shared_from_this<ScreenCapture> {
 public:
  explicit ScreenCapture(DispatchQueue queue) : queue_(std::move(queue)) {}
  ~ScreenCapture();

  void setPermissionQuestion(RPScreenRecorder::PermissionQuestion question) { question_ = std::move(question); }
  void start(RPScreenRecorder::CaptureHandler handler, RPScreenRecorder::Completion completion);
  void stop(RPScreenRecorder::Completion completion);
  /// Any thread.
  bool isRecording() const { return isRecording_; }
  /// Ends what it records, with nobody told. Any thread.
  static void abandon(const std::shared_ptr<ScreenCapture>& capture);

 private:
  /// Buffers on their way to the handler. At most two wait: a newer one takes the place of the second.
  class Delivery;

  void begin();
  void refuse(const NSError& error);
  void answer(std::uint64_t question, const std::optional<NSError>& refusal);
  void screenShown(const CGRect& changed);
  void deliver(std::int64_t instant, std::int64_t duration);
  void end();
  void call(const RPScreenRecorder::Completion& completion, std::optional<NSError> error) const;

  const DispatchQueue queue_;
  std::atomic<bool> isRecording_{false};
  RPScreenRecorder::PermissionQuestion question_;
  std::uint64_t questions_ = 0;
  bool isAsking_ = false;
  RPScreenRecorder::CaptureHandler handler_;
  RPScreenRecorder::Completion started_;

  Ref<ScreenDisplay> display_;
  std::uint64_t observer_ = 0;
  std::shared_ptr<Delivery> delivery_;
  std::int64_t lastInstant_ = 0;
  int framesToComplete_ = 0;  ///< of those that come whether something changed or not
};

}  // namespace platform
