#pragma once

#include <string>

#include "platform/animation/CAAnimation.h"

namespace platform {

/// An animation of one property between two values. Of from, to and by any may be missing: what is missing is the
/// layer's own value. Main thread.
///
/// Key paths: position(.x .y), bounds(.origin .size .origin.x .origin.y .size.width .size.height), anchorPoint,
/// transform(.rotation .rotation.z .scale .scale.x .scale.y .translation.x .translation.y), opacity, backgroundColor,
/// cornerRadius, borderWidth, borderColor, shadowOpacity, shadowRadius, shadowOffset, shadowColor; of shape layers
/// path, strokeStart, strokeEnd, lineWidth, lineDashPhase, fillColor, strokeColor; of gradient layers startPoint,
/// endPoint.
class CABasicAnimation : public Object<CABasicAnimation, CAAnimation> {
 public:
  void init() {}
  void init(std::string keyPath) { keyPath_ = std::move(keyPath); }
  static Ref<CABasicAnimation> animationWithKeyPath(std::string keyPath) {
    return make<CABasicAnimation>(std::move(keyPath));
  }

  const std::string& keyPath() const { return keyPath_; }
  const AnimatableValue& fromValue() const { return from_; }
  void setFromValue(AnimatableValue value) { from_ = std::move(value); }
  const AnimatableValue& toValue() const { return to_; }
  void setToValue(AnimatableValue value) { to_ = std::move(value); }
  const AnimatableValue& byValue() const { return by_; }
  void setByValue(AnimatableValue value) { by_ = std::move(value); }
  bool isCumulative() const { return cumulative_; }
  /// Each repetition goes on from where the one before ended.
  void setCumulative(bool cumulative) { cumulative_ = cumulative; }

  /// What it shows at an instant on a property whose own value is `own`; none while it shows nothing.
  AnimatableValue valueAt(double mediaTime, const AnimatableValue& own) const;

 protected:
  Ref<CAAnimation> copy() const override;

 private:
  std::string keyPath_;
  AnimatableValue from_, to_, by_;
  bool cumulative_ = false;
};

}  // namespace platform
