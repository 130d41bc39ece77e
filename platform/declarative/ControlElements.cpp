#include "platform/declarative/Elements.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/views/UILabel.h"

namespace platform::declarative {

void ButtonElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<ButtonElement>(description);
  auto button = as<UIButton>(view_);
  if (!button) {
    target_ = make<ActionTarget>();
    button = make<UIButton>(UIButtonType::system);
    button->addTarget(target_, sel("fire:"), UIControlEvents::touchUpInside);
    view_ = button;
  }
  button->setTitle(properties.title, UIControlState::normal);
  button->titleLabel()->setFont(environment.font);
  button->setTintColor(environment.foregroundColor);
  target_->action = [action = properties.action](const Ref<NSObject>&) {
    if (action) action();
  };
}

CGSize ButtonElement::sizeThatFits(ProposedSize) { return view_->intrinsicContentSize(); }

void ToggleElement::update(const Description& description, const Environment&) {
  const Properties& properties = propertiesOf<ToggleElement>(description);
  auto toggle = as<UISwitch>(view_);
  if (!toggle) {
    target_ = make<ActionTarget>();
    toggle = make<UISwitch>();
    toggle->addTarget(target_, sel("fire:"), UIControlEvents::valueChanged);
    view_ = toggle;
  }
  if (toggle->isOn() != properties.isOn) toggle->setOn(properties.isOn, false);
  target_->action = [changed = properties.changed](const Ref<NSObject>& sender) {
    const auto flipped = as<UISwitch>(sender);
    if (changed && flipped) changed(flipped->isOn());
  };
}

CGSize ToggleElement::sizeThatFits(ProposedSize) { return view_->intrinsicContentSize(); }

}  // namespace platform::declarative
