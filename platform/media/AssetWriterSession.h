#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/VideoEncoder.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/PartialFile.h"

namespace platform {

/// What a writer, its input and the encoder's thread share: where writing stands. Any thread. Lives as long as one of
/// them, and while the file is being finished.
class AVAssetWriter::Session : public std::enable_shared_from_this<Session> {
 public:
  Session(std::string path, std::shared_ptr<PartialFile> file);

  AVAssetWriterStatus status() const;
  std::optional<NSError> error() const;
  bool canAdd(const Ref<AVAssetWriterInput>& input) const;
  void add(const Ref<AVAssetWriterInput>& input);
  bool start();
  void startAt(CMTime time);
  void endAt(CMTime time);
  void finish(std::function<void()> completion);
  void cancel();

  // From the input.
  enum class Pace { realTime, asItComes };
  bool isReady(Pace pace) const;
  bool append(const CMSampleBuffer& buffer, Pace pace);

 private:
  struct Size {
    int width, height;
  };
  static std::optional<Size> sizeOf(const AVAssetWriterInput& input);
  std::optional<NSError> open();
  NSError errorFor(const VideoError& error) const;
  void encoderFailed(const VideoError& error);
  void encoderFinished(const std::optional<VideoError>& error);
  void endWith(AVAssetWriterStatus status, std::optional<NSError> error);  // with the lock held
  void callBack();                                                         // with the lock held

  const std::string path_;
  const DispatchQueue queue_ = DispatchQueue::serial("asset writer");

  mutable std::mutex mutex_;
  std::shared_ptr<PartialFile> file_;
  AVAssetWriterStatus status_ = AVAssetWriterStatus::unknown;
  std::optional<NSError> error_;
  Ref<AVAssetWriterInput> input_;
  bool isInputRefused_ = false;
  std::unique_ptr<VideoEncoder> encoder_;
  CMTime start_;
  CMTime end_;
  std::optional<std::int64_t> lastBegin_;
  bool isFinishing_ = false;
  std::vector<std::function<void()>> completions_;
};

}  // namespace platform
