#include "platform/uikit/controls/UISlider.h"

#include <algorithm>
#include <cmath>

#include "platform/animation/CALayer.h"

namespace platform {

namespace {

constexpr double knobSide = 28;
constexpr double trackHeight = 4;
constexpr double reach = 10;  // a finger may miss the slider by this much above and below
constexpr double seconds = 0.25;

}  // namespace

void UISlider::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  track_ = make<UIView>();
  filled_ = make<UIView>();
  knob_ = make<UIView>();
  for (const Ref<UIView>& part : {track_, filled_, knob_}) {
    part->setUserInteractionEnabled(false);
    addSubview(part);
  }
  track_->layer()->setCornerRadius(trackHeight / 2);
  filled_->layer()->setCornerRadius(trackHeight / 2);
  const Ref<CALayer>& layer = knob_->layer();
  layer->setCornerRadius(knobSide / 2);
  layer->setShadowOpacity(0.22);
  layer->setShadowRadius(4);
  layer->setShadowOffset({0, 2});
  applyColors();
}

void UISlider::setValue(float value, bool animated) {
  if (std::isnan(value)) return;
  value = std::min(std::max(value, minimum_), std::max(minimum_, maximum_));
  if (value == value_) return;
  value_ = value;
  setNeedsLayout();
  if (animated && window()) UIView::animateWithDuration(seconds, [this] { layoutIfNeeded(); });
}

void UISlider::setMinimumValue(float value) {
  minimum_ = value;
  setValue(value_);
  setNeedsLayout();
}

void UISlider::setMaximumValue(float value) {
  maximum_ = value;
  setValue(value_);
  setNeedsLayout();
}

void UISlider::setMinimumTrackTintColor(std::optional<UIColor> color) {
  minimumTint_ = color;
  applyColors();
}
void UISlider::setMaximumTrackTintColor(std::optional<UIColor> color) {
  maximumTint_ = color;
  applyColors();
}
void UISlider::setThumbTintColor(std::optional<UIColor> color) {
  thumbTint_ = color;
  applyColors();
}

void UISlider::applyColors() {
  track_->setBackgroundColor(maximumTint_.value_or(UIColor::systemGray5()));
  filled_->setBackgroundColor(minimumTint_.value_or(tintColor()));
  knob_->setBackgroundColor(thumbTint_.value_or(UIColor::white()));
  const double alpha = isEnabled() ? 1 : 0.5;
  track_->setAlpha(alpha);
  filled_->setAlpha(alpha);
}

void UISlider::tintColorDidChange() {
  Super::tintColorDidChange();
  applyColors();
}

void UISlider::stateDidChange() {
  Super::stateDidChange();
  applyColors();
}

CGRect UISlider::thumbRect(CGRect bounds, float value) const {
  const double span = static_cast<double>(maximum_) - minimum_;
  const double part = span > 0 ? std::clamp((static_cast<double>(value) - minimum_) / span, 0.0, 1.0) : 0;
  const double room = std::max(0.0, bounds.size.width - knobSide);
  return {bounds.minX() + room * part, bounds.midY() - knobSide / 2, knobSide, knobSide};
}

void UISlider::layoutSubviews() {
  Super::layoutSubviews();
  const CGRect all = bounds();
  const CGRect knob = thumbRect(all, value_);
  const double top = all.midY() - trackHeight / 2;
  track_->setFrame({all.minX() + 2, top, std::max(0.0, all.size.width - 4), trackHeight});
  filled_->setFrame({all.minX() + 2, top, std::max(0.0, knob.midX() - all.minX() - 2), trackHeight});
  knob_->setFrame(knob);
}

CGSize UISlider::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, 34}; }
CGSize UISlider::sizeThatFits(CGSize size) const { return {size.width > 0 ? size.width : 118, 34}; }

bool UISlider::pointInside(CGPoint point, const Ref<UIEvent>&) const {
  return bounds().insetBy(0, -reach).contains(point);
}

bool UISlider::beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const CGPoint at = touch->locationInView(this);
  const CGRect knob = thumbRect(bounds(), value_);
  if (!knob.insetBy(-reach, -reach).contains(at)) return false;
  grip_ = at.x - knob.midX();
  valueAtGrip_ = value_;
  return true;
}

bool UISlider::continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const CGRect all = bounds();
  const double room = all.size.width - knobSide;
  if (room <= 0) return true;
  const double part = (touch->locationInView(this).x - grip_ - all.minX() - knobSide / 2) / room;
  const float before = value_;
  setValue(static_cast<float>(minimum_ + std::clamp(part, 0.0, 1.0) * (static_cast<double>(maximum_) - minimum_)));
  if (continuous_ && value_ != before) sendActionsForControlEvents(UIControlEvents::valueChanged);
  return true;
}

void UISlider::endTracking(const Ref<UITouch>&, const Ref<UIEvent>&) {
  if (!continuous_ && value_ != valueAtGrip_) sendActionsForControlEvents(UIControlEvents::valueChanged);
}

}  // namespace platform
