#pragma once

#include "platform/animation/CALayer.h"

namespace platform {

inline constexpr CGLineCap kCALineCapButt = CGLineCap::butt;
inline constexpr CGLineCap kCALineCapRound = CGLineCap::round;
inline constexpr CGLineCap kCALineCapSquare = CGLineCap::square;

/// A layer that draws a path in its own coordinates, filled black unless told otherwise. Main thread.
class CAShapeLayer : public Object<CAShapeLayer, CALayer> {
 public:
  static Ref<CAShapeLayer> layer() { return make<CAShapeLayer>(); }

  const std::optional<CGPath>& path() const { return shape_.path; }
  /// Never animated by a transaction, only by an animation on "path".
  void setPath(std::optional<CGPath> path);
  const std::optional<UIColor>& fillColor() const { return shape_.fillColor; }
  void setFillColor(std::optional<UIColor> color);
  bool usesEvenOddFillRule() const { return shape_.evenOdd; }
  void setUsesEvenOddFillRule(bool evenOdd);
  const std::optional<UIColor>& strokeColor() const { return shape_.strokeColor; }
  void setStrokeColor(std::optional<UIColor> color);
  /// The part of the outline that is drawn, as fractions of its length.
  double strokeStart() const { return shape_.strokeStart; }
  void setStrokeStart(double start);
  double strokeEnd() const { return shape_.strokeEnd; }
  void setStrokeEnd(double end);
  double lineWidth() const { return shape_.lineWidth; }
  void setLineWidth(double width);
  CGLineCap lineCap() const { return shape_.lineCap; }
  void setLineCap(CGLineCap cap);
  CGLineJoin lineJoin() const { return shape_.lineJoin; }
  void setLineJoin(CGLineJoin join);
  const std::vector<double>& lineDashPattern() const { return shape_.dashes; }
  void setLineDashPattern(std::vector<double> dashes);
  double lineDashPhase() const { return shape_.dashPhase; }
  void setLineDashPhase(double phase);

  AnimatableValue valueForKeyPath(const std::string& keyPath) const override;
  bool setValueForKeyPath(const AnimatableValue& value, const std::string& keyPath) override;
  void paintContents(Painter& painter, double mediaTime) const override;
  bool hasOwnContents() const override { return shape_.path.has_value() || CALayer::hasOwnContents(); }
  CGRect contentBounds() const override;

 protected:
  Ref<CALayer> copyForPresentation() const override;

 private:
  struct Shape {
    std::optional<CGPath> path;
    std::optional<UIColor> fillColor = UIColor::black();
    std::optional<UIColor> strokeColor;
    double strokeStart = 0;
    double strokeEnd = 1;
    double lineWidth = 1;
    double dashPhase = 0;
    std::vector<double> dashes;
    CGLineCap lineCap = CGLineCap::butt;
    CGLineJoin lineJoin = CGLineJoin::miter;
    bool evenOdd = false;
  };
  Shape shape_;
};

}  // namespace platform
