#include <algorithm>
#include <utility>

#include "platform/uikit/lists/TableContent.h"

// Changes of a table's rows: what goes, what comes, what moves, and how that looks.

namespace platform {

namespace {

constexpr double changeSeconds = 0.3;

}  // namespace

// ---- Announcing

void UITableView::reloadData() {
  content_->pending = {};
  content_->selected.clear();
  content_->goal = std::nullopt;
  content_->unload();
  content_->loadIfNeeded();  // counts are those of this moment, whenever the cells are made
  setNeedsLayout();
  if (!content_->tiling) {
    content_->layOutSurroundings();
    setContentSize({bounds().size.width, content_->geometry.contentHeight()});
  }
}

void UITableView::beginUpdates() {
  if (content_->updateDepth++ == 0) content_->loadIfNeeded();
}

void UITableView::endUpdates() {
  if (content_->updateDepth == 0) return;
  if (--content_->updateDepth == 0) content_->applyPending(nullptr);
}

void UITableView::performBatchUpdates(const std::function<void()>& updates, std::function<void(bool)> completion) {
  const Ref<NSObject> keeper = self();
  beginUpdates();
  if (updates) updates();
  if (content_->updateDepth > 0 && --content_->updateDepth == 0) {
    content_->applyPending(std::move(completion));
  } else if (completion) {
    completion(true);
  }
}

void UITableView::insertRows(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  content_->pending.inserted.insert(indexPaths.begin(), indexPaths.end());
  content_->pendingAnimation = animation;
  endUpdates();
}

void UITableView::deleteRows(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  content_->pending.deleted.insert(indexPaths.begin(), indexPaths.end());
  content_->pendingAnimation = animation;
  endUpdates();
}

void UITableView::reloadRows(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  for (const IndexPath path : indexPaths) {
    if (content_->geometry.contains(path)) content_->pending.reloaded.insert(path);
  }
  content_->pendingAnimation = animation;
  endUpdates();
}

void UITableView::moveRow(IndexPath from, IndexPath to) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  content_->pending.moved[from] = to;
  endUpdates();
}

void UITableView::insertSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  content_->pending.insertedSections.insert(sections.begin(), sections.end());
  content_->pendingAnimation = animation;
  endUpdates();
}

void UITableView::deleteSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  content_->pending.deletedSections.insert(sections.begin(), sections.end());
  content_->pendingAnimation = animation;
  endUpdates();
}

void UITableView::reloadSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation) {
  if (!content_->loaded) return setNeedsLayout();
  beginUpdates();
  for (const std::int64_t section : sections) {
    if (content_->geometry.containsSection(section)) content_->pending.reloadedSections.insert(section);
  }
  content_->pendingAnimation = animation;
  endUpdates();
}

// ---- Carrying out

namespace {

/// What is left of a list by rows when some are gone (in order).
std::vector<char> withoutRows(const std::vector<char>& list, const std::vector<std::int64_t>& gone) {
  std::vector<char> left;
  left.reserve(list.size() - gone.size());
  auto from = list.begin();
  for (const std::int64_t row : gone) {
    const auto to = list.begin() + row;
    left.insert(left.end(), from, to);
    from = to + 1;
  }
  left.insert(left.end(), from, list.end());
  return left;
}

/// A list by rows with others put in, each where it stands afterwards (in order).
std::vector<char> withRows(const std::vector<char>& list, const std::vector<std::int64_t>& come,
                           const std::vector<char>& values) {
  std::vector<char> all;
  all.reserve(list.size() + come.size());
  auto from = list.begin();
  for (std::size_t i = 0; i < come.size(); ++i) {
    const auto to = from + (come[i] - static_cast<std::int64_t>(all.size()));
    all.insert(all.end(), from, to);
    all.push_back(values[i]);
    from = to;
  }
  all.insert(all.end(), from, list.end());
  return all;
}

}  // namespace

