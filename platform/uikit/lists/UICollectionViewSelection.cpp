#include <algorithm>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/CollectionContent.h"
#include "platform/uikit/lists/SelectionSegue.h"
#include "platform/uikit/touch/UITouch.h"

// Choosing items: by a finger, which highlights first, and by program.

namespace platform {

namespace {

constexpr double highlightDelay = 0.1;

}  // namespace

bool CollectionContent::ask(SEL selector, IndexPath path) const {
  return askOptional<bool>(view.delegate(), selector, view.shared_from_this(), path).value_or(true);
}

void CollectionContent::hold(CGPoint point) {
  static const SEL shouldHighlight = sel("collectionView:shouldHighlightItemAtIndexPath:");
  letGo(false);
  const std::optional<IndexPath> path = view.indexPathForItemAtPoint(point);
  if (!path || !allowsSelection) return;
  const Ref<UICollectionViewCell> cell = view.cellForItemAtIndexPath(*path);
  if (!cell || !ask(shouldHighlight, *path)) return;
  held = cell;
  highlighting = DispatchQueue::main().asyncAfter(highlightDelay, [weak = Weak<NSObject>(view.shared_from_this())] {
    if (const auto owner = as<UICollectionView>(weak.lock())) owner->content_->highlightHeld();
  });
}

void CollectionContent::highlightHeld() {
  if (const Ref<UICollectionViewCell> cell = held.lock()) cell->setHighlighted(true);
}

void CollectionContent::letGo(bool choose) {
  const Ref<UICollectionViewCell> cell = held.lock();
  if (highlighting) highlighting->cancel();
  highlighting = nullptr;
  held.reset();
  if (!cell) return;
  const std::optional<IndexPath> path = view.indexPathForCell(cell);
  cell->setHighlighted(false);
  if (choose && path) this->choose(*path);
}

void CollectionContent::deselect(IndexPath path, bool tellDelegate) {
  static const SEL didDeselect = sel("collectionView:didDeselectItemAtIndexPath:");
  if (selected.erase(path) == 0) return;
  if (const auto cell = visible.find(path); cell != visible.end()) cell->second->setSelected(false);
  if (tellDelegate) tell(didDeselect, path);
}

void CollectionContent::choose(IndexPath path) {
  static const SEL shouldSelect = sel("collectionView:shouldSelectItemAtIndexPath:");
  static const SEL didSelect = sel("collectionView:didSelectItemAtIndexPath:");
  if (!allowsSelection || !contains(path)) return;
  if (allowsMultipleSelection && selected.contains(path)) return deselect(path, true);
  if (!ask(shouldSelect, path) || !contains(path)) return;
  if (!allowsMultipleSelection) {
    const std::set<IndexPath> others = selected;
    for (const IndexPath other : others) {
      if (other != path) deselect(other, true);
    }
  }
  if (!contains(path)) return;
  selected.insert(path);
  Ref<UICollectionViewCell> cell;
  if (const auto found = visible.find(path); found != visible.end()) cell = found->second;
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
  const Ref<UICollectionViewCell> cell = content_->held.lock();
  if (!cell || touches.empty()) return;
  constexpr double slop = 10;
  if (!cell->bounds().insetBy(-slop, -slop).contains(touches.front()->locationInView(cell.get()))) {
    content_->letGo(false);
  }
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

bool UICollectionView::allowsSelection() const { return content_->allowsSelection; }
void UICollectionView::setAllowsSelection(bool allows) { content_->allowsSelection = allows; }
bool UICollectionView::allowsMultipleSelection() const { return content_->allowsMultipleSelection; }
void UICollectionView::setAllowsMultipleSelection(bool allows) { content_->allowsMultipleSelection = allows; }

std::vector<IndexPath> UICollectionView::indexPathsForSelectedItems() const {
  return {content_->selected.begin(), content_->selected.end()};
}

void UICollectionView::selectItem(std::optional<IndexPath> indexPath, bool animated,
                                  UICollectionViewScrollPosition position) {
  content_->loadIfNeeded();
  if (indexPath && !content_->contains(*indexPath)) return;
  if (!indexPath || !content_->allowsMultipleSelection) {
    const std::set<IndexPath> others = content_->selected;
    for (const IndexPath other : others) {
      if (!indexPath || other != *indexPath) content_->deselect(other, false);
    }
  }
  if (!indexPath) return;
  content_->selected.insert(*indexPath);
  if (const Ref<UICollectionViewCell> cell = cellForItemAtIndexPath(*indexPath)) cell->setSelected(true);
  if (position != UICollectionViewScrollPosition::none) scrollToItem(*indexPath, position, animated);
}

void UICollectionView::deselectItem(IndexPath indexPath, bool) { content_->deselect(indexPath, false); }

}  // namespace platform
