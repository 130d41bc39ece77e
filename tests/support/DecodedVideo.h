#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/geometry/Bitmap.h"

namespace platform::test {

/// A video file as a player sees it: all its pictures decoded, in the colours that the file says they have.
struct DecodedVideo {
  struct Frame {
    double begin = 0;  ///< seconds
    double duration = 0;
    Bitmap picture;
  };
  std::string container;  ///< "mov,mp4,..."
  std::string codec;      ///< "h264"
  int width = 0;
  int height = 0;
  double duration = 0;
  /// The index lies before the pictures, so that the file plays while it is being loaded.
  bool isIndexInFront = false;
  std::vector<Frame> frames;

  /// None for a file that is no video, damaged or not there.
  static std::optional<DecodedVideo> read(const std::string& path);
};

}  // namespace platform::test
