#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/JSONValue.h"
#include "platform/geometry/Bitmap.h"

namespace platform {

class ImageSequence;

/// A picture file being read frame by frame. Frames are decoded when asked for; asking in order is fast. One thread at
/// a time.
class CGImageSource {
 public:
  CGImageSource(std::unique_ptr<ImageSequence> sequence, std::vector<double> delays);
  ~CGImageSource();

  /// Frames of a GIF, 1 for another picture.
  std::size_t count() const { return delays_.size(); }
  /// None for a damaged frame, and for those that would bring the whole beyond Bitmap::maximumPixels.
  CGImageRef imageAt(std::size_t index);
  /// Seconds the frame of a GIF shows; none for another picture.
  std::optional<double> delayAt(std::size_t index) const;

 private:
  std::unique_ptr<ImageSequence> sequence_;
  /// Negative for a picture that is not a GIF.
  std::vector<double> delays_;
  std::size_t next_ = 0;  // the frame that the sequence gives next
};

using CGImageSourceRef = std::shared_ptr<CGImageSource>;

/// Keys of a frame's properties: a dictionary of GIF matters, and in it the seconds that the frame shows.
inline constexpr std::string_view kCGImagePropertyGIFDictionary = "{GIF}";
inline constexpr std::string_view kCGImagePropertyGIFDelayTime = "DelayTime";

/// None for data that is no picture.
CGImageSourceRef CGImageSourceCreateWithData(std::string_view data);
std::size_t CGImageSourceGetCount(const CGImageSourceRef& source);
CGImageRef CGImageSourceCreateImageAtIndex(const CGImageSourceRef& source, std::size_t index);
/// An object; none for an index without a frame.
std::optional<JSONValue> CGImageSourceCopyPropertiesAtIndex(const CGImageSourceRef& source, std::size_t index);

}  // namespace platform
