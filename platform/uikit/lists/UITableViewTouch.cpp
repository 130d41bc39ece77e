#include <algorithm>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/lists/SelectionSegue.h"
#include "platform/uikit/lists/TableContent.h"
#include "platform/uikit/touch/UITouch.h"

// Choosing rows: by a finger, which highlights first, and by program.

namespace platform {

namespace {

/// A finger rests this long on a row before the row lights up: one that scrolls does not make rows flicker.
constexpr double highlightDelay = 0.1;

}  // namespace

// ---- By a finger

/// A header that stays over the rows is no part of them: only a touch on a cell holds one.
void TableContent::hold(const UIView& touched, CGPoint point) {
  static const SEL shouldHighlight = sel("tableView:shouldHighlightRowAtIndexPath:");
  letGo(false);
  tileIfStale();
  const std::optional<IndexPath> path = table.indexPathForRowAtPoint(point);
  if (!path || !allowsSelection) return;
  const Ref<UITableViewCell> cell = table.cellForRowAtIndexPath(*path);
  if (!cell || !touched.isDescendantOfView(cell.get())) return;
  if (!ask<bool>(shouldHighlight, *path).value_or(true)) return;
  held = cell;
  const Weak<UITableView> weak = std::static_pointer_cast<UITableView>(table.shared_from_this());
  highlighting = DispatchQueue::main().asyncAfter(highlightDelay, [weak] {
    if (const Ref<UITableView> owner = weak.lock()) owner->content_->highlightHeld();
  });
}

void TableContent::highlightHeld() {
  static const SEL didHighlight = sel("tableView:didHighlightRowAtIndexPath:");
  const Ref<UITableViewCell> cell = held.lock();
  if (!cell || cell->isHighlighted()) return;
  cell->setHighlighted(true, false);
  if (const std::optional<IndexPath> path = table.indexPathForCell(cell)) tell(didHighlight, *path);
}

void TableContent::letGo(bool choose) {
  static const SEL didUnhighlight = sel("tableView:didUnhighlightRowAtIndexPath:");
  const Ref<UITableViewCell> cell = held.lock();
  if (highlighting) highlighting->cancel();
  highlighting = nullptr;
  held.reset();
  if (!cell) return;
  const std::optional<IndexPath> path = table.indexPathForCell(cell);
  const bool wasHighlighted = cell->isHighlighted();
  if (choose && path) this->choose(*path);  // lit before and lit after: no flicker between
  cell->setHighlighted(false, choose);
  if (wasHighlighted && path && geometry.contains(*path)) tell(didUnhighlight, *path);
}

bool TableContent::isSelectable(IndexPath path) const { return loaded && geometry.contains(path); }

void TableContent::deselect(IndexPath path, bool animated, bool tellDelegate) {
  static const SEL didDeselect = sel("tableView:didDeselectRowAtIndexPath:");
  if (selected.erase(path) == 0) return;
  if (const auto cell = visible.find(path); cell != visible.end()) cell->second->setSelected(false, animated);
  if (tellDelegate) tell(didDeselect, path);
}

void TableContent::choose(IndexPath path) {
  static const SEL willSelect = sel("tableView:willSelectRowAtIndexPath:");
  static const SEL didSelect = sel("tableView:didSelectRowAtIndexPath:");
  if (!allowsSelection) return;
  if (const auto instead = ask<std::optional<IndexPath>>(willSelect, path)) {
    if (!*instead) return;
    path = **instead;
  }
  if (!isSelectable(path)) return;
  if (allowsMultipleSelection && selected.contains(path)) {
    deselect(path, true, true);
    return;
  }
  if (!allowsMultipleSelection) {
    const std::set<IndexPath> others = selected;
    for (const IndexPath other : others) {
      if (other != path) deselect(other, true, true);
    }
  }
  if (!isSelectable(path)) return;
  selected.insert(path);
  Ref<UITableViewCell> cell;
  if (const auto found = visible.find(path); found != visible.end()) cell = found->second;
  if (cell) cell->setSelected(true, false);
  // Read before the delegate is told, who may reload the table and so give the cell to another row.
  const auto segue = cell ? cell->selectionSegueIdentifier() : std::nullopt;
  tell(didSelect, path);
  performSelectionSegue(as<UIView>(shared()), segue, cell);
}

void UITableView::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isDecelerating()) return Super::touchesBegan(touches, event);
  if (touches.empty() || !touches.front()->view()) return;
  content_->hold(*touches.front()->view(), touches.front()->locationInView(this));
}

void UITableView::touchesMoved(const UITouches& touches, const Ref<UIEvent>&) {
  const Ref<UITableViewCell> cell = content_->held.lock();
  if (!cell || touches.empty()) return;
  constexpr double slop = 10;
  if (!cell->bounds().insetBy(-slop, -slop).contains(touches.front()->locationInView(cell.get()))) {
    content_->letGo(false);
  }
}

void UITableView::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  const Ref<NSObject> keeper = self();
  if (isHeld()) return Super::touchesEnded(touches, event);
  content_->letGo(true);
}

void UITableView::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isHeld()) return Super::touchesCancelled(touches, event);
  content_->letGo(false);
}

// ---- By program

std::optional<IndexPath> UITableView::indexPathForSelectedRow() const {
  return content_->selected.empty() ? std::nullopt : std::optional(*content_->selected.begin());
}

std::vector<IndexPath> UITableView::indexPathsForSelectedRows() const {
  return {content_->selected.begin(), content_->selected.end()};
}

void UITableView::selectRow(std::optional<IndexPath> indexPath, bool animated, UITableViewScrollPosition position) {
  content_->loadIfNeeded();
  if (indexPath && !content_->isSelectable(*indexPath)) return;
  if (!indexPath || !content_->allowsMultipleSelection) {
    const std::set<IndexPath> others = content_->selected;
    for (const IndexPath other : others) {
      if (!indexPath || other != *indexPath) content_->deselect(other, animated, false);
    }
  }
  if (!indexPath) return;
  content_->selected.insert(*indexPath);
  if (const Ref<UITableViewCell> cell = cellForRowAtIndexPath(*indexPath)) cell->setSelected(true, animated);
  if (position != UITableViewScrollPosition::none) scrollToRow(*indexPath, position, animated);
}

void UITableView::deselectRow(IndexPath indexPath, bool animated) { content_->deselect(indexPath, animated, false); }

}  // namespace platform
