#pragma once

#include "platform/geometry/CGGeometry.h"
#include "platform/graphics/UIImage.h"

namespace platform {

class CALayer;

/// The picture of a layer with everything in it as it shows at this moment, its bounds' origin at the top left, on a
/// clear ground. Windows, screenshots and videos come from the same drawing. `size` in points, `scale` in pixels a
/// point. None beyond Bitmap::maximumPixels. Main thread.
Ref<UIImage> renderLayer(CALayer& layer, CGSize size, double scale);
/// The same for others to see: what is hidden from captures is black.
Ref<UIImage> captureLayer(CALayer& layer, CGSize size, double scale);

}  // namespace platform
