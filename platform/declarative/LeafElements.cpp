#include <algorithm>

#include "platform/declarative/Elements.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"

namespace platform::declarative {

namespace {

/// What a view of no particular size takes when nothing is offered.
constexpr double defaultLength = 10;
constexpr double unlimited = 1e6;

}  // namespace

// ---- Text

void TextElement::update(const Description& description, const Environment& environment) {
  auto label = as<UILabel>(view_);
  if (!label) {
    label = make<UILabel>();
    label->setNumberOfLines(0);
    view_ = label;
  }
  label->setText(propertiesOf<TextElement>(description).text);
  label->setFont(environment.font);
  label->setTextColor(environment.foregroundColor.value_or(UIColor::label()));
}

CGSize TextElement::sizeThatFits(ProposedSize offered) {
  return view_->sizeThatFits({offered.width.value_or(unlimited), unlimited});
}

// ---- Image

void ImageElement::update(const Description& description, const Environment& environment) {
  auto picture = as<UIImageView>(view_);
  if (!picture) {
    picture = make<UIImageView>();
    picture->setContentMode(UIViewContentMode::scaleAspectFit);
    view_ = picture;
  }
  picture->setImage(propertiesOf<ImageElement>(description).image);
  picture->setTintColor(environment.foregroundColor.value_or(UIColor::label()));
}

CGSize ImageElement::sizeThatFits(ProposedSize) {
  const auto image = std::static_pointer_cast<UIImageView>(view_)->image();
  return image ? image->size() : CGSize{};
}

// ---- Color

void ColorElement::update(const Description& description, const Environment&) {
  if (!view_) view_ = make<UIView>();
  const UIColor color = propertiesOf<ColorElement>(description).color;
  view_->setBackgroundColor(color);
  view_->setUserInteractionEnabled(false);
}

CGSize ColorElement::sizeThatFits(ProposedSize offered) {
  return {offered.width.value_or(defaultLength), offered.height.value_or(defaultLength)};
}

// ---- Spacer

void SpacerElement::update(const Description& description, const Environment&) {
  minimum_ = propertiesOf<SpacerElement>(description).minimum;
}

CGSize SpacerElement::sizeThatFits(ProposedSize offered) {
  return {std::max(minimum_, offered.width.value_or(minimum_)), std::max(minimum_, offered.height.value_or(minimum_))};
}

// ---- Represented

void RepresentedElement::update(const Description& description, const Environment&) {
  const Properties& properties = propertiesOf<RepresentedElement>(description);
  if (!view_) view_ = properties.make();
  if (view_ && properties.update) properties.update(*view_);
}

CGSize RepresentedElement::sizeThatFits(ProposedSize offered) {
  if (!view_) return {};
  const CGSize own = view_->intrinsicContentSize();
  const auto side = [](double intrinsic, std::optional<double> offer) {
    return intrinsic == UIViewNoIntrinsicMetric ? offer.value_or(defaultLength) : intrinsic;
  };
  return {side(own.width, offered.width), side(own.height, offered.height)};
}

}  // namespace platform::declarative
