#include "platform/uikit/constraints/LayoutEngine.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UIViewStorage.h"

// What the engine is told: constraints, views and guides that come, change and go.

namespace platform {

namespace {

/// The first rank is that of what views themselves require; the host's constraints follow by activation.
constexpr std::uint64_t ownRank = 0;
/// A contradiction may run through a long chain of views; so many of its constraints tell where to look.
constexpr std::size_t namedLimit = 12;

/// Calls `visit` for the view and everything below, superviews first; a false result skips what is below.
template <class Visit>
void forSubtree(UIView& subtree, const Visit& visit) {
  std::vector<UIView*> open{&subtree};
  while (!open.empty()) {
    UIView* const view = open.back();
    open.pop_back();
    if (!visit(*view)) continue;
    const auto& subviews = view->subviews();
    for (auto at = subviews.rbegin(); at != subviews.rend(); ++at) open.push_back(at->get());
  }
}

}  // namespace

LayoutEngine::LayoutEngine(UIView& root, std::optional<Fitting> fitting)
    : root_(root), fitting_(fitting), pixelsPerPoint_(UIScreen::main().scale()) {
  if (fitting_) item(root_);
}

LayoutEngine::~LayoutEngine() = default;

void LayoutEngine::adopt(UIView& subtree) {
  forSubtree(subtree, [this](UIView& view) {
    if (!ViewLayout::storageOf(view).subtreeHasConstraints) return false;
    if (const ViewLayout* const state = ViewLayout::ifAny(view)) {
      for (const auto& constraint : state->constraints()) addConstraint(constraint);
    }
    return true;
  });
}

void LayoutEngine::drop(UIView& subtree) {
  forSubtree(subtree, [this](UIView& view) {
    if (const ViewLayout* const state = ViewLayout::ifAny(view)) {
      for (const auto& constraint : state->constraints()) removeConstraint(*constraint);
    }
    return true;
  });
  if (items_.empty()) return;
  forSubtree(subtree, [this](UIView& view) {
    if (const ViewLayout* const state = ViewLayout::ifAny(view)) {
      for (const auto& guide : state->guides()) dropItem(*guide);
      for (const auto& guide : state->insetGuides()) dropItem(*guide);
    }
    dropItem(view);
    return true;
  });
}

void LayoutEngine::dropGuide(UILayoutGuide& guide) { dropItem(guide); }

void LayoutEngine::addConstraint(const Ref<NSLayoutConstraint>& constraint) {
  std::unique_ptr<Entry>& entry = entries_[constraint.get()];
  if (entry) return;
  entry = std::make_unique<Entry>();
  entry->constraint = constraint;
  queue(*entry);
}

void LayoutEngine::queue(Entry& entry) {
  entry.isPending = true;
  pending_.push_back(&entry);
  dirty_ = true;
}

void LayoutEngine::removeConstraint(const NSLayoutConstraint& constraint) {
  const auto found = entries_.find(&constraint);
  if (found == entries_.end()) return;
  uninstall(*found->second);
  if (found->second->isPending) std::erase(pending_, found->second.get());
  std::erase(changedConstants_, &constraint);
  entries_.erase(found);
  dirty_ = true;
}

void LayoutEngine::constantDidChange(const NSLayoutConstraint& constraint) {
  if (!entries_.contains(&constraint)) return;
  changedConstants_.push_back(&constraint);
  dirty_ = true;
}

void LayoutEngine::priorityDidChange(const NSLayoutConstraint& constraint) {
  const auto found = entries_.find(&constraint);
  if (found == entries_.end() || found->second->isPending) return;
  uninstall(*found->second);
  queue(*found->second);
}

void LayoutEngine::frameDidChange(const UIView& view) {
  LayoutItem* const known = find(view);
  if (!known) return;
  if (known->isFramed) markDirty(*known);
  if (known->baselineIsRead || (known->originIsRead && view.bounds().origin != known->origin)) {
    readsAreStale_ = true;
    dirty_ = true;
  }
}

void LayoutEngine::contentSizeDidChange(const UIView& view) {
  LayoutItem* const known = find(view);
  if (!known) return;
  if (known->baselineIsRead) readsAreStale_ = dirty_ = true;
  if (known->isFramed) return;
  known->contentIsDirty = true;
  markDirty(*known);
}

void LayoutEngine::insetsDidChange(const UIView& view) {
  const ViewLayout* const state = ViewLayout::ifAny(view);
  if (!state) return;
  for (const auto& guide : state->insetGuides()) {
    if (LayoutItem* const known = find(*guide)) markDirty(*known);
  }
}

void LayoutEngine::translationDidChange(const UIView& view) {
  LayoutItem* const known = find(view);
  if (!known) return;
  for (std::size_t which = x; which <= height; ++which) removeOwn(known->frame[which]);
  for (std::size_t axis = 0; axis < 2; ++axis) {
    removeOwn(known->atLeast[axis]);
    removeOwn(known->atMost[axis]);
  }
  known->isFramed = &view == &root_ || view.translatesAutoresizingMaskIntoConstraints();
  known->contentIsDirty = !known->isFramed;
  markDirty(*known);
}

// ---- Installing the host's constraints

void LayoutEngine::install(Entry& entry) {
  const LinearConstraint constraint = equation(entry);
  if (constraint.priority <= 0) return;  // no wish at all
  entry.id = solver_.addConstraint(constraint, entry.constraint->activation_);
  setOwner(entry.id, &entry);
}

void LayoutEngine::uninstall(Entry& entry) {
  if (std::exchange(entry.reads, false)) std::erase(readers_, &entry);
  if (entry.id == noLayoutConstraint) return;
  solver_.removeConstraint(entry.id);
  setOwner(entry.id, nullptr);
  entry.id = noLayoutConstraint;
}

void LayoutEngine::setOwner(LayoutConstraintId id, Entry* owner) {
  if (owners_.size() <= id) owners_.resize(id + 1, nullptr);
  owners_[id] = owner;
}

void LayoutEngine::reportConflicts() {
  for (const LayoutSolver::Conflict& conflict : solver_.takeConflicts()) {
    const auto ownerOf = [this](LayoutConstraintId id) { return id < owners_.size() ? owners_[id] : nullptr; };
    const Entry* const yielding = ownerOf(conflict.yielding);
    if (fitting_ || !yielding || !solver_.yields(conflict.yielding)) continue;
    std::string line = "Unable to satisfy " + yielding->constraint->description() + " together with";
    const char* separator = " ";
    bool namesOwn = false;
    std::size_t named = 0;
    for (const LayoutConstraintId id : conflict.others) {
      const Entry* const other = ownerOf(id);
      if (!other && std::exchange(namesOwn, true)) continue;
      if (++named > namedLimit) {
        line += ", ...";
        break;
      }
      line += separator + (other ? other->constraint->description() : std::string("what views themselves require"));
      separator = ", ";
    }
    std::fprintf(stderr, "%s; it yields\n", line.c_str());
  }
}

void LayoutEngine::refreshConstant(Entry& entry) {
  if (entry.id != noLayoutConstraint) solver_.setConstant(entry.id, equation(entry).expression.constant);
}

// ---- Installing the engine's own

void LayoutEngine::removeOwn(LayoutConstraintId& id) {
  if (id == noLayoutConstraint) return;
  solver_.removeConstraint(id);
  id = noLayoutConstraint;
  dirty_ = true;
}

void LayoutEngine::setOwn(LayoutConstraintId& id, const LinearConstraint& constraint, bool hasSameShape) {
  if (id != noLayoutConstraint && hasSameShape) {
    solver_.setConstant(id, constraint.expression.constant);
    return;
  }
  removeOwn(id);
  id = solver_.addConstraint(constraint, ownRank);
}

}  // namespace platform
