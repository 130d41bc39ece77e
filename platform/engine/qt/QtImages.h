#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/engine/Engine.h"

namespace platform {

/// Reads and writes picture files. Any thread. Sizes are looked at before pixels are, so that a small file cannot ask
/// for much memory.
class QtImages {
 public:
  static CGImageRef decode(std::string_view data, const ImageLimits& limits);
  static std::unique_ptr<ImageSequence> open(std::string_view data, const ImageLimits& limits);
  static std::string encodePNG(const Bitmap& bitmap);
};

}  // namespace platform
