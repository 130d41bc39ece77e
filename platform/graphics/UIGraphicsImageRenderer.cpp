#include "platform/graphics/UIGraphicsImageRenderer.h"

#include <cmath>

#include "platform/engine/Engine.h"
#include "platform/engine/Painter.h"

namespace platform {

namespace {

int pixels(double points, double scale) {
  const double size = std::ceil(points * scale - 1e-6);
  return size >= 1 ? static_cast<int>(std::min(size, 32768.0)) : 1;
}

}  // namespace

UIGraphicsImageRenderer::UIGraphicsImageRenderer(CGSize size, double scale)
    : size_(size), scale_(std::isfinite(scale) && scale > 0 ? scale : 1) {}

Ref<UIImage> UIGraphicsImageRenderer::imageWithActions(const std::function<void(CGContext&)>& actions) const {
  Bitmap bitmap(pixels(size_.width, scale_), pixels(size_.height, scale_));
  if (bitmap.isEmpty()) return nullptr;
  {
    const std::unique_ptr<Canvas> canvas = Engine::shared().makeCanvas(bitmap);
    canvas->concat(CGAffineTransform::scale(scale_, scale_));
    CGContext context(*canvas, scale_);
    actions(context);
  }
  return UIImage::imageWithBitmap(std::move(bitmap), scale_);
}

}  // namespace platform
