#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/foundation/NSError.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/RPScreenRecorder.h"
#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// Records the screen to a video file.
/// Thread:  main; the file is made and looked after in the background. Start's handlers run on the main thread when the
///          start fails, on the screen recorder's queue when the first frame is there; stop's on the queues of recorder
///          and writer.
/// Failure: told to the handlers. A stop that fails reports twice: the failure, and then the finished file.
class LumicorRecorder final : public Object<LumicorRecorder, NSObject> {
 public:
  using ErrorHandler = std::function<void(const NSError&)>;
  /// The address of the video as text, or none when there is no address.
  using StopResult = Result<std::optional<std::string>, NSError>;
  using StopHandler = std::function<void(const StopResult&)>;

  LumicorRecorder();

  /// Without an address "LumicorTaskRecording.mp4" among the documents, without a size the screen's in points. A file
  /// that is there is replaced. The completion tells that the first frame has come.
  void startRecording(const std::optional<URL>& to, const std::optional<CGSize>& size, ErrorHandler errorHandler,
                      std::function<void()> completionHandler);
  void stopRecording(const StopHandler& completionHandler);

  const std::optional<URL>& videoOutputURL() const { return videoOutputURL_; }
  const Ref<AVAssetWriter>& videoWriter() const { return videoWriter_; }
  const Ref<AVAssetWriterInput>& videoWriterInput() const { return videoWriterInput_; }
  const Ref<RPScreenRecorder>& recorder() const { return recorder_; }

 private:
  using Made = Result<Ref<AVAssetWriter>, NSError>;
  void begin(const Made& made, CGSize size, const ErrorHandler& errorHandler, std::function<void()> completionHandler);
  void capture(const ErrorHandler& errorHandler, std::function<void()> completionHandler);

  std::optional<URL> videoOutputURL_;
  Ref<AVAssetWriter> videoWriter_;
  Ref<AVAssetWriterInput> videoWriterInput_;
  const Ref<RPScreenRecorder> recorder_;
  std::int64_t starts_ = 0;  // a start that was stopped before its file was made does not begin
};

}  // namespace lumicor
