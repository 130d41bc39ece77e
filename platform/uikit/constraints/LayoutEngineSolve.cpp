#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UIViewStorage.h"

// The steps of an update, and what comes out of it.

namespace platform {

namespace {

/// Text that wraps differently at each width it is given must come to rest at some time.
constexpr int refinementLimit = 8;
/// New constraints bring new views, whose superviews may be new; content that is invalidated by being asked ends here.
constexpr int flushLimit = 100;
/// Sizes are 0 or more unless required constraints say otherwise. Only those that come out negative are held up.
constexpr double positivePriority = 999.95;

}  // namespace

void LayoutEngine::update() {
  if (!dirty_ || updating_) return;
  updating_ = true;
  for (int turn = 0; turn < refinementLimit; ++turn) {
    dirty_ = false;
    flush();
    solver_.solve();
    if (!refine()) break;
  }
  reportConflicts();
  dirty_ = !pending_.empty();
  updating_ = false;
  if (!fitting_) publish();
}

void LayoutEngine::flush() {
  const std::vector<const NSLayoutConstraint*> changed = std::exchange(changedConstants_, {});
  for (const NSLayoutConstraint* const constraint : changed) {
    const auto found = entries_.find(constraint);
    if (found != entries_.end() && !found->second->isPending) refreshConstant(*found->second);
  }
  for (int turn = 0; turn < flushLimit && !(pending_.empty() && dirtyItems_.empty()); ++turn) {
    // Given frames first: what constraints are to be checked against should be what holds now.
    const std::vector<const NSObject*> dirty = std::exchange(dirtyItems_, {});
    for (const NSObject* const key : dirty) {
      LayoutItem* const known = find(*key);
      if (!known) continue;
      LayoutItem& item = *known;
      item.isDirty = false;
      if (item.guide) {
        if (item.guide->source() != UILayoutGuide::Source::constraints) refreshInsets(item);
        continue;
      }
      if (item.isFramed) {
        for (std::size_t which = x; which <= height; ++which) refreshFrame(item, which);
      }
      if (std::exchange(item.contentIsDirty, false)) refreshContent(item);
    }
    installPending();
  }
}

void LayoutEngine::installPending() {
  std::vector<Entry*> batch = std::exchange(pending_, {});
  // So that ties are settled alike whenever layout runs.
  const auto isBefore = [](const Entry* a, const Entry* b) {
    return a->constraint->activation_ < b->constraint->activation_;
  };
  if (!std::is_sorted(batch.begin(), batch.end(), isBefore)) std::sort(batch.begin(), batch.end(), isBefore);
  for (Entry* const entry : batch) {
    entry->isPending = false;
    install(*entry);
  }
}

// ---- Refinement

bool LayoutEngine::refine() {
  bool changed = keepSizesPositive();
  changed = measureWrappedContent() || changed;
  changed = readAgain() || changed;
  return changed || !pending_.empty();
}

bool LayoutEngine::keepSizesPositive() {
  bool changed = false;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    LayoutItem& item = *items_[i];
    if (item.isFramed) continue;
    for (std::size_t axis = 0; axis < 2; ++axis) {
      const LayoutVariable size = item.variables[width + axis];
      if (!size || item.positive[axis] != noLayoutConstraint || solver_.value(size) >= -1e-6) continue;
      setOwn(item.positive[axis], {LinearExpression(size), NSLayoutRelation::greaterThanOrEqual, positivePriority},
             false);
      changed = true;
    }
  }
  return changed;
}

bool LayoutEngine::measureWrappedContent() {
  bool changed = false;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    LayoutItem& item = *items_[i];
    if (!item.wraps || item.isFramed) continue;
    const double given = roundedFrame(item).width();
    if (given <= 0 || std::abs(given - item.measuredWidth) < 1e-4) continue;
    item.measuredWidth = given;
    const std::optional<double> tall = item.view->intrinsicHeightForWidth(given);
    if (!tall) continue;
    setContentLength(item, 1, *tall);
    changed = true;
  }
  return changed;
}

bool LayoutEngine::readAgain() {
  if (!std::exchange(readsAreStale_, false)) return false;
  bool changed = false;
  const std::vector<Entry*> readers = readers_;
  for (Entry* const entry : readers) {
    if (entry->id == noLayoutConstraint) continue;
    const double before = solver_.constantOf(entry->id);
    refreshConstant(*entry);
    changed = changed || entry->isPending || solver_.constantOf(entry->id) != before;
  }
  return changed;
}

// ---- Results

CGRect LayoutEngine::roundedFrame(const LayoutItem& item) const {
  const auto value = [&](std::size_t which) {
    return item.variables[which] ? solver_.value(item.variables[which]) : 0.0;
  };
  const auto onPixel = [this](double edge) {
    return std::floor(edge * pixelsPerPoint_ + 0.5 + 1e-6) / pixelsPerPoint_;
  };
  const double left = onPixel(value(x));
  const double top = onPixel(value(y));
  const double right = onPixel(value(x) + value(width));
  const double bottom = onPixel(value(y) + value(height));
  return {left, top, std::max(0.0, right - left), std::max(0.0, bottom - top)};
}

std::optional<CGRect> LayoutEngine::frameOf(const NSObject& object) const {
  const LayoutItem* const known = find(object);
  if (!known) return std::nullopt;
  return roundedFrame(*known);
}

std::optional<CGSize> LayoutEngine::contentSizeOf(const UIView& view) const {
  const LayoutItem* const known = find(view);
  if (!known || (!known->content[0] && !known->content[1])) return std::nullopt;
  const auto value = [&](std::size_t axis) {
    return known->content[axis] ? std::max(0.0, solver_.value(known->content[axis])) : 0.0;
  };
  const auto onPixel = [this](double length) { return std::ceil(length * pixelsPerPoint_ - 1e-4) / pixelsPerPoint_; };
  return CGSize{onPixel(value(0)), onPixel(value(1))};
}

CGSize LayoutEngine::fittingSize() const {
  const LayoutItem* const known = find(root_);
  if (!known) return {};
  const auto up = [this](LayoutVariable variable) {
    if (!variable) return 0.0;
    return std::max(0.0, std::ceil(solver_.value(variable) * pixelsPerPoint_ - 1e-4) / pixelsPerPoint_);
  };
  return {up(known->variables[width]), up(known->variables[height])};
}

bool LayoutEngine::isSame(const CGRect& a, const CGRect& b) {
  constexpr double dust = 1e-6;
  return std::abs(a.minX() - b.minX()) < dust && std::abs(a.minY() - b.minY()) < dust &&
         std::abs(a.width() - b.width()) < dust && std::abs(a.height() - b.height()) < dust;
}

void LayoutEngine::publish() {
  for (const auto& item : items_) {
    if (item->guide) continue;
    UIView& view = *item->view;
    if (&view == &root_) {
      if (view.translatesAutoresizingMaskIntoConstraints()) continue;
      const CGRect bounds = view.bounds();
      const CGRect solved = roundedFrame(*item);
      const CGSize size{item->variables[width] ? solved.width() : bounds.width(),
                        item->variables[height] ? solved.height() : bounds.height()};
      if (!isSame({{0, 0}, size}, {{0, 0}, bounds.size})) view.setBounds({bounds.origin, size});
      continue;
    }
    if (item->content[0] || item->content[1]) ViewLayout::markNeedsLayout(view);
    if (item->isFramed || isSame(roundedFrame(*item), ViewLayout::plainFrame(view))) continue;
    ViewLayout::markNeedsLayout(*ViewLayout::superviewOf(view));
  }
}

}  // namespace platform
