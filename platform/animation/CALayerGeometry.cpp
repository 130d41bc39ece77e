// Where a layer lies.

#include "platform/animation/CALayer.h"

namespace platform {

namespace {

/// The bounds as they lie around the anchor point once turned and scaled.
CGRect boxAround(CGPoint anchor, CGSize size, const CGAffineTransform& transform) {
  return transform.apply(CGRect(-anchor.x * size.width, -anchor.y * size.height, size.width, size.height));
}

}  // namespace

CGAffineTransform CALayer::transformToSuperlayer() const {
  const CGRect& bounds = state_.bounds;
  const double anchorX = bounds.minX() + state_.anchorPoint.x * bounds.width();
  const double anchorY = bounds.minY() + state_.anchorPoint.y * bounds.height();
  if (!state_.hasTransform) {
    return CGAffineTransform::translation(state_.position.x - anchorX, state_.position.y - anchorY);
  }
  return CGAffineTransform::translation(-anchorX, -anchorY)
      .then(state_.transform)
      .then(CGAffineTransform::translation(state_.position.x, state_.position.y));
}

CGRect CALayer::frame() const {
  const CGRect box = boxAround(state_.anchorPoint, state_.bounds.size, state_.transform);
  return box.offsetBy(state_.position.x, state_.position.y);
}

void CALayer::setFrame(const CGRect& frame) {
  CGSize size = frame.size;
  if (state_.hasTransform) {
    CGAffineTransform linear = state_.transform;
    linear.tx = linear.ty = 0;
    size = linear.inverted().apply(CGRect(CGPointZero, size)).size;
  }
  const CGRect box = boxAround(state_.anchorPoint, size, state_.transform);
  setBounds({state_.bounds.origin, size});
  setPosition(frame.origin - box.origin);
}

void CALayer::setBounds(const CGRect& bounds) {
  const bool hasNewSize = !(bounds.size == state_.bounds.size);
  change(state_, &State::bounds, bounds, "bounds");
  if (hasNewSize && delegate_) setNeedsDisplay();
}

void CALayer::setPosition(CGPoint position) { change(state_, &State::position, position, "position"); }

void CALayer::setAnchorPoint(CGPoint anchor) { change(state_, &State::anchorPoint, anchor, "anchorPoint"); }

void CALayer::setTransform(const CGAffineTransform& transform) {
  change(state_, &State::transform, transform, "transform");
  state_.hasTransform = !transform.isIdentity();
}

CGPoint CALayer::convertPoint(CGPoint point, const CALayer* toLayer) const {
  for (const CALayer* layer = this; layer->owner(); layer = layer->owner()) {
    point = layer->transformToSuperlayer().apply(point);
  }
  CGAffineTransform down;
  for (const CALayer* layer = toLayer; layer && layer->owner(); layer = layer->owner()) {
    down = down.then(layer->transformToSuperlayer());
  }
  return down.inverted().apply(point);
}

CGRect CALayer::convertRect(const CGRect& rect, const CALayer* toLayer) const {
  CGAffineTransform up, down;
  for (const CALayer* layer = this; layer->owner(); layer = layer->owner()) {
    up = up.then(layer->transformToSuperlayer());
  }
  for (const CALayer* layer = toLayer; layer && layer->owner(); layer = layer->owner()) {
    down = down.then(layer->transformToSuperlayer());
  }
  return up.then(down.inverted()).apply(rect);
}

Ref<CALayer> CALayer::hitTest(CGPoint point) {
  if (state_.hidden || state_.opacity <= 0) return nullptr;
  const CGPoint own = transformToSuperlayer().inverted().apply(point);
  const bool isInside = containsPoint(own);
  if (state_.masksToBounds && !isInside) return nullptr;
  for (auto sublayer = sublayers_.rbegin(); sublayer != sublayers_.rend(); ++sublayer) {
    if (Ref<CALayer> hit = (*sublayer)->hitTest(own)) return hit;
  }
  return isInside ? self() : nullptr;
}

}  // namespace platform
