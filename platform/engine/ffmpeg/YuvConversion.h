#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

/// A rectangle of the three planes of a picture in 4:2:0: one value of each colour plane for two by two of light.
struct YuvPlanes {
  std::uint8_t* y;
  std::uint8_t* u;
  std::uint8_t* v;
  std::ptrdiff_t yStride;
  std::ptrdiff_t uvStride;
};

/// From pixels as `Bitmap` has them to light and colour as ITU-R BT.709 defines them, in the range of video (16 to 235,
/// colour up to 240), in whole numbers. Any thread.
class YuvConversion {
 public:
  /// The widest run of pixels, and how many of a side may become one.
  static constexpr int mostPixels = 96;
  static constexpr int mostFactor = 4;

  /// Converts `width` x `height` pixels of the target, at most `mostPixels` each; each is the mean of `factor` x
  /// `factor` source pixels. Odd sides are completed with their last row or column: the planes have room for it.
  static void convert(const std::uint32_t* source, std::ptrdiff_t sourceStride, int factor, int width, int height,
                      const YuvPlanes& planes);
};

}  // namespace platform
