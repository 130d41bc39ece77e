#include <algorithm>
#include <cmath>

#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/LayoutHost.h"
#include "platform/uikit/views/UIViewStorage.h"

// Where a view is, how its coordinates relate to others', and how much of it lies under bars and rounded corners.

namespace platform {

namespace {

/// Adding and subtracting half sizes leaves dust in the last binary places. Whoever cuts a coordinate down to a whole
/// number must not find 12.999999999 where 13 was meant.
double withoutDust(double value) {
  constexpr double grain = 1024;
  const double coarse = std::round(value * grain) / grain;
  return std::abs(value - coarse) < 1e-9 ? coarse : value;
}

CGPoint withoutDust(CGPoint point) { return {withoutDust(point.x), withoutDust(point.y)}; }

/// The point of a layer's own coordinates that lies at its position.
CGPoint pivotOf(const CALayer& layer) {
  const CGRect bounds = layer.bounds();
  const CGPoint anchor = layer.anchorPoint();
  return {bounds.origin.x + bounds.size.width * anchor.x, bounds.origin.y + bounds.size.height * anchor.y};
}

/// From the coordinates of a layer to its superlayer's.
CGAffineTransform transformToSuperlayer(const CALayer& layer) {
  const CGPoint pivot = pivotOf(layer);
  const CGPoint position = layer.position();
  const CGAffineTransform& own = layer.transform();
  if (own.isIdentity()) {
    const CGPoint offset = withoutDust(position - pivot);
    return CGAffineTransform::translation(offset.x, offset.y);
  }
  return CGAffineTransform::translation(-pivot.x, -pivot.y)
      .then(own)
      .then(CGAffineTransform::translation(position.x, position.y));
}

}  // namespace

// ---- Frame, bounds, center, transform

CGRect UIView::frame() const { return transformToSuperlayer(*layer_).apply(layer_->bounds()); }
CGRect UIView::bounds() const { return layer_->bounds(); }
CGPoint UIView::center() const { return layer_->position(); }
CGAffineTransform UIView::transform() const { return layer_->transform(); }

void UIView::setFrame(CGRect frame) {
  const CALayer& layer = *layer_;
  CGSize size = frame.size;
  if (!layer.transform().isIdentity()) {
    const CGRect own = layer.transform().inverted().apply(CGRect{{0, 0}, frame.size});
    size = own.size;
  }
  const CGPoint anchor = layer.anchorPoint();
  changeGeometry({layer.bounds().origin, size},
                 {frame.origin.x + frame.size.width * anchor.x, frame.origin.y + frame.size.height * anchor.y});
}

void UIView::setBounds(CGRect bounds) { changeGeometry(bounds, center()); }
void UIView::setCenter(CGPoint center) { changeGeometry(layer_->bounds(), center); }

void UIView::setTransform(const CGAffineTransform& transform) {
  if (layer_->transform() != transform) layer_->setTransform(transform);
}

void UIView::changeGeometry(CGRect bounds, CGPoint center) {
  CALayer& layer = *layer_;
  bounds.size = {std::max(0.0, bounds.size.width), std::max(0.0, bounds.size.height)};
  const CGRect oldBounds = layer.bounds();
  const bool moves = layer.position() != center;
  if (!moves && oldBounds == bounds) return;
  if (moves) layer.setPosition(center);
  if (oldBounds != bounds) layer.setBounds(bounds);
  if (oldBounds.size != bounds.size && drawsItself()) setNeedsDisplay();
  LayoutHost::shared().didChangeGeometry(*this, oldBounds.size);
  updateSafeAreaInsets();
}

CGSize UIView::sizeThatFits(CGSize) const { return bounds().size; }

void UIView::sizeToFit() {
  const CGSize fitting = sizeThatFits(bounds().size);
  const CGRect old = frame();
  if (transform().isIdentity()) {
    setFrame({old.origin, fitting});
  } else {
    setBounds({bounds().origin, fitting});
  }
}

// ---- Conversion

CGAffineTransform UIView::transformToRoot() const {
  CGAffineTransform whole;
  for (const UIView* view = this; view->superview_; view = view->superview_) {
    const CALayer& layer = *view->layer_;
    if (layer.transform().isIdentity()) {  // nearly always, and asked for every element of a screen
      const CGPoint offset = layer.position() - pivotOf(layer);
      whole.tx += offset.x;
      whole.ty += offset.y;
    } else {
      whole = whole.then(transformToSuperlayer(layer));
    }
  }
  whole.tx = withoutDust(whole.tx);
  whole.ty = withoutDust(whole.ty);
  return whole;
}

CGPoint UIView::convertPoint(CGPoint point, const UIView* to) const {
  if (to == this) return point;
  point = transformToRoot().apply(point);
  return to ? withoutDust(to->transformToRoot().inverted().apply(point)) : point;
}

CGPoint UIView::pointFromWindow(CGPoint point, const TouchSurface* window) const {
  return convertPointFrom(point, static_cast<const UIView*>(window));
}

CGPoint UIView::convertPointFrom(CGPoint point, const UIView* from) const {
  if (from == this) return point;
  if (from) point = from->transformToRoot().apply(point);
  return withoutDust(transformToRoot().inverted().apply(point));
}

CGRect UIView::convertRect(CGRect rect, const UIView* to) const {
  if (to == this) return rect;
  CGAffineTransform whole = transformToRoot();
  if (to && to->superview_) whole = whole.then(to->transformToRoot().inverted());
  const CGRect result = whole.apply(rect);
  return {withoutDust(result.origin), result.size};
}

CGRect UIView::convertRectFrom(CGRect rect, const UIView* from) const {
  if (from) return from->convertRect(rect, this);
  const CGRect result = transformToRoot().inverted().apply(rect);
  return {withoutDust(result.origin), result.size};
}

// ---- Safe area

namespace {

/// What the superview hands down, less the distance from its edges.
UIEdgeInsets overlap(const UIEdgeInsets& inherited, const CGRect& outer, const CGRect& inner) {
  const auto rest = [](double inset, double distance) { return std::clamp(inset - distance, 0.0, inset); };
  return {rest(inherited.top, inner.minY() - outer.minY()), rest(inherited.left, inner.minX() - outer.minX()),
          rest(inherited.bottom, outer.maxY() - inner.maxY()), rest(inherited.right, outer.maxX() - inner.maxX())};
}

UIEdgeInsets windowInsets(const UIView& window) {
  return overlap(UIDevice::current().profile().safeArea, UIScreen::main().bounds(), window.frame());
}

}  // namespace

UIEdgeInsets UIView::safeAreaInsets() const { return storage_->safeArea; }

void UIView::updateSafeAreaInsets() {
  std::vector<Ref<UIView>> open{self()};
  bool isFirst = true;
  while (!open.empty()) {
    const Ref<UIView> view = std::move(open.back());
    open.pop_back();
    const bool descend = view->takeSafeArea() || (isFirst && view->storage_->safeArea != UIEdgeInsets{});
    isFirst = false;
    if (descend) open.insert(open.end(), view->subviews_.begin(), view->subviews_.end());
  }
}

/// Works out this view's own; true when it changed.
bool UIView::takeSafeArea() {
  Storage& storage = *storage_;
  UIEdgeInsets insets;
  if (superview_) {
    const UIEdgeInsets inherited = superview_->safeAreaInsetsForSubviews();
    if (inherited == UIEdgeInsets{} && storage.safeArea == inherited && storage.host.expired()) return false;
    const CGRect outer = superview_->bounds();
    const CGRect inner = frame();
    // A screen that slides out keeps what it had, or its content would jump on the way.
    if (!inner.isEmpty() && !outer.isEmpty() && !outer.intersects(inner)) return false;
    insets = overlap(inherited, outer, inner);
  } else if (storage.window) {  // in a window and in no view: the window itself
    insets = windowInsets(*this);
  }
  const Ref<RootViewHost> host = storage.host.lock();
  if (host) {
    const UIEdgeInsets extra = host->safeAreaContribution();
    insets = {insets.top + extra.top, insets.left + extra.left, insets.bottom + extra.bottom,
              insets.right + extra.right};
  }
  if (insets == storage.safeArea) return false;
  storage.safeArea = insets;
  LayoutHost::shared().didChangeSafeArea(*this);
  safeAreaInsetsDidChange();
  if (host) host->viewSafeAreaInsetsDidChange();
  setNeedsLayout();
  return true;
}

}  // namespace platform
