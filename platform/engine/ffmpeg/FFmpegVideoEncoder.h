#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/dispatch/BackgroundActivity.h"
#include "platform/engine/VideoEncoder.h"
#include "platform/engine/ffmpeg/H264Encoder.h"
#include "platform/engine/ffmpeg/MP4File.h"
#include "platform/engine/ffmpeg/PictureConverter.h"

namespace platform {

/// What the thread of one video shares with the encoder that feeds it. The thread keeps it alive until its end.
class EncodingThread {
 public:
  EncodingThread(int width, int height, std::function<void(VideoError)> failed);

  /// Before `start`.
  std::optional<VideoError> open(const std::string& path);
  /// False when the system has no thread to give.
  static bool start(std::shared_ptr<EncodingThread> thread);

  bool hasRoom() const;
  void append(TiledBitmap picture, std::int64_t begin, std::int64_t end);
  void finish(std::optional<std::int64_t> end, std::function<void(std::optional<VideoError>)> finished);
  /// Ends the thread after the picture in hand.
  void cancel();

 private:
  struct Picture {
    TiledBitmap content;
    std::int64_t begin;
    std::int64_t end;
    BackgroundActivity activity;
  };
  void run();
  std::optional<VideoError> encode(const Picture& picture);
  std::optional<VideoError> complete();

  const std::function<void(VideoError)> failed_;
  PictureConverter converter_;
  H264Encoder encoder_;
  MP4File file_;
  std::int64_t end_ = 0;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Picture> waiting_;
  std::function<void(std::optional<VideoError>)> finished_;
  std::optional<std::int64_t> chosenEnd_;
  std::optional<BackgroundActivity> finishing_;
  bool isCancelled_ = false;
};

class FFmpegVideoEncoder final : public VideoEncoder {
 public:
  explicit FFmpegVideoEncoder(std::shared_ptr<EncodingThread> thread) : thread_(std::move(thread)) {}
  ~FFmpegVideoEncoder() override { thread_->cancel(); }
  bool hasRoom() const override { return thread_->hasRoom(); }
  void append(TiledBitmap picture, std::int64_t begin, std::int64_t end) override {
    thread_->append(std::move(picture), begin, end);
  }
  void finish(std::optional<std::int64_t> end, std::function<void(std::optional<VideoError>)> finished) override {
    thread_->finish(end, std::move(finished));
  }

 private:
  const std::shared_ptr<EncodingThread> thread_;
};

}  // namespace platform
