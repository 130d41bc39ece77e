#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/engine/Engine.h"
#include "platform/graphics/PictureFacts.h"

namespace platform {

/// How much a compressed picture may ask for. Checked on its headers before a pixel is decoded, since a file of a few
/// kilobytes can ask for minutes and for gigabytes; the time is checked between frames and wherever more of the file is
/// read. A plain value; any thread.
struct PictureBudget {
  /// Pixels of one frame.
  std::int64_t pixels = Bitmap::maximumPixels;
  /// Frames of a moving picture that are decoded.
  std::size_t frames = PictureFacts::maximumFrames;
  /// Bytes of all decoded frames together.
  std::int64_t decodedBytes = Bitmap::maximumPixels * 4;
  /// Passes of a progressive picture, and the pixels that all passes together go over.
  std::size_t scans = static_cast<std::size_t>(-1);
  std::int64_t scannedPixels = INT64_MAX;
  /// Compressed texts and profiles.
  std::size_t attachments = static_cast<std::size_t>(-1);
  /// Seconds from opening to the last frame.
  double seconds = 1e9;

  /// For pictures that come from an address: 4,096 x 4,096 pixels, 600 frames, 64 MB decoded, 100 passes over 200
  /// million pixels, 8 attachments, 3 seconds.
  static PictureBudget forAddresses();

  /// The first frames of it that stay within all limits, as its headers have it; 0 when none may be decoded.
  std::size_t admittedFrames(const PictureFacts& facts) const;
  /// What the engine has to keep to, beginning now.
  ImageLimits limits() const;
};

}  // namespace platform
