#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

// Plain values of plane geometry. Points, not pixels, unless a name says so; y grows downwards. Any thread.

struct CGVector {
  double dx = 0, dy = 0;
  friend constexpr bool operator==(const CGVector&, const CGVector&) = default;
};

struct CGPoint {
  double x = 0, y = 0;
  friend constexpr bool operator==(const CGPoint&, const CGPoint&) = default;
  friend constexpr CGPoint operator+(CGPoint a, CGPoint b) { return {a.x + b.x, a.y + b.y}; }
  friend constexpr CGPoint operator-(CGPoint a, CGPoint b) { return {a.x - b.x, a.y - b.y}; }
  friend constexpr CGPoint operator*(CGPoint a, double factor) { return {a.x * factor, a.y * factor}; }
};

struct CGSize {
  double width = 0, height = 0;
  friend constexpr bool operator==(const CGSize&, const CGSize&) = default;
};

struct UIEdgeInsets {
  double top = 0, left = 0, bottom = 0, right = 0;
  friend constexpr bool operator==(const UIEdgeInsets&, const UIEdgeInsets&) = default;
};

/// A rectangle. One with a side that is zero or negative is empty: it contains nothing and meets nothing.
struct CGRect {
  CGPoint origin;
  CGSize size;

  constexpr CGRect() = default;
  constexpr CGRect(CGPoint o, CGSize s) : origin(o), size(s) {}
  constexpr CGRect(double x, double y, double width, double height) : origin{x, y}, size{width, height} {}
  friend constexpr bool operator==(const CGRect&, const CGRect&) = default;

  constexpr double width() const { return size.width; }
  constexpr double height() const { return size.height; }
  constexpr double minX() const { return origin.x; }
  constexpr double minY() const { return origin.y; }
  constexpr double midX() const { return origin.x + size.width / 2; }
  constexpr double midY() const { return origin.y + size.height / 2; }
  constexpr double maxX() const { return origin.x + size.width; }
  constexpr double maxY() const { return origin.y + size.height; }
  constexpr CGPoint center() const { return {midX(), midY()}; }
  /// Also true when a side is not a number.
  constexpr bool isEmpty() const { return !(size.width > 0 && size.height > 0); }

  /// Half open: the right and bottom edges lie outside.
  constexpr bool contains(CGPoint p) const { return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY(); }
  constexpr bool contains(const CGRect& other) const {
    return other.minX() >= minX() && other.maxX() <= maxX() && other.minY() >= minY() && other.maxY() <= maxY();
  }
  constexpr bool intersects(const CGRect& other) const { return !intersection(other).isEmpty(); }
  /// The common part, CGRectZero when there is none.
  constexpr CGRect intersection(const CGRect& other) const {
    const double x = std::max(minX(), other.minX()), y = std::max(minY(), other.minY());
    const double right = std::min(maxX(), other.maxX()), bottom = std::min(maxY(), other.maxY());
    return right > x && bottom > y ? CGRect(x, y, right - x, bottom - y) : CGRect();
  }
  /// The smallest rectangle around both; an empty one adds nothing.
  constexpr CGRect unionWith(const CGRect& other) const {
    if (isEmpty()) return other;
    if (other.isEmpty()) return *this;
    const double x = std::min(minX(), other.minX()), y = std::min(minY(), other.minY());
    return {x, y, std::max(maxX(), other.maxX()) - x, std::max(maxY(), other.maxY()) - y};
  }
  constexpr CGRect offsetBy(double dx, double dy) const { return {origin.x + dx, origin.y + dy, width(), height()}; }
  /// Smaller on every side; negative distances make it larger. Sides never become negative.
  constexpr CGRect insetBy(double dx, double dy) const { return insetBy(UIEdgeInsets{dy, dx, dy, dx}); }
  constexpr CGRect insetBy(const UIEdgeInsets& i) const {
    return {origin.x + i.left, origin.y + i.top, std::max(0.0, width() - i.left - i.right),
            std::max(0.0, height() - i.top - i.bottom)};
  }
  /// The smallest rectangle around it with whole-numbered edges.
  CGRect integral() const {
    const double x = std::floor(minX()), y = std::floor(minY());
    return {x, y, std::ceil(maxX()) - x, std::ceil(maxY()) - y};
  }
};

inline constexpr CGPoint CGPointZero{};
inline constexpr CGSize CGSizeZero{};
inline constexpr CGRect CGRectZero{};
inline constexpr UIEdgeInsets UIEdgeInsetsZero{};
/// What a size means that may grow without end.
inline constexpr double CGFloatMax = std::numeric_limits<double>::max();

/// A map of the plane: x' = a x + c y + tx, y' = b x + d y + ty.
struct CGAffineTransform {
  double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
  friend constexpr bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;

  static constexpr CGAffineTransform translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
  static constexpr CGAffineTransform scale(double x, double y) { return {x, 0, 0, y, 0, 0}; }
  /// Radians; positive turns clockwise on the screen.
  static CGAffineTransform rotation(double angle);

  constexpr bool isIdentity() const { return *this == CGAffineTransform(); }
  /// True when rectangles stay upright rectangles.
  constexpr bool isAxisAligned() const { return b == 0 && c == 0; }
  /// This map first, then the next.
  constexpr CGAffineTransform then(const CGAffineTransform& n) const {
    return {a * n.a + b * n.c, a * n.b + b * n.d,          c * n.a + d * n.c,
            c * n.b + d * n.d, tx * n.a + ty * n.c + n.tx, tx * n.b + ty * n.d + n.ty};
  }
  /// The same with a move, scaling or turn that comes before it, as drawing code expects it.
  constexpr CGAffineTransform translatedBy(double x, double y) const { return translation(x, y).then(*this); }
  constexpr CGAffineTransform scaledBy(double x, double y) const { return scale(x, y).then(*this); }
  CGAffineTransform rotatedBy(double angle) const { return rotation(angle).then(*this); }
  /// Identity for a map that cannot be undone.
  CGAffineTransform inverted() const;

  constexpr CGPoint apply(CGPoint p) const { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }
  /// The upright rectangle around the mapped one.
  CGRect apply(const CGRect& rect) const;
};

inline constexpr CGAffineTransform CGAffineTransformIdentity{};

}  // namespace platform
