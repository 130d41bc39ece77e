#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/NSError.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"
#include "platform/media/AVAssetWriterInput.h"
#include "platform/media/AVError.h"
#include "platform/runtime/Object.h"

namespace platform {

using AVFileType = std::string;
inline constexpr const char* AVFileTypeMPEG4 = "public.mpeg-4";

enum class AVAssetWriterStatus { unknown, writing, completed, failed, cancelled };

/// Writes a video file: H.264 in MP4, its index in front, so that it plays while it is still being loaded. Encoding
/// happens on a thread of its own.
/// Owner:   its maker. One that is let go of before it was finished leaves no file behind; one that is finishing goes
///          on to its completion.
/// Thread:  any. `writerWithURL` and `startWriting` touch the disk for a moment; nothing waits for the encoder.
/// File:    grows under a hidden name beside its own and gets its name when it is whole, in the place of whatever had
/// it:
///          a reader never sees a part.
/// Failure: the first error ends writing: the status is `failed`, `error` says why, what was written is removed.
class AVAssetWriter : public Object<AVAssetWriter, NSObject> {
 public:
  /// The error of a file that cannot be made: an address that is none of a file, another file type, a folder that is
  /// missing or may not be written to.
  static Result<Ref<AVAssetWriter>, NSError> writerWithURL(const URL& url, const AVFileType& fileType);
  class Session;
  /// For `writerWithURL`.
  AVAssetWriter(URL url, AVFileType fileType, std::shared_ptr<Session> session);
  ~AVAssetWriter() override;

  const URL& outputURL() const { return url_; }
  const AVFileType& outputFileType() const { return fileType_; }
  AVAssetWriterStatus status() const;
  /// Why it failed; none otherwise.
  std::optional<NSError> error() const;

  /// True for one video input with a codec (H.264) and a size that can be written, before writing starts.
  bool canAddInput(const Ref<AVAssetWriterInput>& input) const;
  /// One that cannot be added makes `startWriting` fail.
  void addInput(const Ref<AVAssetWriterInput>& input);

  /// From `unknown` to `writing`, or to `failed` and false: no input or one that cannot be added, an encoder that does
  /// not start. False too when it was called before.
  bool startWriting();
  /// The instant of the video's first moment, in the time of the buffers. Once, while writing.
  void startSessionAtSourceTime(CMTime time);
  /// The instant at which the last picture ends; without it, its own duration after its beginning.
  void endSessionAtSourceTime(CMTime time);

  /// Marks the input finished, encodes what waits, completes the file and then calls back on the writer's own serial
  /// queue, by when the status is `completed`, or `failed` (an error on the way; not one picture; never started). On a
  /// writer that failed, was cancelled or finished before it calls back with nothing changed.
  void finishWriting(std::function<void()> completion);
  /// Ends writing and removes the file. A writer that is finishing already goes on.
  void cancelWriting();

 private:
  const URL url_;
  const AVFileType fileType_;
  const std::shared_ptr<Session> session_;
};

}  // namespace platform
