#pragma once

#include "platform/geometry/CGPath.h"
#include "platform/runtime/Object.h"

namespace platform {

class CGContext;

/// A path as views make it, with the line it is drawn with. Owned by its maker. Any thread, one at a time.
class UIBezierPath : public Object<UIBezierPath, NSObject> {
 public:
  UIBezierPath() = default;
  explicit UIBezierPath(platform::CGPath path) : path_(std::move(path)) {}
  static Ref<UIBezierPath> bezierPath() { return make<UIBezierPath>(); }
  static Ref<UIBezierPath> bezierPathWithRect(const CGRect& rect);
  static Ref<UIBezierPath> bezierPathWithOvalInRect(const CGRect& rect);
  static Ref<UIBezierPath> bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius);
  /// See CGPath::arc.
  static Ref<UIBezierPath> bezierPathWithArcCenter(CGPoint center, double radius, double startAngle, double endAngle,
                                                   bool clockwise);

  void moveToPoint(CGPoint point) { path_.move(point); }
  void addLineToPoint(CGPoint point) { path_.line(point); }
  void addCurveToPoint(CGPoint point, CGPoint control1, CGPoint control2) { path_.curve(control1, control2, point); }
  void addQuadCurveToPoint(CGPoint point, CGPoint control) { path_.quad(control, point); }
  void addArc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise) {
    path_.arc(center, radius, startAngle, endAngle, clockwise);
  }
  void closePath() { path_.close(); }
  void appendPath(const UIBezierPath& other) { path_.append(other.path_); }
  void applyTransform(const CGAffineTransform& transform) { path_ = path_.applying(transform); }

  const platform::CGPath& cgPath() const { return path_; }
  CGRect bounds() const { return path_.bounds(); }
  bool isEmpty() const { return path_.isEmpty(); }
  CGPoint currentPoint() const { return path_.currentPoint(); }
  bool containsPoint(CGPoint point) const { return path_.contains(point, usesEvenOddFillRule_); }

  double lineWidth() const { return stroke_.width; }
  void setLineWidth(double width) { stroke_.width = width; }
  CGLineCap lineCapStyle() const { return stroke_.cap; }
  void setLineCapStyle(CGLineCap cap) { stroke_.cap = cap; }
  CGLineJoin lineJoinStyle() const { return stroke_.join; }
  void setLineJoinStyle(CGLineJoin join) { stroke_.join = join; }
  /// Lengths of line and gap in turn, begun `phase` points into the pattern; none for an unbroken line.
  void setLineDash(std::vector<double> lengths, double phase) {
    stroke_.dashes = std::move(lengths);
    stroke_.dashPhase = phase;
  }
  bool usesEvenOddFillRule() const { return usesEvenOddFillRule_; }
  void setUsesEvenOddFillRule(bool evenOdd) { usesEvenOddFillRule_ = evenOdd; }

  /// In the context's fill or stroke colour. The context's own path and line are left as they are.
  void fill(CGContext& context) const;
  void stroke(CGContext& context) const;
  /// Limits further drawing to the inside, until the context's state is restored.
  void addClip(CGContext& context) const;

 private:
  platform::CGPath path_;
  CGStrokeStyle stroke_;
  bool usesEvenOddFillRule_ = false;
};

}  // namespace platform
