#pragma once

#include <memory>
#include <utility>

#include "platform/geometry/TiledBitmap.h"
#include "platform/media/CMTime.h"

namespace platform {

/// One piece of a recording: a picture, from when and how long it is to be shown. Never changes, is shared by whoever
/// works on it; any thread. A piece of sound has no picture.
class CMSampleBuffer {
 public:
  CMSampleBuffer(TiledBitmap image, CMTime presentationTime, CMTime duration = kCMTimeZero)
      : image_(std::move(image)), presentationTime_(presentationTime), duration_(duration) {}

  /// In pixels of the screen; empty for sound.
  const TiledBitmap& image() const { return image_; }
  CMTime presentationTime() const { return presentationTime_; }
  /// How long at least; a picture stays until the next one.
  CMTime duration() const { return duration_; }

 private:
  const TiledBitmap image_;
  const CMTime presentationTime_;
  const CMTime duration_;
};

using CMSampleBufferRef = std::shared_ptr<const CMSampleBuffer>;

/// None for no buffer.
inline CMTime CMSampleBufferGetPresentationTimeStamp(const CMSampleBufferRef& buffer) {
  return buffer ? buffer->presentationTime() : kCMTimeInvalid;
}
inline CMTime CMSampleBufferGetDuration(const CMSampleBufferRef& buffer) {
  return buffer ? buffer->duration() : kCMTimeInvalid;
}

}  // namespace platform
