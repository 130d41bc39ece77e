#include "platform/animation/LayerRenderer.h"

#include <cmath>

#include "platform/animation/CALayer.h"
#include "platform/animation/LayerCompositor.h"
#include "platform/dispatch/Clock.h"
#include "platform/engine/Engine.h"

namespace platform {

Ref<UIImage> renderLayer(CALayer& layer, CGSize size, double scale) {
  layer.displayIfNeeded();
  const auto pixels = [scale](double points) {
    return static_cast<int>(std::clamp(std::ceil(points * scale - 1e-6), 1.0, 32768.0));
  };
  Bitmap bitmap(pixels(size.width), pixels(size.height));
  if (bitmap.isEmpty()) return nullptr;
  {
    const std::unique_ptr<Canvas> canvas = Engine::shared().makeCanvas(bitmap);
    const CGPoint origin = layer.bounds().origin;
    const CGAffineTransform toPixels =
        CGAffineTransform::translation(-origin.x, -origin.y).then(CGAffineTransform::scale(scale, scale));
    LayerCompositor(Clock::mediaTime())
        .paintRoot(*canvas, layer, toPixels, CGRect(0, 0, bitmap.width(), bitmap.height()));
  }
  return UIImage::imageWithBitmap(std::move(bitmap), scale);
}

}  // namespace platform
