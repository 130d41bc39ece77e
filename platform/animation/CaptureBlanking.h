#pragma once

#include <vector>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"

namespace platform {

class CALayer;

/// What pictures for others, screenshots and videos, do not show: the rectangles that hold the layers which are hidden
/// from captures, with all that is in them, as they stand at one instant, clipped by the layers around them. A layer in
/// front does not uncover them. Costs nothing while no layer of the process is hidden. Main thread.
class CaptureBlanking {
 public:
  /// In whole pixels. Nothing of a layer that is hidden altogether or clear. A root inside a layer that is hidden from
  /// captures is hidden whole.
  static std::vector<CGRect> areas(const CALayer& root, const CGAffineTransform& rootToPixels, double mediaTime);
  /// Makes the areas black.
  static void blank(Bitmap& bitmap, const std::vector<CGRect>& areas);

 private:
  static CGRect areaOf(const CALayer& layer, const CALayer& root, const CGAffineTransform& rootToPixels,
                       double mediaTime);
};

}  // namespace platform
