#include <algorithm>

#include "platform/declarative/Elements.h"

namespace platform::declarative {

// ---- Padding

void PaddingElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<PaddingElement>(description);
  insets_ = properties.insets;
  child_.update(properties.content, environment);
}

CGSize PaddingElement::sizeThatFits(ProposedSize offered) {
  const double across = insets_.left + insets_.right;
  const double down = insets_.top + insets_.bottom;
  if (offered.width) offered.width = std::max(0.0, *offered.width - across);
  if (offered.height) offered.height = std::max(0.0, *offered.height - down);
  const CGSize size = child_->sizeThatFits(offered);
  return {size.width + across, size.height + down};
}

void PaddingElement::place(CGRect rect) {
  child_->place({rect.origin.x + insets_.left, rect.origin.y + insets_.top,
                 std::max(0.0, rect.size.width - insets_.left - insets_.right),
                 std::max(0.0, rect.size.height - insets_.top - insets_.bottom)});
}

// ---- Frame

void FrameElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<FrameElement>(description);
  width_ = properties.width;
  height_ = properties.height;
  expandsHorizontally_ = properties.expandsHorizontally;
  expandsVertically_ = properties.expandsVertically;
  alignment_ = properties.alignment;
  child_.update(properties.content, environment);
}

ProposedSize FrameElement::limited(ProposedSize offered) const {
  return {width_ ? width_ : offered.width, height_ ? height_ : offered.height};
}

CGSize FrameElement::sizeThatFits(ProposedSize offered) {
  const CGSize content = child_->sizeThatFits(limited(offered));
  CGSize size{width_.value_or(content.width), height_.value_or(content.height)};
  if (expandsHorizontally_ && offered.width) size.width = std::max(size.width, *offered.width);
  if (expandsVertically_ && offered.height) size.height = std::max(size.height, *offered.height);
  return size;
}

void FrameElement::place(CGRect rect) {
  const CGSize content = child_->sizeThatFits({rect.size.width, rect.size.height});
  child_->place(aligned(content, rect, alignment_));
}

// ---- Background and overlay

void LayeredElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<LayeredElement>(description);
  isBehind_ = properties.isBehind;
  child_.update(properties.content, environment);
  companion_.update(properties.companion, environment);
}

void LayeredElement::place(CGRect rect) {
  child_->place(rect);
  companion_->place(aligned(companion_->sizeThatFits({rect.size.width, rect.size.height}), rect, {}));
}

void LayeredElement::collectViews(std::vector<Ref<UIView>>& views) {
  if (isBehind_) companion_->collectViews(views);
  child_->collectViews(views);
  if (!isBehind_) companion_->collectViews(views);
}

void LayeredElement::forEachChild(const std::function<void(Element&)>& visit) {
  WrappingElement::forEachChild(visit);
  if (companion_) visit(*companion_);
}

}  // namespace platform::declarative
