#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "platform/declarative/Elements.h"

namespace platform::declarative {

void StackElement::update(const Description& description, const Environment& environment) {
  const Properties& properties = propertiesOf<StackElement>(description);
  direction_ = properties.direction;
  spacing_ = properties.spacing;
  alignment_ = properties.alignment;
  fittedChildren_.clear();
  children_.resize(properties.children.size());
  for (std::size_t i = 0; i < children_.size(); ++i) children_[i].update(properties.children[i], environment);
}

ProposedSize StackElement::along(std::optional<double> length, ProposedSize offered) const {
  return isHorizontal() ? ProposedSize{length, offered.height} : ProposedSize{offered.width, length};
}

/// The least flexible child chooses first; each is offered an equal share of what the others before it left. Spacers
/// come last and share the rest.
std::vector<CGSize> StackElement::childSizes(ProposedSize offered) {
  std::vector<CGSize> sizes(children_.size());
  if (children_.empty()) return sizes;
  if (direction_ == Direction::depth) {
    std::ranges::transform(children_, sizes.begin(), [&](Slot& child) { return child->sizeThatFits(offered); });
    return sizes;
  }
  const std::optional<double> length = isHorizontal() ? offered.width : offered.height;
  if (!length) {
    std::ranges::transform(children_, sizes.begin(),
                           [&](Slot& child) { return child->sizeThatFits(along(std::nullopt, offered)); });
    return sizes;
  }
  constexpr double plenty = 1e6;
  std::vector<double> flexibility(children_.size());
  for (std::size_t i = 0; i < children_.size(); ++i) {
    flexibility[i] = lengthOf(children_[i]->sizeThatFits(along(plenty, offered))) -
                     lengthOf(children_[i]->sizeThatFits(along(0, offered)));
  }
  std::vector<std::size_t> order(children_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {},
                           [&](std::size_t i) { return std::pair(children_[i]->isSpacer(), flexibility[i]); });
  double left = std::max(0.0, *length - spacing_ * static_cast<double>(children_.size() - 1));
  const auto spacers = std::ranges::count_if(children_, [](const Slot& child) { return child->isSpacer(); });
  double waiting = static_cast<double>(order.size()) - static_cast<double>(spacers);
  for (const std::size_t i : order) {
    if (waiting == 0) waiting = static_cast<double>(spacers);
    sizes[i] = children_[i]->sizeThatFits(along(left / waiting, offered));
    left = std::max(0.0, left - lengthOf(sizes[i]));
    waiting -= 1;
  }
  return sizes;
}

CGSize StackElement::sizeThatFits(ProposedSize offered) {
  const std::vector<CGSize> sizes = childSizes(offered);
  double length = 0;
  CGSize largest;
  for (const CGSize& size : sizes) {
    length += lengthOf(size);
    largest = {std::max(largest.width, size.width), std::max(largest.height, size.height)};
  }
  if (direction_ == Direction::depth) return largest;
  if (!sizes.empty()) length += spacing_ * static_cast<double>(sizes.size() - 1);
  fitted_ = isHorizontal() ? CGSize{length, largest.height} : CGSize{largest.width, length};
  fittedChildren_ = sizes;
  return fitted_;
}

void StackElement::place(CGRect rect) {
  // Offered no more than they chose, children would choose again, and differently where they just fit.
  const bool isAsFitted = rect.size == fitted_ && fittedChildren_.size() == children_.size();
  const std::vector<CGSize> sizes = isAsFitted ? fittedChildren_ : childSizes({rect.size.width, rect.size.height});
  double at = isHorizontal() ? rect.origin.x : rect.origin.y;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    CGRect within = rect;
    if (direction_ == Direction::horizontal) {
      within = {at, rect.origin.y, sizes[i].width, rect.size.height};
    } else if (direction_ == Direction::vertical) {
      within = {rect.origin.x, at, rect.size.width, sizes[i].height};
    }
    children_[i]->place(aligned(sizes[i], within, alignment_));
    at += lengthOf(sizes[i]) + spacing_;
  }
}

void StackElement::collectViews(std::vector<Ref<UIView>>& views) {
  for (Slot& child : children_) child->collectViews(views);
}

void StackElement::forEachChild(const std::function<void(Element&)>& visit) {
  for (Slot& child : children_) {
    if (child) visit(*child);
  }
}

}  // namespace platform::declarative
