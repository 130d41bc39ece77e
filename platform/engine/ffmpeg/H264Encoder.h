#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/engine/ffmpeg/LibavPointers.h"

namespace platform {

/// Frames in, packets of H.264 out, each frame's at once. The same frames at the same instants give the same bytes. One
/// thread at a time.
class H264Encoder {
 public:
  /// Even sides. None when it opened.
  std::optional<VideoError> open(int width, int height);
  const AVCodecContext& context() const { return *context_; }

  using Sink = std::function<std::optional<VideoError>(AVPacket& packet)>;
  /// The sink may take the packet's contents. `begin` in ticks.
  std::optional<VideoError> encode(AVFrame& frame, std::int64_t begin, const Sink& sink);
  /// What the encoder still holds. Nothing follows.
  std::optional<VideoError> flush(const Sink& sink);

 private:
  std::optional<VideoError> send(const AVFrame* frame, const Sink& sink);

  LibavPointer<AVCodecContext> context_;
  LibavPointer<AVPacket> packet_;
};

}  // namespace platform
