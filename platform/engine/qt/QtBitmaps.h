#pragma once

#include <QImage>
#include <list>
#include <memory>

#include "platform/geometry/Bitmap.h"

namespace platform {

/// Pictures made smaller once and kept, because shrinking well is slow and pictures are shown at one size again and
/// again. Main thread.
class QtBitmaps {
 public:
  /// The bitmap at a smaller size in pixels.
  QImage shrunk(const CGImageRef& bitmap, QSize size);

 private:
  struct Entry {
    std::weak_ptr<const Bitmap> bitmap;
    QImage image;
  };
  static constexpr std::size_t maximumCount = 32;
  std::list<Entry> recent_;
};

}  // namespace platform
