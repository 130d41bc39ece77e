#include "platform/animation/CAGradientLayer.h"

#include "platform/engine/Painter.h"

namespace platform {

void CAGradientLayer::setColors(std::vector<UIColor> colors) {
  change(gradient_.gradient, &CGGradient::colors, std::move(colors), nullptr);
}
void CAGradientLayer::setLocations(std::vector<double> locations) {
  change(gradient_.gradient, &CGGradient::locations, std::move(locations), nullptr);
}
void CAGradientLayer::setStartPoint(CGPoint point) { change(gradient_, &Gradient::start, point, "startPoint"); }
void CAGradientLayer::setEndPoint(CGPoint point) { change(gradient_, &Gradient::end, point, "endPoint"); }

AnimatableValue CAGradientLayer::valueForKeyPath(const std::string& keyPath) const {
  if (keyPath == "startPoint") return gradient_.start;
  if (keyPath == "endPoint") return gradient_.end;
  return CALayer::valueForKeyPath(keyPath);
}

bool CAGradientLayer::setValueForKeyPath(const AnimatableValue& value, const std::string& keyPath) {
  const bool isStart = keyPath == "startPoint";
  if (!isStart && keyPath != "endPoint") return CALayer::setValueForKeyPath(value, keyPath);
  const CGPoint* const point = std::get_if<CGPoint>(&value);
  if (!point) return false;
  (isStart ? gradient_.start : gradient_.end) = *point;
  changed();
  return true;
}

void CAGradientLayer::paintContents(Painter& painter, double mediaTime) const {
  if (!colors().empty()) {
    const CGRect& area = bounds();
    const auto place = [&](CGPoint part) {
      return CGPoint{area.minX() + part.x * area.width(), area.minY() + part.y * area.height()};
    };
    painter.save();
    cornerRadius() > 0 ? painter.clip(backgroundPath(), false) : painter.clip(area);
    painter.gradient(gradient_.gradient, place(gradient_.start), place(gradient_.end), 1);
    painter.restore();
  }
  CALayer::paintContents(painter, mediaTime);
}

Ref<CALayer> CAGradientLayer::copyForPresentation() const {
  auto copy = make<CAGradientLayer>();
  copyStateTo(*copy);
  copy->gradient_ = gradient_;
  return copy;
}

}  // namespace platform
