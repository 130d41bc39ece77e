#include "platform/uikit/lists/CollectionContent.h"

#include <algorithm>
#include <utility>

#include "platform/runtime/OptionalMessage.h"

namespace platform {

namespace {

constexpr std::int64_t mostItems = 20'000'000;
constexpr double changeSeconds = 0.3;

}  // namespace

// ---- Counts

std::vector<std::int64_t> CollectionContent::askCounts() const {
  static const SEL numberOfSections = sel("numberOfSectionsInCollectionView:");
  static const SEL numberOfItems = sel("collectionView:numberOfItemsInSection:");
  const Ref<NSObject> source = dataSource.lock();
  if (!source) return {};
  const Ref<NSObject> asker = view.shared_from_this();
  std::int64_t sections = 1;
  if (source->respondsToSelector(numberOfSections)) sections = source->perform<std::int64_t>(numberOfSections, asker);
  std::vector<std::int64_t> asked(static_cast<std::size_t>(std::clamp<std::int64_t>(sections, 0, mostItems)));
  if (!source->respondsToSelector(numberOfItems)) return asked;
  std::int64_t left = mostItems;
  for (std::size_t section = 0; section < asked.size(); ++section) {
    const auto items = source->perform<std::int64_t>(numberOfItems, asker, static_cast<std::int64_t>(section));
    asked[section] = std::clamp<std::int64_t>(items, 0, left);
    left -= asked[section];
  }
  return asked;
}

void CollectionContent::loadIfNeeded() {
  if (loaded) return;
  loaded = true;
  prepared = false;
  const std::uint64_t before = reloads;
  std::vector<std::int64_t> asked = askCounts();
  if (reloads == before) counts = std::move(asked);  // else the data source has reloaded while it answered
}

void CollectionContent::unload() {
  ++reloads;
  for (const auto& [path, cell] : std::exchange(visible, {})) recycle(cell, path);
  dropSupplementary({});
  held.release();
  loaded = false;
  prepared = false;
  stale = true;
}

bool CollectionContent::contains(IndexPath path) const {
  return path.section() >= 0 && path.section() < static_cast<std::int64_t>(counts.size()) && path.item() >= 0 &&
         path.item() < counts[static_cast<std::size_t>(path.section())];
}

// ---- Cells

void CollectionContent::stamp(UICollectionReusableView& made, const std::string& identifier) {
  made.reuseIdentifier_ = identifier;
}

Ref<UICollectionViewCell> CollectionContent::makeCell(IndexPath path) const {
  static const SEL cellForItem = sel("collectionView:cellForItemAtIndexPath:");
  Ref<UICollectionViewCell> cell;
  UIView::performWithoutAnimation([&] {
    cell = askOptional<Ref<UICollectionViewCell>>(dataSource.lock(), cellForItem, view.shared_from_this(), path)
               .value_or(nullptr);
    if (!cell) cell = make<UICollectionViewCell>();
  });
  return cell;
}

void CollectionContent::display(IndexPath path, const Ref<UICollectionViewCell>& cell, CGRect frame) {
  static const SEL willDisplay = sel("collectionView:willDisplayCell:forItemAtIndexPath:");
  UIView::performWithoutAnimation([&] {
    double alpha = 1;
    if (transition_) {
      const std::optional<IndexPath> old = transition_->oldPath(path);
      const auto before = old ? framesBefore_->find(*old) : framesBefore_->end();
      if (before != framesBefore_->end() && !transition_->isReloaded(*old)) {
        frame = before->second;
      } else {
        alpha = 0;
      }
    }
    cell->setHidden(false);
    cell->setAlpha(alpha);
    cell->setTranslatesAutoresizingMaskIntoConstraints(true);
    cell->setFrame(frame);
    cell->setSelected(selected.contains(path));
    const auto next = visible.upper_bound(path);
    if (next != visible.end() && next->second->superview().get() == &view) {
      view.insertSubviewBelow(cell, next->second);
    } else {
      view.addSubview(cell);
    }
  });
  tell(willDisplay, cell, path);
}

void CollectionContent::recycle(const Ref<UICollectionViewCell>& cell, IndexPath path) {
  static const SEL didEnd = sel("collectionView:didEndDisplayingCell:forItemAtIndexPath:");
  if (held.cell() == cell) letGo(false);
  if (cell->superview().get() == &view) cell->removeFromSuperview();
  tell(didEnd, cell, path);
  if (!cell->reuseIdentifier().empty()) waiting.put(cell->reuseIdentifier(), cell);
}

// ---- Showing

bool CollectionContent::isPrepared() const { return loaded && prepared && preparedSize == view.bounds().size; }

void CollectionContent::prepareIfNeeded() {
  loadIfNeeded();
  if (isPrepared()) return;
  preparedSize = view.bounds().size;
  prepared = true;
  layout->prepareLayout();
}

void CollectionContent::tileIfStale() {
  if (stale || !loaded || !prepared) tile();
}

void CollectionContent::tile() {
  if (tiling || updateDepth > 0 || !layout) return;
  tiling = true;
  const Ref<NSObject> keeper = view.weak_from_this().lock();
  constexpr int mostPasses = 4;
  for (int pass = 0; pass < mostPasses; ++pass) {
    prepareIfNeeded();
    view.setContentSize(layout->collectionViewContentSize());
    stale = false;
    const CGRect rect = view.bounds();
    if (tileItems(rect) && tileSupplementary(rect) && !stale) break;
  }
  stale = false;
  tiling = false;
}

/// False when the pass has to be done again: the data source or the delegate reloaded the view in a callback, or the
/// counts were no more what they were.
bool CollectionContent::tileItems(CGRect rect) {
  const std::uint64_t before = reloads;
  const std::vector<IndexPath> wanted = layout->itemsInRect(rect);
  if (std::any_of(wanted.begin(), wanted.end(), [this](IndexPath path) { return !visible.contains(path); }) &&
      !dataSource.expired() && askCounts() != counts) {
    unload();  // the data source changed without a word
    return false;
  }
  for (const IndexPath path : wanted) {
    if (!contains(path)) continue;
    const std::optional<CGRect> frame = layout->frameForItem(path);
    if (!frame) continue;
    Ref<UICollectionViewCell> cell = visible.cellAt(path);
    if (!cell) {
      cell = makeCell(path);
      if (reloads != before) return false;
      visible[path] = cell;
      display(path, cell, *frame);
      if (reloads != before) return false;
      // One that takes part in a movement moves as it will look: what it holds does not come flying in.
      if (UIView::inheritedAnimationDuration() > 0) {
        UIView::performWithoutAnimation([&] {
          cell->setFrame({cell->frame().origin, frame->size});
          cell->layoutIfNeeded();
        });
      }
    }
    if (cell->frame() != *frame) cell->setFrame(*frame);
    if (cell->alpha() != 1) cell->setAlpha(1);
  }
  const std::set<IndexPath> keep(wanted.begin(), wanted.end());
  std::vector<std::pair<IndexPath, Ref<UICollectionViewCell>>> leaving;
  for (const auto& [path, cell] : visible) {
    if (keep.contains(path)) continue;
    if (!transition_) {
      leaving.emplace_back(path, cell);
    } else if (const auto frame = layout->frameForItem(path)) {
      cell->setFrame(*frame);
    }
  }
  for (const auto& [path, cell] : leaving) {
    visible.erase(path);
    recycle(cell, path);
    if (reloads != before) return false;
  }
  return true;
}

/// False like tileItems.
bool CollectionContent::tileSupplementary(CGRect rect) {
  static const SEL viewForKind = sel("collectionView:viewForSupplementaryElementOfKind:atIndexPath:");
  const std::uint64_t before = reloads;
  std::set<std::pair<bool, std::int64_t>> wanted;
  for (const std::int64_t section : layout->sectionsInRect(rect)) {
    for (const bool isFooter : {false, true}) {
      const auto frame = isFooter ? layout->frameForFooter(section) : layout->frameForHeader(section);
      if (!frame || !frame->intersects(rect)) continue;
      const std::string& kind =
          isFooter ? UICollectionView::elementKindSectionFooter : UICollectionView::elementKindSectionHeader;
      const std::pair<bool, std::int64_t> place{isFooter, section};
      if (!supplementary.contains(place)) {
        const auto made = askOptional<Ref<UICollectionReusableView>>(
                              dataSource.lock(), viewForKind, view.shared_from_this(), kind, IndexPath(0, section))
                              .value_or(nullptr);
        if (reloads != before) return false;
        if (!made) continue;
        supplementary[place] = {made, kind};
        UIView::performWithoutAnimation([&] {
          made->setFrame(*frame);
          view.addSubview(made);
        });
      }
      wanted.insert(place);
      supplementary[place].view->setFrame(*frame);
    }
  }
  dropSupplementary(wanted);
  return true;
}

void CollectionContent::dropSupplementary(const std::set<std::pair<bool, std::int64_t>>& wanted) {
  for (auto at = supplementary.begin(); at != supplementary.end();) {
    if (wanted.contains(at->first)) {
      ++at;
      continue;
    }
    const Supplementary gone = at->second;
    at = supplementary.erase(at);
    gone.view->removeFromSuperview();
    waitingSupplementary.put({gone.kind, gone.view->reuseIdentifier()}, gone.view);
  }
}

// ---- Changes

void CollectionContent::change(const std::function<void()>& note) {
  if (!loaded) return view.setNeedsLayout();
  // The data has changed already: the layout is not prepared for what was, as it is before a batch.
  note();
  if (updateDepth == 0) applyPending(nullptr);
}

void CollectionContent::applyPending(std::function<void(bool)> completion) {
  TableChanges changes = std::exchange(pending, {});
  const std::vector<std::int64_t> now = askCounts();
  if (!loaded || tiling || !layout || !changes.fit(counts, now)) {
    view.reloadData();
    if (completion) completion(true);
    return;
  }
  // Frames of what was on the screen or near it: items that come into view slide from there.
  std::map<IndexPath, CGRect> before;
  if (isPrepared()) {
    for (const IndexPath path : layout->itemsInRect(view.bounds().insetBy(-600, -600))) {
      if (const auto frame = layout->frameForItem(path)) before[path] = *frame;
    }
  }
  const auto leaving = std::make_shared<const VisibleCells<UICollectionViewCell>::Leaving>(visible.carry(changes));
  ++reloads;
  if (!changes.deletedSections.empty() || !changes.insertedSections.empty() || !changes.reloadedSections.empty()) {
    dropSupplementary({});
  }
  selected.follow(changes);
  counts = now;
  prepared = false;
  stale = true;
  const bool animates = view.window() && UIView::areAnimationsEnabled();
  if (animates) {
    transition_ = &changes;
    framesBefore_ = &before;
  }
  const auto change = [&] {
    tile();
    for (const auto& [cell, path] : *leaving) cell->setAlpha(0);
  };
  const auto afterwards = [weak = Weak<NSObject>(view.shared_from_this()), leaving, completion](bool finished) {
    if (const auto owner = as<UICollectionView>(weak.lock())) {
      for (const auto& [cell, path] : *leaving) owner->content_->recycle(cell, path);
      owner->content_->stale = true;
      owner->setNeedsLayout();
    }
    if (completion) completion(finished);
  };
  if (animates) {
    UIView::animateWithDuration(changeSeconds, change, afterwards);
  } else {
    UIView::performWithoutAnimation(change);
    afterwards(true);
  }
  transition_ = nullptr;
  framesBefore_ = nullptr;
}

}  // namespace platform
