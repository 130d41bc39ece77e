#pragma once

#include <cstdint>

#include "platform/engine/ffmpeg/LibavPointers.h"
#include "platform/geometry/TiledBitmap.h"

namespace platform {

/// Keeps the picture that goes to the encoder: of each new one only the tiles that differ from the one before are
/// converted. A picture whose sides are one to four times those of the video is reduced by whole pixels, and so is what
/// the encoder sees of a screen; any other is scaled as a whole, to fit, and centred on black. One thread at a time.
class PictureConverter {
 public:
  /// The video's size as asked for; the frame's sides are even.
  PictureConverter(int width, int height);
  bool isUsable() const { return frame_ != nullptr; }

  enum class Outcome { same, different, failed };
  Outcome take(const TiledBitmap& picture);
  AVFrame& frame() { return *frame_; }

 private:
  void convertTiles(const TiledBitmap& picture, int factor);
  bool scaleWhole(const TiledBitmap& picture);
  bool prepareScaling(const TiledBitmap& picture);
  void fillBlack();
  /// How many source pixels become one, or 0 when there is no such number.
  int factorFor(const TiledBitmap& picture) const;

  const int width_;
  const int height_;
  LibavPointer<AVFrame> frame_;
  TiledBitmap last_;

  // For pictures that are scaled as a whole.
  LibavPointer<SwsContext> scaling_;
  Bitmap whole_;
  int left_ = 0, top_ = 0;  // where they are in the frame
};

}  // namespace platform
