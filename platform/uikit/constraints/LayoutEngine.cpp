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

/// Where a required constraint ends up that others contradict: above every wish, below every requirement.
constexpr double brokenPriority = 999.9;

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
  entry->sequence = nextSequence_++;
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
  entry.isBroken = false;
  entry.id = addOrBreak(constraint, &entry);
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

LayoutConstraintId LayoutEngine::addOrBreak(LinearConstraint constraint, Entry* owner) {
  while (true) {
    const LayoutSolver::AddResult added = solver_.addConstraint(constraint);
    if (added) {
      setOwner(added.id, owner);
      return added.id;
    }
    Entry* const victim = victimOf(added.conflict, owner);
    if (victim && !fitting_) report(added.conflict, owner, *victim);
    if (!victim || victim == owner) {
      if (owner) owner->isBroken = true;
      constraint.priority = brokenPriority;
      continue;
    }
    uninstall(*victim);
    victim->isBroken = true;
    LinearConstraint yielding = equation(*victim);
    yielding.priority = brokenPriority;
    victim->id = solver_.addConstraint(yielding).id;
    setOwner(victim->id, victim);
  }
}

LayoutEngine::Entry* LayoutEngine::victimOf(const std::vector<LayoutConstraintId>& conflict, Entry* owner) const {
  Entry* last = owner;
  for (const LayoutConstraintId id : conflict) {
    Entry* const entry = owners_[id];
    if (entry && (!last || entry->sequence > last->sequence)) last = entry;
  }
  return last;
}

void LayoutEngine::report(const std::vector<LayoutConstraintId>& conflict, const Entry* owner,
                          const Entry& victim) const {
  std::string line = "Unable to satisfy " + victim.constraint->description() + " together with";
  const char* separator = " ";
  bool namesOwn = false;
  const auto name = [&](const Entry* entry) {
    if (entry == &victim || (!entry && std::exchange(namesOwn, true))) return;
    line += separator + (entry ? entry->constraint->description() : std::string("what views themselves require"));
    separator = ", ";
  };
  name(owner);
  for (const LayoutConstraintId id : conflict) name(owners_[id]);
  std::fprintf(stderr, "%s; it yields\n", line.c_str());
}

void LayoutEngine::refreshConstant(Entry& entry) {
  if (entry.id == noLayoutConstraint) return;
  if (solver_.setConstant(entry.id, equation(entry).expression.constant)) return;
  uninstall(entry);  // it contradicts others now: it is added anew, and something breaks
  queue(entry);
}

// ---- Installing the engine's own

void LayoutEngine::removeOwn(LayoutConstraintId& id) {
  if (id == noLayoutConstraint) return;
  solver_.removeConstraint(id);
  id = noLayoutConstraint;
  dirty_ = true;
}

void LayoutEngine::setOwn(LayoutConstraintId& id, const LinearConstraint& constraint, bool hasSameShape) {
  if (id != noLayoutConstraint && hasSameShape && solver_.setConstant(id, constraint.expression.constant)) return;
  removeOwn(id);
  id = addOrBreak(constraint, nullptr);
}

}  // namespace platform
