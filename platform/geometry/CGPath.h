#pragma once

#include <cstdint>
#include <vector>

#include "platform/geometry/CGGeometry.h"

namespace platform {

/// The outline of a shape: subpaths of straight and cubic pieces. A plain value; any thread.
class CGPath {
 public:
  enum class Kind : std::uint8_t { move, line, curve, close };
  /// A piece that starts where the one before ended. A curve has two control points, then its end; move and line have
  /// their end first; close has none.
  struct Element {
    Kind kind = Kind::move;
    CGPoint points[3];
    CGPoint end() const { return kind == Kind::curve ? points[2] : points[0]; }
    friend bool operator==(const Element&, const Element&) = default;
  };

  static CGPath rect(const CGRect& rect);
  static CGPath oval(const CGRect& rect);
  /// The radius is held between 0 and half the shorter side. However round, the path always has the same pieces, so
  /// that any two of them can be animated into each other.
  static CGPath roundedRect(const CGRect& rect, double cornerRadius);
  /// The same with corners whose curvature grows and fades along the sides instead of jumping.
  static CGPath continuousRoundedRect(const CGRect& rect, double cornerRadius);

  /// A piece without a starting point begins at the origin of its own first point.
  void move(CGPoint to);
  void line(CGPoint to);
  void quad(CGPoint control, CGPoint to);
  void curve(CGPoint control1, CGPoint control2, CGPoint to);
  /// Angles in radians from the positive x axis, growing clockwise on the screen. Clockwise goes from start up to end,
  /// otherwise down to it; a sweep of a whole turn or more is one full circle. A line joins the current point, if any,
  /// to the start. A radius that is not positive draws nothing but that line.
  void arc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise);
  void close();
  void append(const CGPath& other);

  const std::vector<Element>& elements() const { return elements_; }
  bool isEmpty() const { return elements_.empty(); }
  CGPoint currentPoint() const;
  /// The tight rectangle around the drawn outline (not around its control points); CGRectZero for an empty path.
  CGRect bounds() const;
  /// Inside by the winding rule, or by the even-odd rule. Open subpaths count as closed.
  bool contains(CGPoint point, bool evenOdd = false) const;

  CGPath applying(const CGAffineTransform& transform) const;
  /// The part of the outline between two fractions (0 to 1) of its length.
  CGPath trimmed(double start, double end) const;
  double length() const;
  /// The path between two of the same pieces; where the pieces differ it jumps to the other once the fraction
  /// reaches 1.
  CGPath blendedTo(const CGPath& other, double fraction) const;

  friend bool operator==(const CGPath&, const CGPath&) = default;

 private:
  std::vector<Element> elements_;
  CGPoint subpathStart_;
};

enum class CGLineCap : std::uint8_t { butt, round, square };
enum class CGLineJoin : std::uint8_t { miter, round, bevel };

/// How an outline is drawn. Lengths in points.
struct CGStrokeStyle {
  double width = 1;
  CGLineCap cap = CGLineCap::butt;
  CGLineJoin join = CGLineJoin::miter;
  double miterLimit = 10;
  /// Lengths of drawn and left-out stretches in turn; empty for a solid line.
  std::vector<double> dashes;
  double dashPhase = 0;
};

}  // namespace platform
