#include "platform/uikit/views/NamedViewWalk.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace platform {

namespace {

/// An object's first two cache lines: most of a walk through a large screen is waiting for memory.
void fetch(const void* object) {
  __builtin_prefetch(object);
  __builtin_prefetch(static_cast<const std::byte*>(object) + ObjectPool::line);
}

}  // namespace

/// Has the memory sent for that will be needed soon: of the view that is visited now its first subview with a name; of
/// those that wait, the third's layer and first subview with a name, and the next one's first such subview's layer and
/// name. Where nobody waits, views may be nested: then it is what the next one holds, and the one after.
void NamedViewWalk::lookAhead(const UIView& visited) const {
  const UIView* const below = visited.firstNamed();
  const std::size_t left = pending_.size();
  if (left == 0) {
    if (!below) return;
    fetch(below->layer_);
    __builtin_prefetch(below->accessibilityIdentifier_.get());
    if (const UIView* const afterwards = below->firstNamed()) fetch(afterwards);
    return;
  }
  if (below) fetch(below);
  if (left >= 3) {
    const UIView& third = *pending_[left - 3];
    fetch(third.layer_);
    if (const UIView* const named = third.firstNamed()) fetch(named);
  }
  if (const UIView* const named = pending_.back()->firstNamed()) {
    fetch(named->layer_);
    __builtin_prefetch(named->accessibilityIdentifier_.get());
  }
}

UIView* NamedViewWalk::next() {
  if (isCutShort()) return nullptr;
  if (reached_) open(*reached_);
  reached_ = nullptr;
  while (!pending_.empty() && !isCutShort()) {
    UIView& view = *pending_.back();
    pending_.pop_back();
    lookAhead(view);
    if (view.answersAsItIs()) {
      name_ = view.accessibilityIdentifier_.get();
    } else {
      answered_ = view.accessibilityIdentifier();
      name_ = answered_ ? &*answered_ : nullptr;
      if (isCutShort()) break;
    }
    if (name_) return reached_ = &view;
    open(view);
  }
  return nullptr;
}

void NamedViewWalk::open(UIView& view) {
  const auto visit = [this](const Ref<UIView>& subview) {
    fetch(subview.get());
    pending_.push_back(subview.get());
  };
  if (!view.answersAsItIs()) {
    const std::vector<Ref<UIView>>& subviews = view.subviews();
    std::for_each(subviews.rbegin(), subviews.rend(), visit);
    return;
  }
  if (view.namesBelow_ & UIView::namesUncertain) view.findNamesBelow();
  if (std::has_single_bit(view.namesBelow_) && view.subviews_.size() <= UIView::nameGroups) {  // as in most of them
    pending_.push_back(view.firstNamed_);
    return;
  }
  const std::vector<Ref<UIView>>& subviews = view.subviews_;
  const std::size_t groupSize = (subviews.size() + UIView::nameGroups - 1) / UIView::nameGroups;
  for (std::uint64_t groups = view.namesBelow_; groups != 0;) {
    const auto group = static_cast<std::size_t>(std::bit_width(groups) - 1);
    groups &= ~(std::uint64_t{1} << group);
    const std::size_t first = group * groupSize;
    for (std::size_t i = std::min(first + groupSize, subviews.size()); i > first; --i) visit(subviews[i - 1]);
  }
}

}  // namespace platform
