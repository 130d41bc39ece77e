#pragma once

#include <cstdint>
#include <vector>

namespace platform {

/// How opaque each pixel is, 0 to 255, rows without gaps. The raw stuff of shadows. Any thread.
struct AlphaMap {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> alpha;

  /// All clear; empty for sizes that are not positive or beyond Bitmap::maximumPixels.
  AlphaMap(int width, int height);
  /// Softens it as light does, by a bell curve of that standard deviation in pixels. What would fall outside is lost,
  /// so leave `blurMargin` around.
  void blur(double deviation);
  static int blurMargin(double deviation);
};

}  // namespace platform