/// The sections after the changes: heights of what stays are kept, what comes is asked for.
std::vector<TableSection> TableContent::changedSections(const TableChanges& changes,
                                                        const std::vector<std::int64_t>& counts) {
  std::vector<TableSection> now;
  now.reserve(counts.size());
  for (std::size_t index = 0; index < counts.size(); ++index) {
    const auto section = static_cast<std::int64_t>(index);
    const std::optional<std::int64_t> old = changes.oldSection(section);
    if (!old || changes.reloadedSections.contains(*old)) {
      now.push_back(makeSection(section, counts[index]));
      continue;
    }
    const TableSection& before = geometry.sections()[static_cast<std::size_t>(*old)];
    const std::vector<std::int64_t>& gone = changes.rowsGone(*old);
    const std::vector<std::int64_t>& come = changes.rowsCome(section);
    if (gone.empty() && come.empty()) {
      now.push_back(before);
      continue;
    }
    TableSection after;
    after.headerHeight = before.headerHeight;
    after.footerHeight = before.footerHeight;
    after.rows = before.rows;
    for (auto row = gone.rbegin(); row != gone.rend(); ++row) after.rows.erase(static_cast<std::size_t>(*row));
    std::vector<char> left;
    if (!gone.empty()) left = withoutRows(before.measured, gone);
    std::vector<char> measured;
    measured.reserve(come.size());
    for (const std::int64_t row : come) {
      const Height height = initialHeight(IndexPath(row, section));
      after.rows.insert(static_cast<std::size_t>(row), height.height);
      measured.push_back(height.measured);
    }
    if (come.empty()) {
      after.measured = std::move(left);
    } else {
      after.measured = withRows(gone.empty() ? before.measured : left, come, measured);
    }
    now.push_back(std::move(after));
  }
  // Rows that are reloaded, and rows that moved, are measured again; visible rows are too, because an update without
  // changes is how a host says that their contents have another height now.
  const auto again = [&](std::optional<IndexPath> path) {
    if (!path) return;
    TableSection& section = now[static_cast<std::size_t>(path->section())];
    const auto row = static_cast<std::size_t>(path->row());
    const Height height = initialHeight(*path);
    section.measured[row] = height.measured;
    if (height.measured) section.rows.setHeight(row, height.height);
  };
  for (const IndexPath path : changes.reloaded) again(changes.newPath(path));
  for (const auto& [path, cell] : visible) again(changes.newPath(path));
  return now;
}

/// What is visible, chosen or on its way there goes along; the cells that leave come back.
VisibleCells<UITableViewCell>::Leaving TableContent::carryOver(const TableChanges& changes) {
  const auto leaving = visible.carry(changes);
  for (const auto& [cell, path] : leaving) {
    if (const std::optional<IndexPath> now = changes.newPath(path)) transition_->replaced.insert(*now);
  }
  ++reloads;
  selected.follow(changes);
  if (goal) {
    const std::optional<IndexPath> now = changes.newPath(goal->path);
    goal = now ? std::optional(Goal{*now, goal->position}) : std::nullopt;
  }
  dropHeaders(headers, {});
  dropHeaders(footers, {});
  return leaving;
}

void TableContent::applyPending(std::function<void(bool)> completion) {
  TableChanges changes = std::exchange(pending, {});
  const UITableViewRowAnimation animation = std::exchange(pendingAnimation, UITableViewRowAnimation::automatic);
  const Ref<UITableView> keeper = std::static_pointer_cast<UITableView>(table.shared_from_this());
  const std::vector<std::int64_t> now = askCounts();
  const bool fits = loaded && !tiling && changes.fit(counts(), now);
  if (!fits) {
    table.reloadData();
    if (completion) completion(true);
    return;
  }
  const bool animates = animation != UITableViewRowAnimation::none && table.window() &&
                        UIView::areAnimationsEnabled() && table.bounds().size.height > 0;
  std::vector<TableSection> sections = changedSections(changes, now);
  const TableGeometry before = std::move(geometry);
  geometry.setSections(std::move(sections));  // what lies around them stays
  Transition transition{&changes, &before, animation, {}};
  transition_ = &transition;
  const auto leaving = carryOver(changes);
  if (!animates) transition_ = nullptr;
  stale = true;

  for (const auto& [cell, path] : leaving) {
    if (animates && !transition.replaced.empty()) break;
    if (animates) table.sendSubviewToBack(cell);
  }
  const auto change = [this, &leaving, animation, animates] {
    tile();
    if (!animates) return;
    for (const auto& [cell, path] : leaving) {
      cell->setAlpha(0);
      const CGRect frame = cell->frame();
      if (animation == UITableViewRowAnimation::left) cell->setFrame(frame.offsetBy(-frame.size.width, 0));
      if (animation == UITableViewRowAnimation::right) cell->setFrame(frame.offsetBy(frame.size.width, 0));
    }
  };
  if (!animates) {
    UIView::performWithoutAnimation(change);
    for (const auto& [cell, path] : leaving) recycle(cell, path);
    table.setNeedsLayout();
    if (completion) completion(true);
    return;
  }
  // The leaving cells are handed to the completion before the changes run: `change` only borrows them.
  const auto gone = std::make_shared<const VisibleCells<UITableViewCell>::Leaving>(leaving);
  UIView::animateWithDuration(changeSeconds, change,
                              [weak = Weak<UITableView>(keeper), gone, completion](bool finished) {
                                if (const Ref<UITableView> owner = weak.lock()) {
                                  TableContent& content = *owner->content_;
                                  for (const auto& [cell, path] : *gone) content.recycle(cell, path);
                                  content.stale = true;
                                  owner->setNeedsLayout();
                                }
                                if (completion) completion(finished);
                              });
  transition_ = nullptr;
  stale = true;
  table.setNeedsLayout();
}

}  // namespace platform
