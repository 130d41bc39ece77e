#include <algorithm>

#include "platform/uikit/lists/SelectionSegue.h"
#include "platform/uikit/lists/TableContent.h"
#include "platform/uikit/touch/UITouch.h"

// Choosing rows: by a finger, which highlights first, and by program.

namespace platform {

// ---- By a finger

/// A header that stays over the rows is no part of them: only a touch on a cell holds one.
void TableContent::hold(const UIView& touched, CGPoint point) {
  static const SEL shouldHighlight = sel("tableView:shouldHighlightRowAtIndexPath:");
  letGo(false);
  tileIfStale();
  const std::optional<IndexPath> path = table.indexPathForRowAtPoint(point);
  if (!path || !selected.allows) return;
  const Ref<UITableViewCell> cell = table.cellForRowAtIndexPath(*path);
  if (!cell || !touched.isDescendantOfView(cell.get())) return;
  if (!ask<bool>(shouldHighlight, *path).value_or(true)) return;
  held.hold(cell, [this, weak = Weak<NSObject>(shared())] {
    if (const Ref<NSObject> keeper = weak.lock()) highlightHeld();
  });
}

void TableContent::highlightHeld() {
  static const SEL didHighlight = sel("tableView:didHighlightRowAtIndexPath:");
  const Ref<UITableViewCell> cell = held.cell();
  if (!cell || cell->isHighlighted()) return;
  cell->setHighlighted(true, false);
  if (const std::optional<IndexPath> path = table.indexPathForCell(cell)) tell(didHighlight, *path);
}

void TableContent::letGo(bool choose) {
  static const SEL didUnhighlight = sel("tableView:didUnhighlightRowAtIndexPath:");
  const Ref<UITableViewCell> cell = held.release();
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
  if (!selected.erase(path)) return;
  if (const Ref<UITableViewCell> cell = visible.cellAt(path)) cell->setSelected(false, animated);
  if (tellDelegate) tell(didDeselect, path);
}

void TableContent::choose(IndexPath path) {
  static const SEL willSelect = sel("tableView:willSelectRowAtIndexPath:");
  static const SEL didSelect = sel("tableView:didSelectRowAtIndexPath:");
  if (!selected.allows) return;
  if (const auto instead = ask<std::optional<IndexPath>>(willSelect, path)) {
    if (!*instead) return;
    path = **instead;
  }
  if (!isSelectable(path)) return;
  if (selected.allowsMultiple && selected.contains(path)) {
    deselect(path, true, true);
    return;
  }
  for (const IndexPath other : selected.others(path)) deselect(other, true, true);
  if (!isSelectable(path)) return;
  selected.insert(path);
  const Ref<UITableViewCell> cell = visible.cellAt(path);
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
  if (content_->held.isLeftBy(touches)) content_->letGo(false);
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

std::optional<IndexPath> UITableView::indexPathForSelectedRow() const { return content_->selected.first(); }

std::vector<IndexPath> UITableView::indexPathsForSelectedRows() const { return content_->selected.paths(); }

void UITableView::selectRow(std::optional<IndexPath> indexPath, bool animated, UITableViewScrollPosition position) {
  content_->loadIfNeeded();
  if (indexPath && !content_->isSelectable(*indexPath)) return;
  for (const IndexPath other : content_->selected.others(indexPath)) content_->deselect(other, animated, false);
  if (!indexPath) return;
  content_->selected.insert(*indexPath);
  if (const Ref<UITableViewCell> cell = cellForRowAtIndexPath(*indexPath)) cell->setSelected(true, animated);
  if (position != UITableViewScrollPosition::none) scrollToRow(*indexPath, position, animated);
}

void UITableView::deselectRow(IndexPath indexPath, bool animated) { content_->deselect(indexPath, animated, false); }

}  // namespace platform
