#include "platform/animation/CAShapeLayer.h"

#include "platform/engine/Painter.h"

namespace platform {

void CAShapeLayer::setPath(std::optional<CGPath> path) { change(shape_, &Shape::path, std::move(path), nullptr); }
void CAShapeLayer::setFillColor(std::optional<UIColor> color) {
  change(shape_, &Shape::fillColor, std::move(color), "fillColor");
}
void CAShapeLayer::setUsesEvenOddFillRule(bool evenOdd) { change(shape_, &Shape::evenOdd, evenOdd, nullptr); }
void CAShapeLayer::setStrokeColor(std::optional<UIColor> color) {
  change(shape_, &Shape::strokeColor, std::move(color), "strokeColor");
}
void CAShapeLayer::setStrokeStart(double start) { change(shape_, &Shape::strokeStart, start, "strokeStart"); }
void CAShapeLayer::setStrokeEnd(double end) { change(shape_, &Shape::strokeEnd, end, "strokeEnd"); }
void CAShapeLayer::setLineWidth(double width) { change(shape_, &Shape::lineWidth, width, "lineWidth"); }
void CAShapeLayer::setLineCap(CGLineCap cap) { change(shape_, &Shape::lineCap, cap, nullptr); }
void CAShapeLayer::setLineJoin(CGLineJoin join) { change(shape_, &Shape::lineJoin, join, nullptr); }
void CAShapeLayer::setLineDashPattern(std::vector<double> dashes) {
  change(shape_, &Shape::dashes, std::move(dashes), nullptr);
}
void CAShapeLayer::setLineDashPhase(double phase) { change(shape_, &Shape::dashPhase, phase, "lineDashPhase"); }

namespace {

template <class Shape>
double Shape::*numberNamed(const std::string& keyPath) {
  if (keyPath == "strokeStart") return &Shape::strokeStart;
  if (keyPath == "strokeEnd") return &Shape::strokeEnd;
  if (keyPath == "lineWidth") return &Shape::lineWidth;
  return keyPath == "lineDashPhase" ? &Shape::dashPhase : nullptr;
}

template <class Shape>
std::optional<UIColor> Shape::*colorNamed(const std::string& keyPath) {
  if (keyPath == "fillColor") return &Shape::fillColor;
  return keyPath == "strokeColor" ? &Shape::strokeColor : nullptr;
}

}  // namespace

AnimatableValue CAShapeLayer::valueForKeyPath(const std::string& keyPath) const {
  if (keyPath == "path") return shape_.path ? AnimatableValue(*shape_.path) : AnimatableValue();
  if (const auto number = numberNamed<Shape>(keyPath)) return shape_.*number;
  if (const auto color = colorNamed<Shape>(keyPath)) return (shape_.*color).value_or(UIColor::clear());
  return CALayer::valueForKeyPath(keyPath);
}

bool CAShapeLayer::setValueForKeyPath(const AnimatableValue& value, const std::string& keyPath) {
  const auto set = [&]<class T>(auto& member, const T* given) {
    if (given) member = *given;
    if (given) changed();
    return given != nullptr;
  };
  if (keyPath == "path") return set(shape_.path, std::get_if<CGPath>(&value));
  if (const auto number = numberNamed<Shape>(keyPath)) return set(shape_.*number, std::get_if<double>(&value));
  if (const auto color = colorNamed<Shape>(keyPath)) return set(shape_.*color, std::get_if<UIColor>(&value));
  return CALayer::setValueForKeyPath(value, keyPath);
}

void CAShapeLayer::paintContents(Painter& painter, double mediaTime) const {
  CALayer::paintContents(painter, mediaTime);
  if (!shape_.path) return;
  if (shape_.fillColor && shape_.fillColor->alpha() > 0) painter.fill(*shape_.path, *shape_.fillColor, shape_.evenOdd);
  if (!shape_.strokeColor || shape_.strokeColor->alpha() <= 0 || shape_.lineWidth <= 0) return;
  const CGStrokeStyle style{shape_.lineWidth, shape_.lineCap, shape_.lineJoin, 10, shape_.dashes, shape_.dashPhase};
  const bool isWhole = shape_.strokeStart <= 0 && shape_.strokeEnd >= 1;
  painter.stroke(isWhole ? *shape_.path : shape_.path->trimmed(shape_.strokeStart, shape_.strokeEnd), style,
                 *shape_.strokeColor);
}

CGRect CAShapeLayer::contentBounds() const {
  if (!shape_.path) return bounds();
  // Sharp joins reach further than half the line.
  const double reach = shape_.strokeColor ? shape_.lineWidth * (shape_.lineJoin == CGLineJoin::miter ? 5 : 0.75) : 0;
  const CGRect path = shape_.path->bounds();
  return bounds().unionWith(
      CGRect(path.origin, {std::max(path.width(), 1e-6), std::max(path.height(), 1e-6)}).insetBy(-reach, -reach));
}

Ref<CALayer> CAShapeLayer::copyForPresentation() const {
  auto copy = make<CAShapeLayer>();
  copyStateTo(*copy);
  copy->shape_ = shape_;
  return copy;
}

}  // namespace platform
