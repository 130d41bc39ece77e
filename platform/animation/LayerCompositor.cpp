#include "platform/animation/LayerCompositor.h"

#include <cmath>

#include "platform/animation/CALayer.h"
#include "platform/animation/ScratchBitmap.h"
#include "platform/geometry/AlphaBlur.h"

namespace platform {

namespace {

UIColor faded(const UIColor& color, double opacity) {
  return opacity == 1 ? color : color.colorWithAlphaComponent(color.alpha() * opacity);
}

bool isSeen(const std::optional<UIColor>& color) { return color && color->alpha() > 0; }

bool hasShadow(const CALayer& layer) { return layer.shadowOpacity() > 0 && !layer.masksToBounds(); }

/// A blur as drawing code counts it fades over twice the radius of a layer's shadow.
constexpr double blurPerRadius = 2;

/// One level further down, for as long as it lives.
class Descent {
 public:
  explicit Descent(int& depth) : depth_(depth) { ++depth_; }
  ~Descent() { --depth_; }
  Descent(const Descent&) = delete;
  Descent& operator=(const Descent&) = delete;
  bool isTooDeep() const { return depth_ > LayerCompositor::deepestLevel; }

 private:
  int& depth_;
};

}  // namespace

CGAffineTransform LayerCompositor::place(const CALayer& shown, const CGAffineTransform& parentToPixels, bool isMoving) {
  CGAffineTransform toPixels = shown.transformToSuperlayer().then(parentToPixels);
  if (!isMoving && toPixels.isAxisAligned()) {
    const CGPoint origin = toPixels.apply(shown.bounds().origin);
    toPixels.tx += std::round(origin.x) - origin.x;
    toPixels.ty += std::round(origin.y) - origin.y;
  }
  return toPixels;
}

CGRect LayerCompositor::ownArea(const CALayer& shown, const CGAffineTransform& toPixels) {
  CGRect area = shown.contentBounds();
  if (hasShadow(shown)) {
    const double reach = shown.shadowRadius() * 3 + 1;
    const CGRect shape = shown.shadowPath() ? shown.shadowPath()->bounds() : area;
    area =
        area.unionWith(shape.offsetBy(shown.shadowOffset().width, shown.shadowOffset().height).insetBy(-reach, -reach));
  }
  return area.isEmpty() ? CGRect() : toPixels.apply(area);
}

void LayerCompositor::paintRoot(Canvas& canvas, const CALayer& root, const CGAffineTransform& toPixels,
                                const CGRect& clip) {
  if (!root.hasAnimations()) return paintPlaced(canvas, {root, root, toPixels, false}, clip);
  const Ref<CALayer> shown = root.presentationAt(mediaTime_);
  paintPlaced(canvas, {root, *shown, toPixels, true}, clip);
}

void LayerCompositor::paint(Canvas& canvas, const CALayer& layer, const CGAffineTransform& parentToPixels,
                            bool isMoving, const CGRect& clip) {
  if (layer.isHidden()) return;
  const Descent descent(depth_);
  if (descent.isTooDeep()) return;
  if (!layer.hasAnimations()) {
    return paintPlaced(canvas, {layer, layer, place(layer, parentToPixels, isMoving), isMoving}, clip);
  }
  const Ref<CALayer> shown = layer.presentationAt(mediaTime_);
  paintPlaced(canvas, {layer, *shown, place(*shown, parentToPixels, true), true}, clip);
}

void LayerCompositor::paintPlaced(Canvas& canvas, const Placed& layer, const CGRect& clip) {
  const CALayer& shown = layer.shown;
  if (shown.opacity() <= 0) return;
  const bool isAlone = layer.model.sublayers().empty() || shown.masksToBounds();
  if (isAlone && !ownArea(shown, layer.toPixels).insetBy(-1, -1).intersects(clip)) return;
  // A background alone can be faded by its colour; anything more must be faded as one picture.
  const bool isOneColor =
      layer.model.sublayers().empty() && !shown.hasOwnContents() && shown.borderWidth() <= 0 && !hasShadow(shown);
  if (layer.model.mask() || (shown.opacity() < 1 && !isOneColor)) {
    paintGroup(canvas, layer, clip);
  } else {
    paintParts(canvas, layer, clip, shown.opacity());
  }
}

void LayerCompositor::paintGroup(Canvas& canvas, const Placed& layer, const CGRect& clip) {
  CGRect reach = treeArea(layer);
  if (const Ref<CALayer>& mask = layer.model.mask()) {
    reach = reach.intersection(areaOf(*mask, layer.toPixels, layer.isMoving));
  }
  if (reach.isEmpty()) return;
  const CGRect area = reach.insetBy(-1, -1).intersection(clip).integral();
  if (area.isEmpty()) return;
  const int width = static_cast<int>(area.width()), height = static_cast<int>(area.height());
  const CGRect all(0, 0, width, height);
  const CGAffineTransform toGroup = layer.toPixels.then(CGAffineTransform::translation(-area.minX(), -area.minY()));
  ScratchBitmap group(width, height);
  paintParts(group.canvas(), {layer.model, layer.shown, toGroup, layer.isMoving}, all, 1);
  if (const Ref<CALayer>& mask = layer.model.mask()) {
    ScratchBitmap cover(width, height);
    paint(cover.canvas(), *mask, toGroup, layer.isMoving, all);
    group.canvas().composite(cover.bitmap(), 0, 0, 1, Canvas::Composite::mask);
  }
  canvas.composite(group.bitmap(), static_cast<int>(area.minX()), static_cast<int>(area.minY()), layer.shown.opacity(),
                   Canvas::Composite::over);
}

void LayerCompositor::paintParts(Canvas& canvas, const Placed& layer, const CGRect& clip, double opacity) {
  const CALayer& shown = layer.shown;
  const CGRect own = layer.toPixels.apply(shown.bounds()).insetBy(-1, -1);
  const bool isInClip = own.intersects(clip);
  if (hasShadow(shown)) paintShadow(canvas, layer, clip);
  if (isInClip && isSeen(shown.backgroundColor())) {
    canvas.setTransform(layer.toPixels);
    const UIColor color = faded(*shown.backgroundColor(), opacity);
    if (shown.cornerRadius() > 0 && touchesCorners(layer, clip)) {
      // Under an opaque border the background ends in the border's middle, or it would colour the border's smooth edge.
      const bool isFramed = shown.borderWidth() > 0 && shown.borderColor().alpha() >= 1;
      canvas.fill(shown.backgroundPath(isFramed ? shown.borderWidth() / 2 : 0), color, false);
    } else {
      canvas.fill(shown.bounds(), color);
    }
  }
  paintInside(canvas, layer, clip);
  if (isInClip && shown.borderWidth() > 0 && shown.borderColor().alpha() > 0) {
    canvas.setTransform(layer.toPixels);
    paintBorder(canvas, shown);
  }
}

void LayerCompositor::paintInside(Canvas& canvas, const Placed& layer, const CGRect& clip) {
  const CALayer& shown = layer.shown;
  const bool paintsItself = shown.hasOwnContents() && ownArea(shown, layer.toPixels).insetBy(-1, -1).intersects(clip);
  if (!paintsItself && layer.model.sublayers().empty()) return;
  CGRect inner = clip;
  bool isClipped = false;
  if (shown.masksToBounds()) {
    const CGRect own = layer.toPixels.apply(shown.bounds());
    inner = clip.intersection(own.integral());
    if (inner.isEmpty()) return;
    const bool isRound = shown.cornerRadius() > 0 && touchesCorners(layer, inner);
    isClipped = isRound || !layer.toPixels.isAxisAligned() || !own.contains(clip);
    if (isClipped) {
      canvas.save();
      canvas.setTransform(layer.toPixels);
      isRound ? canvas.clip(shown.backgroundPath(), false) : canvas.clip(shown.bounds());
    }
  }
  if (paintsItself) {
    canvas.setTransform(layer.toPixels);
    shown.paintContents(canvas, mediaTime_);
  }
  for (const Ref<CALayer>& sublayer : layer.model.sublayers()) {
    paint(canvas, *sublayer, layer.toPixels, layer.isMoving, inner);
  }
  if (isClipped) canvas.restore();
}

bool LayerCompositor::touchesCorners(const Placed& layer, const CGRect& clip) {
  if (!layer.toPixels.isAxisAligned()) return true;
  const CGRect& bounds = layer.shown.bounds();
  // The continuous corners reach further along the sides.
  const double reach = layer.shown.cornerRadius() * 1.6;
  const CGRect across = layer.toPixels.apply(bounds.insetBy(0, reach));
  const CGRect down = layer.toPixels.apply(bounds.insetBy(reach, 0));
  const CGRect part = clip.intersection(layer.toPixels.apply(bounds));
  return !across.contains(part) && !down.contains(part);
}

void LayerCompositor::paintBorder(Canvas& canvas, const CALayer& shown) {
  const CGRect& bounds = shown.bounds();
  const double width = std::min(shown.borderWidth(), std::min(bounds.width(), bounds.height()) / 2);
  const CGRect inner = bounds.insetBy(width, width);
  if (shown.cornerRadius() <= 0) {
    const UIColor& color = shown.borderColor();
    canvas.fill(CGRect(bounds.minX(), bounds.minY(), bounds.width(), width), color);
    canvas.fill(CGRect(bounds.minX(), inner.maxY(), bounds.width(), width), color);
    canvas.fill(CGRect(bounds.minX(), inner.minY(), width, inner.height()), color);
    canvas.fill(CGRect(inner.maxX(), inner.minY(), width, inner.height()), color);
    return;
  }
  CGPath ring = shown.backgroundPath();
  ring.append(shown.backgroundPath(width));
  canvas.fill(ring, shown.borderColor(), true);
}

void LayerCompositor::paintShadow(Canvas& canvas, const Placed& layer, const CGRect& clip) {
  const CALayer& shown = layer.shown;
  if (!ownArea(shown, layer.toPixels).intersects(clip)) return;
  if (!shown.shadowPath() && !isSeen(shown.backgroundColor())) return paintShadowOfContents(canvas, layer, clip);
  canvas.setTransform(layer.toPixels);
  const double strength = shown.shadowPath() ? 1 : shown.backgroundColor()->alpha();
  canvas.shadow(shown.shadowPath() ? *shown.shadowPath() : shown.backgroundPath(), shown.shadowOffset(),
                shown.shadowRadius() * blurPerRadius, faded(shown.shadowColor(), shown.shadowOpacity() * strength));
}

void LayerCompositor::paintShadowOfContents(Canvas& canvas, const Placed& layer, const CGRect& clip) {
  const CALayer& shown = layer.shown;
  const double scale = std::sqrt(std::abs(layer.toPixels.a * layer.toPixels.d - layer.toPixels.b * layer.toPixels.c));
  const double deviation = shown.shadowRadius() * scale;
  const double margin = AlphaMap::blurMargin(deviation);
  // Where the offset takes the layer's origin, in pixels.
  const CGPoint shift = layer.toPixels.apply({shown.shadowOffset().width, shown.shadowOffset().height}) -
                        layer.toPixels.apply(CGPointZero);
  // Only what can throw a shadow into the clip is painted.
  const CGRect reach = clip.offsetBy(-shift.x, -shift.y).insetBy(-margin, -margin);
  const CGRect area = treeArea(layer).insetBy(-margin, -margin).intersection(reach).integral();
  if (area.isEmpty()) return;
  const int width = static_cast<int>(area.width()), height = static_cast<int>(area.height());
  const CGAffineTransform toShape = layer.toPixels.then(CGAffineTransform::translation(-area.minX(), -area.minY()));
  ScratchBitmap shape(width, height);
  paintInside(shape.canvas(), {layer.model, shown, toShape, layer.isMoving}, CGRect(0, 0, width, height));
  AlphaMap map(width, height);
  if (map.alpha.empty()) return;
  const std::uint32_t* const pixels = shape.bitmap().data();
  for (std::size_t i = 0; i < map.alpha.size(); ++i) map.alpha[i] = static_cast<std::uint8_t>(pixels[i] >> 24);
  map.blur(deviation);
  const UIColor& color = shown.shadowColor();
  const double opacity = color.alpha() * shown.shadowOpacity();
  std::uint32_t* const tinted = shape.bitmap().data();
  for (std::size_t i = 0; i < map.alpha.size(); ++i) {
    const double alpha = map.alpha[i] * opacity;
    const auto part = [alpha](double value) { return static_cast<std::uint32_t>(alpha * value + 0.5); };
    tinted[i] = part(1) << 24 | part(color.red()) << 16 | part(color.green()) << 8 | part(color.blue());
  }
  canvas.composite(shape.bitmap(), static_cast<int>(std::lround(area.minX() + shift.x)),
                   static_cast<int>(std::lround(area.minY() + shift.y)), 1, Canvas::Composite::over);
}

CGRect LayerCompositor::treeArea(const Placed& layer) const {
  CGRect area = ownArea(layer.shown, layer.toPixels);
  if (layer.shown.masksToBounds()) return area;
  for (const Ref<CALayer>& sublayer : layer.model.sublayers()) {
    area = area.unionWith(areaOf(*sublayer, layer.toPixels, layer.isMoving));
  }
  return area;
}

CGRect LayerCompositor::areaOf(const CALayer& layer, const CGAffineTransform& parentToPixels, bool isMoving) const {
  if (layer.isHidden()) return {};
  const Descent descent(depth_);
  if (descent.isTooDeep()) return {};
  if (!layer.hasAnimations()) {
    return treeArea({layer, layer, place(layer, parentToPixels, isMoving), isMoving});
  }
  const Ref<CALayer> shown = layer.presentationAt(mediaTime_);
  return treeArea({layer, *shown, place(*shown, parentToPixels, true), true});
}

}  // namespace platform
