#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/engine/ffmpeg/LibavPointers.h"

namespace platform {

/// An MP4 file with one track of pictures, whose index is moved to its front at the end. One thread at a time. Dropped
/// before `finish`, it closes a file without an index.
class MP4File {
 public:
  MP4File() = default;
  ~MP4File();
  MP4File(const MP4File&) = delete;
  MP4File& operator=(const MP4File&) = delete;

  /// The error of each: why not; none when it went well.
  std::optional<VideoError> open(const std::string& path, const AVCodecContext& encoder);
  /// Takes the packet's contents. A packet is shown until the next one, so it is written when that one comes.
  std::optional<VideoError> write(AVPacket& packet);
  /// The last packet is shown until `end`, in ticks. Puts everything on the disk and closes the file.
  std::optional<VideoError> finish(std::int64_t end);

 private:
  std::optional<VideoError> writeHeld(std::int64_t end);
  std::optional<VideoError> close();

  AVFormatContext* format_ = nullptr;
  AVStream* stream_ = nullptr;
  LibavPointer<AVPacket> held_;
  bool isHolding_ = false;
  std::string path_;
};

}  // namespace platform
