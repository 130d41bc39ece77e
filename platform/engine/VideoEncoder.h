#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/geometry/TiledBitmap.h"

namespace platform {

/// Why a video could not be written.
struct VideoError {
  enum class Kind { encoder, file };
  Kind kind = Kind::encoder;
  int reason = 0;  ///< of a file: what `errno` said
  std::string description;
};

/// Writes one video file of H.264 in MP4, its index in front of its pictures. Works on a thread of its own that no call
/// waits for; while pictures wait for it, virtual time stands still.
/// Owner:   its maker. Dropped before it was finished, it stops soon after and leaves what it has written, which is no
///          video: whoever made the file's name removes it.
/// Thread:  any, one at a time. Callbacks come on the encoder's thread: hand over and return.
/// Units:   pixels; instants in ticks since the video's beginning.
/// Failure: the first one is told to `failed`, once, unless it is that of `finish`; nothing is written after it.
class VideoEncoder {
 public:
  static constexpr std::int32_t ticksPerSecond = 90'000;
  /// How long a picture is shown at least.
  static constexpr std::int64_t shortestPicture = ticksPerSecond / 60;
  /// At most this many pictures wait.
  static constexpr std::size_t mostWaiting = 3;

  /// A video is made of blocks of two by two pixels: an odd side grows by one, its last row or column repeated. At most
  /// what the format allows: 16,384 pixels a side and 139,264 blocks of 16 by 16 altogether.
  static bool canEncode(std::int64_t width, std::int64_t height);

  struct Opened;
  /// Writes into the file of that name, which is there. Opens it, and the encoder, before it returns.
  static Opened open(const std::string& path, int width, int height, std::function<void(VideoError)> failed);
  virtual ~VideoEncoder() = default;

  virtual bool hasRoom() const = 0;
  /// A picture, scaled to fit and centred on black, that is shown from `begin` until the next one, of the last one
  /// until `end`. Pictures begin one after the other; one that looks like the one before it costs nothing. Without room
  /// the picture that came last makes way for this one.
  virtual void append(TiledBitmap picture, std::int64_t begin, std::int64_t end) = 0;
  /// Works off what waits, completes the file and calls back. With `end` the last picture ends there. Nothing follows.
  virtual void finish(std::optional<std::int64_t> end, std::function<void(std::optional<VideoError>)> finished) = 0;
};

struct VideoEncoder::Opened {
  std::unique_ptr<VideoEncoder> encoder;
  VideoError error;  ///< when there is no encoder
};

}  // namespace platform
