#include "platform/uikit/views/UIStackView.h"

#include <algorithm>
#include <utility>

// What is arranged, and how. The constraints that follow are made in the room above (UIStackViewLayout.cpp).

namespace platform {

void UIStackView::init(std::vector<Ref<UIView>> arrangedSubviews) {
  initWithFrame(CGRect{});
  for (const Ref<UIView>& view : arrangedSubviews) addArrangedSubview(view);
}

void UIStackView::initWithFrame(CGRect frame) { Super::initWithFrame(frame); }

// ---- What is arranged

void UIStackView::addArrangedSubview(const Ref<UIView>& view) { insertArrangedSubview(view, arranged_.size()); }

void UIStackView::insertArrangedSubview(const Ref<UIView>& view, std::size_t index) {
  if (!view || view.get() == this) return;
  const Ref<UIView> keeper = view;  // it may be an entry of the very list that changes
  const auto old = std::find(arranged_.begin(), arranged_.end(), view);
  if (old != arranged_.end()) {
    if (static_cast<std::size_t>(old - arranged_.begin()) < index) --index;
    arranged_.erase(old);
  }
  arranged_.insert(arranged_.begin() + static_cast<std::ptrdiff_t>(std::min(index, arranged_.size())), keeper);
  keeper->setTranslatesAutoresizingMaskIntoConstraints(false);
  if (keeper->superview().get() != this) addSubview(keeper);
  arrangementDidChange();
}

void UIStackView::removeArrangedSubview(const Ref<UIView>& view) {
  const Ref<UIView> keeper = view;
  if (std::erase(arranged_, keeper) == 0) return;
  customSpacings_.erase(keeper.get());
  arrangementDidChange();
}

void UIStackView::willRemoveSubview(const Ref<UIView>& subview) {
  Super::willRemoveSubview(subview);
  removeArrangedSubview(subview);
}

// ---- How

void UIStackView::setAxis(UILayoutAxis axis) {
  axis_ = axis;
  arrangementDidChange();
}
void UIStackView::setDistribution(UIStackViewDistribution distribution) {
  distribution_ = distribution;
  arrangementDidChange();
}
void UIStackView::setAlignment(UIStackViewAlignment alignment) {
  alignment_ = alignment;
  arrangementDidChange();
}
void UIStackView::setSpacing(double spacing) {
  spacing_ = spacing;
  arrangementDidChange();
}
void UIStackView::setCustomSpacing(double spacing, const Ref<UIView>& view) {
  customSpacings_[view.get()] = spacing;
  arrangementDidChange();
}
void UIStackView::setLayoutMarginsRelativeArrangement(bool uses) {
  usesMargins_ = uses;
  arrangementDidChange();
}

void UIStackView::arrangementDidChange() {
  stale_ = true;
  setNeedsUpdateConstraints();
  setNeedsLayout();
}

std::vector<Ref<UIView>> UIStackView::visible() const {
  std::vector<Ref<UIView>> views;
  for (const Ref<UIView>& view : arranged_) {
    if (!view->isHidden()) views.push_back(view);
  }
  return views;
}

std::vector<bool> UIStackView::hiddenStates() const {
  std::vector<bool> states;
  for (const Ref<UIView>& view : arranged_) states.push_back(view->isHidden());
  return states;
}

void UIStackView::layoutSubviews() {
  if (builtFor_ != hiddenStates()) arrangementDidChange();
  Super::layoutSubviews();
}

}  // namespace platform
