#include "examples/teashop/views/PrimaryButton.h"

#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"

namespace teashop {

using namespace platform;

void PrimaryButton::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setTranslatesAutoresizingMaskIntoConstraints(false);
  setTitleColor(UIColor::white(), UIControlState::normal);
  titleLabel()->setFont(theme::headline());
  layer()->setCornerRadius(theme::radius);
  stateDidChange();
}

void PrimaryButton::stateDidChange() {
  Super::stateDidChange();
  const UIColor fill = !isEnabled() ? theme::line : isHighlighted() ? theme::leafPressed : theme::leaf;
  setBackgroundColor(fill);
  setTitleColor(theme::inkSoft, UIControlState::disabled);
}

CGSize PrimaryButton::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, 52}; }

}  // namespace teashop
