#include "platform/animation/LayerRenderer.h"

#include <cmath>

#include "platform/animation/CALayer.h"
#include "platform/animation/CaptureBlanking.h"
#include "platform/animation/LayerCompositor.h"
#include "platform/dispatch/Clock.h"
#include "platform/engine/Engine.h"

namespace platform {

namespace {

enum class Audience { host, others };

CGAffineTransform toPixelsOf(const CALayer& layer, double scale) {
  const CGPoint origin = layer.bounds().origin;
  return CGAffineTransform::translation(-origin.x, -origin.y).then(CGAffineTransform::scale(scale, scale));
}

Ref<UIImage> pictureOf(CALayer& layer, CGSize size, double scale, Audience audience) {
  layer.displayIfNeeded();
  const auto pixels = [scale](double points) {
    return static_cast<int>(std::clamp(std::ceil(points * scale - 1e-6), 1.0, 32768.0));
  };
  Bitmap bitmap(pixels(size.width), pixels(size.height));
  if (bitmap.isEmpty()) return nullptr;
  const CGAffineTransform toPixels = toPixelsOf(layer, scale);
  const double now = Clock::mediaTime();
  {
    const std::unique_ptr<Canvas> canvas = Engine::shared().makeCanvas(bitmap);
    LayerCompositor(now).paintRoot(*canvas, layer, toPixels, CGRect(0, 0, bitmap.width(), bitmap.height()));
  }
  if (audience == Audience::others) CaptureBlanking::blank(bitmap, CaptureBlanking::areas(layer, toPixels, now));
  return UIImage::imageWithBitmap(std::move(bitmap), scale);
}

}  // namespace

Ref<UIImage> renderLayer(CALayer& layer, CGSize size, double scale) {
  return pictureOf(layer, size, scale, Audience::host);
}

Ref<UIImage> captureLayer(CALayer& layer, CGSize size, double scale) {
  return pictureOf(layer, size, scale, Audience::others);
}

}  // namespace platform
