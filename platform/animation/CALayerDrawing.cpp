// What a layer shows by itself.

#include <utility>

#include "platform/animation/CALayer.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/engine/Painter.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/DrawingRecord.h"
#include "platform/graphics/UIImage.h"

namespace platform {

void CALayer::setDelegate(CALayerDelegate* delegate) {
  delegate_ = delegate;
  if (delegate) setNeedsDisplay();
}

void CALayer::setNeedsDisplay() {
  needsDisplay_ = true;
  for (CALayer* above = owner(); above; above = above->owner()) above->subtreeNeedsDisplay_ = true;
  changed();
}

void CALayer::displayIfNeeded() {
  // Drawing may change the tree, which may be of any depth.
  std::vector<Ref<CALayer>> open{self()};
  while (!open.empty()) {
    const Ref<CALayer> layer = std::move(open.back());
    open.pop_back();
    if (layer->needsDisplay_) layer->display();
    if (!std::exchange(layer->subtreeNeedsDisplay_, false)) continue;
    open.insert(open.end(), layer->sublayers_.rbegin(), layer->sublayers_.rend());
    if (layer->mask_) open.push_back(layer->mask_);
  }
}

void CALayer::display() {
  needsDisplay_ = false;
  auto record = std::make_shared<DrawingRecord>();
  {
    CGContext context(*record);
    drawInContext(context);
  }
  const bool wasEmpty = drawing_ == nullptr;
  drawing_ = record->isEmpty() ? nullptr : std::move(record);
  if (drawing_ || !wasEmpty) changed();
}

void CALayer::drawInContext(CGContext& context) {
  if (delegate_ && delegate_->layerDrawsItself(*this)) delegate_->drawLayer(*this, context);
}

void CALayer::renderInContext(CGContext& context) {
  const CGSize size = state_.bounds.size;
  if (const Ref<UIImage> image = renderLayer(*this, size, context.scale())) {
    context.drawImage(*image, {CGPointZero, image->size()});
  }
}

bool CALayer::hasOwnContents() const { return state_.contents || drawing_; }

CGPath CALayer::backgroundPath(double inset) const {
  const CGRect rect = state_.bounds.insetBy(inset, inset);
  const double radius = state_.cornerRadius - inset;
  if (!(radius > 0)) return CGPath::rect(rect);
  return state_.cornerCurve == CALayerCornerCurve::continuous ? CGPath::continuousRoundedRect(rect, radius)
                                                              : CGPath::roundedRect(rect, radius);
}

void CALayer::paintContents(Painter& painter, double mediaTime) const {
  if (state_.contents) {
    const UIImage& image = state_.contents->frameAt(mediaTime - state_.contentsStart);
    const CGRect rect = contentsRect(image);
    const bool overflows = !state_.bounds.contains(rect);
    if (overflows) {
      painter.save();
      painter.clip(state_.bounds);
    }
    painter.bitmap(image.cgImage(), rect, 1);
    if (overflows) painter.restore();
  }
  if (drawing_) {
    painter.save();
    painter.clip(state_.bounds);
    drawing_->replay(painter);
    painter.restore();
  }
}

CGRect CALayer::contentsRect(const UIImage& image) const {
  using Gravity = CALayerContentsGravity;
  const CGRect& bounds = state_.bounds;
  CGSize size = image.size();
  const Gravity gravity = state_.contentsGravity;
  if (gravity == Gravity::resize || size.width <= 0 || size.height <= 0) return bounds;
  if (gravity == Gravity::resizeAspect || gravity == Gravity::resizeAspectFill) {
    const double x = bounds.width() / size.width, y = bounds.height() / size.height;
    const double factor = gravity == Gravity::resizeAspect ? std::min(x, y) : std::max(x, y);
    size = {size.width * factor, size.height * factor};
  }
  const bool isLeft = gravity == Gravity::left || gravity == Gravity::topLeft || gravity == Gravity::bottomLeft;
  const bool isRight = gravity == Gravity::right || gravity == Gravity::topRight || gravity == Gravity::bottomRight;
  const bool isTop = gravity == Gravity::top || gravity == Gravity::topLeft || gravity == Gravity::topRight;
  const bool isBottom = gravity == Gravity::bottom || gravity == Gravity::bottomLeft || gravity == Gravity::bottomRight;
  const double x = isLeft ? 0 : isRight ? 1 : 0.5, y = isTop ? 0 : isBottom ? 1 : 0.5;
  return {{bounds.minX() + (bounds.width() - size.width) * x, bounds.minY() + (bounds.height() - size.height) * y},
          size};
}

}  // namespace platform
