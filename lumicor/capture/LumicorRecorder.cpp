#include "lumicor/capture/LumicorRecorder.h"

#include <utility>

#include "lumicor/capture/LumicorRecordingTask.h"
#include "lumicor/core/LumicorDebugHelper.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/FileManager.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

constexpr const char* defaultFileName = "LumicorTaskRecording.mp4";

URL defaultFile() {
  return URL::fileURL(NSSearchPathForDirectoriesInDomains(FileManager::SearchPathDirectory::documentDirectory,
                                                          FileManager::SearchPathDomain::userDomain, true)
                          .front())
      .appendingPathComponent(defaultFileName);
}

Ref<AVAssetWriterInput> makeInput(CGSize size) {
  auto input = make<AVAssetWriterInput>(AVMediaTypeVideo, AVOutputSettings{{AVVideoCodecKey, AVVideoCodecTypeH264},
                                                                           {AVVideoWidthKey, size.width},
                                                                           {AVVideoHeightKey, size.height}});
  input->setExpectsMediaDataInRealTime(true);
  return input;
}

bool isRefusal(const NSError& error) {
  return error.code() == RPRecordingErrorUserDeclined || error.code() == RPRecordingErrorContentResize;
}

/// One picture on its way into the file. The first one only says when the video begins.
void take(const CMSampleBufferRef& buffer, const Ref<AVAssetWriter>& writer, const Ref<AVAssetWriterInput>& input,
          const std::function<void()>& firstFrameHandler) {
  if (writer->status() == AVAssetWriterStatus::unknown) {
    writer->startWriting();
    writer->startSessionAtSourceTime(CMSampleBufferGetPresentationTimeStamp(buffer));
    return firstFrameHandler();
  }
  if (writer->status() == AVAssetWriterStatus::writing && input->isReadyForMoreMediaData()) {
    input->appendSampleBuffer(buffer);
  }
}

void noteStartError(const NSError& error, const LumicorRecorder::ErrorHandler& errorHandler) {
  if (isRefusal(error)) LumicorRecordingTask::shared().noteRefusal();
  errorHandler(error);
}

}  // namespace

LumicorRecorder::LumicorRecorder() : recorder_(RPScreenRecorder::shared()) { recorder_->setMicrophoneEnabled(false); }

void LumicorRecorder::startRecording(const std::optional<URL>& to, const std::optional<CGSize>& size,
                                     ErrorHandler errorHandler, std::function<void()> completionHandler) {
  const std::int64_t start = ++starts_;
  videoWriter_ = nullptr;
  videoWriterInput_ = nullptr;
  videoOutputURL_ = to;
  const CGSize frame = size.value_or(UIScreen::main().bounds().size);
  DispatchQueue::global(QOS::userInteractive)
      .async([self = self(), start, to, frame, errorHandler = std::move(errorHandler),
              completionHandler = std::move(completionHandler)] {
        const URL url = to ? *to : defaultFile();
        (void)FileManager::defaultManager().removeItemAtURL(url);
        const Made made = AVAssetWriter::writerWithURL(url, AVFileTypeMPEG4);
        DispatchQueue::main().async([=] {
          if (start != self->starts_) return;
          self->videoOutputURL_ = url;
          self->begin(made, frame, errorHandler, completionHandler);
        });
      });
}

void LumicorRecorder::begin(const Made& made, CGSize size, const ErrorHandler& errorHandler,
                            std::function<void()> completionHandler) {
  if (!made) {
    LumicorDebugHelper::log("Error when starting recording " + made.error().description());
    return errorHandler(made.error());
  }
  videoWriter_ = *made;
  videoWriterInput_ = makeInput(size);
  videoWriter_->addInput(videoWriterInput_);
  capture(errorHandler, std::move(completionHandler));
}

void LumicorRecorder::capture(const ErrorHandler& errorHandler, std::function<void()> completionHandler) {
  const auto handler = [writer = videoWriter_, input = videoWriterInput_, first = std::move(completionHandler)](
                           const CMSampleBufferRef& buffer, RPSampleBufferType type, const std::optional<NSError>&) {
    if (type == RPSampleBufferType::video) take(buffer, writer, input, first);
  };
  recorder_->startCapture(handler, [errorHandler](const std::optional<NSError>& error) {
    if (error) DispatchQueue::main().async([error, errorHandler] { noteStartError(*error, errorHandler); });
  });
}

void LumicorRecorder::stopRecording(const StopHandler& completionHandler) {
  ++starts_;
  recorder_->stopCapture([writer = videoWriter_, input = videoWriterInput_, url = videoOutputURL_,
                          completionHandler](const std::optional<NSError>& error) {
    if (error) completionHandler(*error);
    if (input) input->markAsFinished();
    if (!writer) return;
    writer->finishWriting(
        [url, completionHandler] { completionHandler(url ? std::optional(url->absoluteString()) : std::nullopt); });
  });
}

}  // namespace lumicor
