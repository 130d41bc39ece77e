#include "platform/media/ScreenCapture.h"

#include <utility>

#include "platform/animation/FrameClock.h"
#include "platform/dispatch/Clock.h"

namespace platform {

namespace {

constexpr std::int32_t nanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t frameNanoseconds = nanosecondsPerSecond / 60;
/// One to start a video with, one to be its first picture.
constexpr int framesAtStart = 2;

NSError recordingError(RPRecordingErrorCode code, const char* sentence) {
  return {RPRecordingErrorDomain, code, sentence};
}

}  // namespace

class ScreenCapture::Delivery : public std::enable_shared_from_this<Delivery> {
 public:
  Delivery(DispatchQueue queue, RPScreenRecorder::CaptureHandler handler)
      : queue_(std::move(queue)), handler_(std::move(handler)) {}

  void push(CMSampleBufferRef buffer) {
    constexpr std::size_t mostWaiting = 2;
    {
      const std::lock_guard lock(mutex_);
      if (waiting_.size() >= mostWaiting) {
        waiting_.back().swap(buffer);
        return;
      }
      waiting_.push_back(std::move(buffer));
    }
    queue_.async([self = shared_from_this()] { self->handOver(); });
  }
  /// What waits is not delivered any more.
  void drop() {
    const std::lock_guard lock(mutex_);
    waiting_.clear();
  }

 private:
  void handOver() {
    CMSampleBufferRef buffer;
    {
      const std::lock_guard lock(mutex_);
      if (waiting_.empty()) return;
      buffer = std::move(waiting_.front());
      waiting_.pop_front();
    }
    if (handler_) handler_(buffer, RPSampleBufferType::video, std::nullopt);
  }

  const DispatchQueue queue_;
  const RPScreenRecorder::CaptureHandler handler_;
  std::mutex mutex_;
  std::deque<CMSampleBufferRef> waiting_;
};

ScreenCapture::~ScreenCapture() {
  if (display_) display_->removeObserver(observer_);
}

void ScreenCapture::abandon(const std::shared_ptr<ScreenCapture>& capture) {
  const auto leave = [capture] {
    capture->isAsking_ = false;
    if (capture->delivery_) capture->delivery_->drop();
    capture->end();
  };
  if (isMainThread()) return leave();
  DispatchQueue::main().async(leave);
}

void ScreenCapture::call(const RPScreenRecorder::Completion& completion, std::optional<NSError> error) const {
  if (completion) queue_.async([completion, error = std::move(error)] { completion(error); });
}

// ---- The start

void ScreenCapture::start(RPScreenRecorder::CaptureHandler handler, RPScreenRecorder::Completion completion) {
  if (isAsking_ || isRecording_) {
    return call(completion,
                recordingError(RPRecordingErrorAttemptToStartInRecordingState, "The screen is being recorded."));
  }
  handler_ = std::move(handler);
  started_ = std::move(completion);
  isAsking_ = true;
  const std::uint64_t question = ++questions_;
  if (!question_) return answer(question, std::nullopt);
  const RPScreenRecorder::PermissionQuestion ask = question_;  // it may set another one
  ask([weak = weak_from_this(), question](const std::optional<NSError>& refusal) {
    DispatchQueue::main().async([weak, question, refusal] {
      if (const auto capture = weak.lock()) capture->answer(question, refusal);
    });
  });
}

void ScreenCapture::answer(std::uint64_t question, const std::optional<NSError>& refusal) {
  if (!isAsking_ || question != questions_) return;
  isAsking_ = false;
  if (refusal) return refuse(*refusal);
  begin();
}

void ScreenCapture::refuse(const NSError& error) {
  call(std::exchange(started_, nullptr), error);
  handler_ = nullptr;
}

void ScreenCapture::begin() {
  display_ = ScreenDisplay::shared();
  if (display_->bitmap().isEmpty()) {
    display_.reset();
    return refuse(recordingError(RPRecordingErrorFailedToStart, "There is no screen that could be recorded."));
  }
  isRecording_ = true;
  lastInstant_ = 0;
  framesToComplete_ = framesAtStart;
  delivery_ = std::make_shared<Delivery>(queue_, std::exchange(handler_, nullptr));
  observer_ = display_->addObserver([this](const CGRect& changed) { screenShown(changed); });
  FrameClock::shared().setNeedsFrame();
  call(std::exchange(started_, nullptr), std::nullopt);
}

// ---- Frames

void ScreenCapture::screenShown(const CGRect& changed) {
  if (framesToComplete_ > 0) {
    --framesToComplete_;
    if (framesToComplete_ > 0) FrameClock::shared().setNeedsFrame();
  } else if (changed.isEmpty()) {
    return;
  }
  deliver(Clock::nanoseconds(), frameNanoseconds);
}

void ScreenCapture::deliver(std::int64_t instant, std::int64_t duration) {
  lastInstant_ = std::max(instant, lastInstant_ + 1);
  delivery_->push(std::make_shared<CMSampleBuffer>(display_->picture(), CMTimeMake(lastInstant_, nanosecondsPerSecond),
                                                   CMTimeMake(duration, nanosecondsPerSecond)));
}

// ---- The stop

void ScreenCapture::stop(RPScreenRecorder::Completion completion) {
  if (isAsking_) {
    isAsking_ = false;
    refuse(recordingError(RPRecordingErrorInterrupted, "The recording was stopped before it began."));
    return call(completion, std::nullopt);
  }
  if (!isRecording_) {
    return call(completion, recordingError(RPRecordingErrorAttemptToStopNonRecording, "Nothing is being recorded."));
  }
  framesToComplete_ = 0;
  display_->removeObserver(observer_);
  display_->showFrame();
  deliver(Clock::nanoseconds(), 0);
  end();
  call(completion, std::nullopt);
}

void ScreenCapture::end() {
  isRecording_ = false;
  handler_ = nullptr;
  started_ = nullptr;
  delivery_.reset();
  if (display_) display_->removeObserver(observer_);
  display_.reset();
}

}  // namespace platform
