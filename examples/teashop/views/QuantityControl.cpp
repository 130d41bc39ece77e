#include "examples/teashop/views/QuantityControl.h"

#include <algorithm>

#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"

namespace teashop {

using namespace platform;

void QuantityControl::exportMethods(MethodTable<QuantityControl>& table) {
  table.add<&QuantityControl::decrease>("decrease").add<&QuantityControl::increase>("increase");
}

void QuantityControl::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setTranslatesAutoresizingMaskIntoConstraints(false);
  setBackgroundColor(theme::leafTint);
  layer()->setCornerRadius(22);
  minus_ = makeButton("\u2212", "decrease");
  plus_ = makeButton("+", "increase");
  value_ = makeLabel("1", theme::headline(), theme::ink);
  value_->setTextAlignment(NSTextAlignment::center);
  addSubview(value_);
  NSLayoutConstraint::activateConstraints({
      minus_->leadingAnchor().constraintEqualToAnchor(leadingAnchor()),
      minus_->topAnchor().constraintEqualToAnchor(topAnchor()),
      minus_->bottomAnchor().constraintEqualToAnchor(bottomAnchor()),
      minus_->widthAnchor().constraintEqualToConstant(48),
      plus_->trailingAnchor().constraintEqualToAnchor(trailingAnchor()),
      plus_->topAnchor().constraintEqualToAnchor(topAnchor()),
      plus_->bottomAnchor().constraintEqualToAnchor(bottomAnchor()),
      plus_->widthAnchor().constraintEqualToConstant(48),
      value_->centerXAnchor().constraintEqualToAnchor(centerXAnchor()),
      value_->centerYAnchor().constraintEqualToAnchor(centerYAnchor()),
  });
  setPrefix("quantity");
  setQuantity(1);
}

Ref<UIButton> QuantityControl::makeButton(const std::string& title, const char* action) {
  auto button = make<UIButton>();
  button->setTranslatesAutoresizingMaskIntoConstraints(false);
  button->setTitle(title, UIControlState::normal);
  button->setTitleColor(theme::leaf, UIControlState::normal);
  button->setTitleColor(theme::inkSoft, UIControlState::disabled);
  button->titleLabel()->setFont(UIFont::systemFont(22, UIFontWeightMedium));
  button->addTarget(self(), sel(action), UIControlEvents::touchUpInside);
  addSubview(button);
  return button;
}

void QuantityControl::setPrefix(const std::string& prefix) {
  minus_->setAccessibilityIdentifier(prefix + "Minus");
  value_->setAccessibilityIdentifier(prefix + "Value");
  plus_->setAccessibilityIdentifier(prefix + "Plus");
}

void QuantityControl::setRange(std::int64_t minimum, std::int64_t maximum) {
  minimum_ = minimum;
  maximum_ = maximum;
  setQuantity(quantity_);
}

void QuantityControl::setQuantity(std::int64_t quantity) {
  quantity_ = std::clamp(quantity, minimum_, maximum_);
  value_->setText(std::to_string(quantity_));
  minus_->setEnabled(quantity_ > minimum_);
  plus_->setEnabled(quantity_ < maximum_);
}

void QuantityControl::decrease() { changeBy(-1); }
void QuantityControl::increase() { changeBy(1); }

void QuantityControl::changeBy(std::int64_t difference) {
  const std::int64_t before = quantity_;
  setQuantity(quantity_ + difference);
  if (quantity_ != before) sendActionsForControlEvents(UIControlEvents::valueChanged);
}

}  // namespace teashop
