#pragma once

#include "platform/animation/CALayer.h"
#include "platform/geometry/CGGradient.h"

namespace platform {

/// A layer filled with colours along a line, its round corners kept. Main thread.
class CAGradientLayer : public Object<CAGradientLayer, CALayer> {
 public:
  static Ref<CAGradientLayer> layer() { return make<CAGradientLayer>(); }

  const std::vector<UIColor>& colors() const { return gradient_.gradient.colors; }
  void setColors(std::vector<UIColor> colors);
  const std::vector<double>& locations() const { return gradient_.gradient.locations; }
  void setLocations(std::vector<double> locations);
  /// In parts of the bounds; from the middle of the top edge to the middle of the bottom edge unless told otherwise.
  CGPoint startPoint() const { return gradient_.start; }
  void setStartPoint(CGPoint point);
  CGPoint endPoint() const { return gradient_.end; }
  void setEndPoint(CGPoint point);

  AnimatableValue valueForKeyPath(const std::string& keyPath) const override;
  bool setValueForKeyPath(const AnimatableValue& value, const std::string& keyPath) override;
  void paintContents(Painter& painter, double mediaTime) const override;
  bool hasOwnContents() const override { return !colors().empty() || CALayer::hasOwnContents(); }

 protected:
  Ref<CALayer> copyForPresentation() const override;

 private:
  struct Gradient {
    CGGradient gradient;
    CGPoint start{0.5, 0};
    CGPoint end{0.5, 1};
  };
  Gradient gradient_;
};

}  // namespace platform
