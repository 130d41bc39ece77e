#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/JSONValue.h"
#include "platform/geometry/Bitmap.h"
#include "platform/graphics/PictureBudget.h"

namespace platform {

class ImageSequence;

/// A picture file being read frame by frame. Frames are decoded when asked for; asking in order is fast. One thread at
/// a time.
class CGImageSource {
 public:
  CGImageSource(std::unique_ptr<ImageSequence> sequence, PictureFacts facts, std::size_t admittedFrames);
  ~CGImageSource();

  /// Frames of a GIF, 1 for another picture.
  std::size_t count() const { return facts_.frames(); }
  /// None for a damaged frame, and for those beyond the budget.
  CGImageRef imageAt(std::size_t index);
  /// Seconds the frame of a GIF shows; none for another picture.
  std::optional<double> delayAt(std::size_t index) const;

 private:
  std::unique_ptr<ImageSequence> sequence_;
  PictureFacts facts_;
  std::size_t admittedFrames_;
  std::size_t next_ = 0;  // the frame that the sequence gives next
};

using CGImageSourceRef = std::shared_ptr<CGImageSource>;

/// Keys of a frame's properties: a dictionary of GIF matters, and in it the seconds that the frame shows.
inline constexpr std::string_view kCGImagePropertyGIFDictionary = "{GIF}";
inline constexpr std::string_view kCGImagePropertyGIFDelayTime = "DelayTime";

/// None for data that is no picture, and for one of which the budget admits no frame. Data that came from an address is
/// read with `PictureBudget::forAddresses()`.
CGImageSourceRef CGImageSourceCreateWithData(std::string_view data, const PictureBudget& budget = {});
std::size_t CGImageSourceGetCount(const CGImageSourceRef& source);
CGImageRef CGImageSourceCreateImageAtIndex(const CGImageSourceRef& source, std::size_t index);
/// An object; none for an index without a frame.
std::optional<JSONValue> CGImageSourceCopyPropertiesAtIndex(const CGImageSourceRef& source, std::size_t index);

}  // namespace platform
