#include "platform/media/RPScreenRecorder.h"

#include <mutex>
#include <utility>

#include "platform/media/ScreenCapture.h"

namespace platform {

namespace {

std::mutex sharedMutex;
Ref<RPScreenRecorder>* chosen = nullptr;  // never destroyed, as what it records may outlast everything

}  // namespace

Ref<RPScreenRecorder> RPScreenRecorder::shared() {
  static const auto* const own = new Ref<RPScreenRecorder>(make<RPScreenRecorder>());
  const std::lock_guard lock(sharedMutex);
  return chosen && *chosen ? *chosen : *own;
}

void RPScreenRecorder::setShared(Ref<RPScreenRecorder> recorder) {
  const std::lock_guard lock(sharedMutex);
  if (!chosen) chosen = new Ref<RPScreenRecorder>;
  chosen->swap(recorder);
}

RPScreenRecorder::RPScreenRecorder()
    : queue_(DispatchQueue::serial("screen recorder")), capture_(std::make_shared<ScreenCapture>(queue_)) {}

RPScreenRecorder::~RPScreenRecorder() { ScreenCapture::abandon(capture_); }

bool RPScreenRecorder::isRecording() const { return capture_->isRecording(); }

// Where a recording stands is the main thread's: what is asked for from elsewhere, or from the middle of something, has
// its turn there.

void RPScreenRecorder::startCapture(CaptureHandler handler, Completion completion) {
  DispatchQueue::main().async(
      [capture = capture_, handler = std::move(handler), completion = std::move(completion)]() mutable {
        capture->start(std::move(handler), std::move(completion));
      });
}

void RPScreenRecorder::stopCapture(Completion completion) {
  DispatchQueue::main().async(
      [capture = capture_, completion = std::move(completion)]() mutable { capture->stop(std::move(completion)); });
}

void RPScreenRecorder::setPermissionQuestion(PermissionQuestion question) {
  DispatchQueue::main().async([capture = capture_, question = std::move(question)]() mutable {
    capture->setPermissionQuestion(std::move(question));
  });
}

}  // namespace platform
