#include <algorithm>
#include <array>
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
  if (!(std::abs(value) < 1e12)) return value;  // it has no places so small
  // Half grains may go either way: they are far from any.
  const double coarse =
      static_cast<double>(static_cast<std::int64_t>(value * grain + (value < 0 ? -0.5 : 0.5))) / grain;
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
  if (!layer.hasTransform()) {
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
  if (layer.hasTransform()) {
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

/// Where a view's coordinates are in those of the root of its tree.
struct UIView::Placement {
  CGAffineTransform toRoot;
  const UIView* root;

  /// Whoever hands a placement out cleans it; sums on the way down are kept as they are.
  void clean() {
    toRoot.tx = withoutDust(toRoot.tx);
    toRoot.ty = withoutDust(toRoot.ty);
  }
  /// From the coordinates of a superview to those of the view.
  void descendTo(const CALayer& layer) {
    if (layer.hasTransform()) {
      toRoot = transformToSuperlayer(layer).then(toRoot);
    } else {  // nearly always, and asked for every element of a screen
      const CGPoint offset = layer.position() - pivotOf(layer);
      toRoot.tx += toRoot.a * offset.x + toRoot.c * offset.y;
      toRoot.ty += toRoot.b * offset.x + toRoot.d * offset.y;
    }
  }
};

/// Reading a screen asks for the places of views one after the other whose superviews are the same: where superviews
/// stand is remembered, a few of them, until any layer or tree changes.
UIView::Placement UIView::placement() const {
  struct Remembered {
    const UIView* view = nullptr;
    std::uint64_t changes = 0;
    Placement placement{{}, nullptr};
  };
  static constinit std::array<Remembered, 128> memo;
  static std::vector<const UIView*> path;
  const auto place = [](const UIView* view) -> Remembered& {
    const auto address = reinterpret_cast<std::uintptr_t>(view);
    return memo[(address >> 6 ^ address >> 13) % memo.size()];
  };
  if (!superview_) return {{}, this};
  const std::uint64_t changes = CALayer::layerChanges() + hierarchyChanges();  // both only grow
  Placement at{{}, nullptr};
  path.clear();
  for (const UIView* above = superview_;; above = above->superview_) {
    const Remembered& known = place(above);
    if (known.view == above && known.changes == changes) {
      at = known.placement;
      break;
    }
    if (!above->superview_) {
      at.root = above;
      break;
    }
    path.push_back(above);
  }
  for (auto view = path.rbegin(); view != path.rend(); ++view) {
    at.descendTo(*(*view)->layer_);
    place(*view) = {*view, changes, at};
  }
  at.descendTo(*layer_);
  at.clean();
  return at;
}

/// From one view's coordinates to another's.
CGAffineTransform UIView::between(const Placement& from, const Placement& to) {
  CGAffineTransform whole = from.toRoot;
  if (from.root != to.root && from.root->standsOnScreen() && to.root->standsOnScreen()) {
    whole =
        whole.then(transformToSuperlayer(*from.root->layer_)).then(transformToSuperlayer(*to.root->layer_).inverted());
  }
  return to.toRoot.isIdentity() ? whole : whole.then(to.toRoot.inverted());
}

namespace {

/// As the transform does it, and quicker for the many that only move.
CGRect applied(const CGAffineTransform& transform, const CGRect& rect) {
  const bool moves = transform.a == 1 && transform.b == 0 && transform.c == 0 && transform.d == 1;
  const double right = rect.origin.x + rect.size.width;
  const double bottom = rect.origin.y + rect.size.height;
  if (!moves || !(rect.size.width >= 0 && rect.size.height >= 0 && std::isfinite(right) && std::isfinite(bottom))) {
    return transform.apply(rect);
  }
  const CGPoint origin{rect.origin.x + transform.tx, rect.origin.y + transform.ty};
  return {origin, {right + transform.tx - origin.x, bottom + transform.ty - origin.y}};
}

}  // namespace

CGPoint UIView::convertPoint(CGPoint point, const UIView* to) const {
  if (to == this) return point;
  const Placement from = placement();
  return to ? withoutDust(between(from, to->placement()).apply(point)) : from.toRoot.apply(point);
}

CGPoint UIView::pointFromWindow(CGPoint point, const TouchSurface* window) const {
  return convertPointFrom(point, static_cast<const UIView*>(window));
}

CGPoint UIView::convertPointFrom(CGPoint point, const UIView* from) const {
  if (from) return from == this ? point : from->convertPoint(point, this);
  return withoutDust(placement().toRoot.inverted().apply(point));
}

CGRect UIView::convertRect(CGRect rect, const UIView* to) const {
  if (to == this) return rect;
  const Placement from = placement();
  const CGRect result = applied(to && to != from.root ? between(from, to->placement()) : from.toRoot, rect);
  return {withoutDust(result.origin), result.size};
}

CGRect UIView::convertRectFrom(CGRect rect, const UIView* from) const {
  if (from) return from->convertRect(rect, this);
  const CGRect result = placement().toRoot.inverted().apply(rect);
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
