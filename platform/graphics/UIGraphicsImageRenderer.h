#pragma once

#include <functional>

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"

namespace platform {

/// Makes pictures by drawing. Main thread.
class UIGraphicsImageRenderer {
 public:
  /// Points, and pixels a point. Sizes are rounded up to whole pixels and held to at least one. No picture comes of one
  /// beyond Bitmap::maximumPixels.
  explicit UIGraphicsImageRenderer(CGSize size, double scale = 2);

  Ref<UIImage> imageWithActions(const std::function<void(CGContext& context)>& actions) const;

 private:
  CGSize size_;
  double scale_;
};

}  // namespace platform
