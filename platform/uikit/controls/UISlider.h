#pragma once

#include <optional>

#include "platform/uikit/controls/UIControl.h"

namespace platform {

/// A value chosen by dragging a knob along a track; sends valueChanged. Main thread.
class UISlider : public Object<UISlider, UIControl> {
 public:
  void initWithFrame(CGRect frame) override;

  virtual float value() const { return value_; }
  void setValue(float value) { setValue(value, false); }
  /// Held to minimum and maximum.
  virtual void setValue(float value, bool animated);
  float minimumValue() const { return minimum_; }
  void setMinimumValue(float value);
  float maximumValue() const { return maximum_; }
  void setMaximumValue(float value);
  /// Sends valueChanged all along the drag; otherwise at its end alone.
  bool isContinuous() const { return continuous_; }
  void setContinuous(bool continuous) { continuous_ = continuous; }
  void setMinimumTrackTintColor(std::optional<UIColor> color);
  void setMaximumTrackTintColor(std::optional<UIColor> color);
  void setThumbTintColor(std::optional<UIColor> color);
  /// Where the knob stands for a value, in the bounds.
  CGRect thumbRect(CGRect bounds, float value) const;

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void stateDidChange() override;
  void tintColorDidChange() override;
  bool pointInside(CGPoint point, const Ref<UIEvent>& event) const override;
  bool beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  bool continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  void endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  bool followsDragging() const override { return true; }

 private:
  void applyColors();

  Ref<UIView> track_;
  Ref<UIView> filled_;
  Ref<UIView> knob_;
  std::optional<UIColor> minimumTint_;
  std::optional<UIColor> maximumTint_;
  std::optional<UIColor> thumbTint_;
  float value_ = 0;
  float minimum_ = 0;
  float maximum_ = 1;
  bool continuous_ = true;
  double grip_ = 0;
  float valueAtGrip_ = 0;
};

}  // namespace platform
