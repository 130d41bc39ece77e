#include <algorithm>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/CollectionContent.h"
#include "platform/uikit/lists/SelectionSegue.h"
#include "platform/uikit/touch/UITouch.h"

// Choosing items: by a finger, which highlights first, and by program.

namespace platform {

bool CollectionContent::ask(SEL selector, IndexPath path) const {
  return askOptional<bool>(view.delegate(), selector, view.shared_from_this(), path).value_or(true);
}

void CollectionContent::hold(CGPoint point) {
  static const SEL shouldHighlight = sel("collectionView:shouldHighlightItemAtIndexPath:");
  letGo(false);
  const std::optional<IndexPath> path = view.indexPathForItemAtPoint(point);
  if (!path || !selected.allows) return;
  const Ref<UICollectionViewCell> cell = view.cellForItemAtIndexPath(*path);
  if (!cell || !ask(shouldHighlight, *path)) return;
  held.hold(cell, [this, weak = Weak<NSObject>(view.shared_from_this())] {
    if (const Ref<NSObject> keeper = weak.lock()) highlightHeld();
  });
}

void CollectionContent::highlightHeld() {
  if (const Ref<UICollectionViewCell> cell = held.cell()) cell->setHighlighted(true);
}

void CollectionContent::letGo(bool choose) {
  const Ref<UICollectionViewCell> cell = held.release();
  if (!cell) return;
  const std::optional<IndexPath> path = view.indexPathForCell(cell);
  cell->setHighlighted(false);
  if (choose && path) this->choose(*path);
}

void CollectionContent::deselect(IndexPath path, bool tellDelegate) {
  static const SEL didDeselect = sel("collectionView:didDeselectItemAtIndexPath:");
  if (!selected.erase(path)) return;
  if (const Ref<UICollectionViewCell> cell = visible.cellAt(path)) cell->setSelected(false);
  if (tellDelegate) tell(didDeselect, path);
}

void CollectionContent::choose(IndexPath path) {
  static const SEL shouldSelect = sel("collectionView:shouldSelectItemAtIndexPath:");
  static const SEL didSelect = sel("collectionView:didSelectItemAtIndexPath:");
  if (!selected.allows || !contains(path)) return;
  if (selected.allowsMultiple && selected.contains(path)) return deselect(path, true);
  if (!ask(shouldSelect, path) || !contains(path)) return;
  for (const IndexPath other : selected.others(path)) deselect(other, true);
  if (!contains(path)) return;
  selected.insert(path);
  const Ref<UICollectionViewCell> cell = visible.cellAt(path);
  if (cell) cell->setSelected(true);
  // Read before the delegate is told, who may reload the view and so give the cell to another item.
  const auto segue = cell ? cell->selectionSegueIdentifier() : std::nullopt;
  tell(didSelect, path);
  performSelectionSegue(as<UIView>(view.shared_from_this()), segue, cell);
}

void UICollectionView::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isDecelerating()) return Super::touchesBegan(touches, event);
  if (!touches.empty()) content_->hold(touches.front()->locationInView(this));
}

void UICollectionView::touchesMoved(const UITouches& touches, const Ref<UIEvent>&) {
  if (content_->held.isLeftBy(touches)) content_->letGo(false);
}

void UICollectionView::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  const Ref<NSObject> keeper = self();
  if (isHeld()) return Super::touchesEnded(touches, event);
  content_->letGo(true);
}

void UICollectionView::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isHeld()) return Super::touchesCancelled(touches, event);
  content_->letGo(false);
}

// ---- By program

bool UICollectionView::allowsSelection() const { return content_->selected.allows; }
void UICollectionView::setAllowsSelection(bool allows) { content_->selected.allows = allows; }
bool UICollectionView::allowsMultipleSelection() const { return content_->selected.allowsMultiple; }
void UICollectionView::setAllowsMultipleSelection(bool allows) { content_->selected.allowsMultiple = allows; }

std::vector<IndexPath> UICollectionView::indexPathsForSelectedItems() const { return content_->selected.paths(); }

void UICollectionView::selectItem(std::optional<IndexPath> indexPath, bool animated,
                                  UICollectionViewScrollPosition position) {
  content_->loadIfNeeded();
  if (indexPath && !content_->contains(*indexPath)) return;
  for (const IndexPath other : content_->selected.others(indexPath)) content_->deselect(other, false);
  if (!indexPath) return;
  content_->selected.insert(*indexPath);
  if (const Ref<UICollectionViewCell> cell = cellForItemAtIndexPath(*indexPath)) cell->setSelected(true);
  if (position != UICollectionViewScrollPosition::none) scrollToItem(*indexPath, position, animated);
}

void UICollectionView::deselectItem(IndexPath indexPath, bool) { content_->deselect(indexPath, false); }

}  // namespace platform
