#include "platform/uikit/controls/UISwitch.h"

#include <cmath>

#include "platform/animation/CALayer.h"

namespace platform {

namespace {

constexpr CGSize size{51, 31};
constexpr double gap = 2;
constexpr double knobSide = size.height - 2 * gap;
constexpr double heldStretch = 5;
constexpr double dragSlop = 6;
constexpr double seconds = 0.22;

}  // namespace

void UISwitch::initWithFrame(CGRect frame) {
  Super::initWithFrame({frame.origin, size});
  setContentHuggingPriority(UILayoutPriorityDefaultHigh, UILayoutAxis::horizontal);
  setContentHuggingPriority(UILayoutPriorityDefaultHigh, UILayoutAxis::vertical);
  track_ = make<UIView>(bounds());
  track_->layer()->setCornerRadius(size.height / 2);
  knob_ = make<UIView>();
  const Ref<CALayer>& layer = knob_->layer();
  layer->setCornerRadius(knobSide / 2);
  layer->setShadowOpacity(0.2);
  layer->setShadowRadius(3);
  layer->setShadowOffset({0, 2});
  for (const Ref<UIView>& part : {track_, knob_}) {
    part->setUserInteractionEnabled(false);
    addSubview(part);
  }
  place(false);
}

void UISwitch::setFrame(CGRect frame) {
  // A switch has one size; a larger frame centres nothing and stretches nothing.
  Super::setFrame({frame.origin, size});
}

CGSize UISwitch::sizeThatFits(CGSize) const { return size; }
CGSize UISwitch::intrinsicContentSize() const { return size; }

void UISwitch::setOn(bool on, bool animated) {
  if (on_ == on) return;
  on_ = on;
  place(animated && window());
}

void UISwitch::setOnTintColor(std::optional<UIColor> color) {
  onTintColor_ = color;
  place(false);
}

void UISwitch::setThumbTintColor(std::optional<UIColor> color) {
  thumbTintColor_ = color;
  place(false);
}

void UISwitch::place(bool animated) {
  const auto change = [this] {
    const CGRect all = bounds();
    const double width = knobSide + (isHighlighted() ? heldStretch : 0);
    const double left = on_ ? all.maxX() - gap - width : all.minX() + gap;
    track_->setFrame(all);
    track_->setBackgroundColor(on_ ? onTintColor_.value_or(UIColor::systemGreen()) : UIColor::systemGray5());
    knob_->setFrame({left, all.minY() + gap, width, knobSide});
    knob_->setBackgroundColor(thumbTintColor_.value_or(UIColor::white()));
    track_->setAlpha(isEnabled() ? 1 : 0.5);
  };
  if (animated) {
    UIView::animateWithDuration(seconds, change);
  } else {
    change();
  }
}

void UISwitch::layoutSubviews() {
  Super::layoutSubviews();
  place(false);
}

void UISwitch::stateDidChange() {
  Super::stateDidChange();
  place(window() != nullptr);
}

bool UISwitch::beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  grip_ = touch->locationInView(this).x;
  dragged_ = false;
  return true;
}

bool UISwitch::continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const double x = touch->locationInView(this).x;
  if (std::abs(x - grip_) < dragSlop) return true;
  const bool wanted = x > grip_;
  dragged_ = true;
  grip_ = x;
  if (wanted != on_) change(wanted);
  return true;
}

void UISwitch::endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  if (!dragged_ && pointInside(touch->locationInView(this), nullptr)) change(!on_);
}

void UISwitch::change(bool on) {
  setOn(on, true);
  sendActionsForControlEvents(UIControlEvents::valueChanged);
}

}  // namespace platform
