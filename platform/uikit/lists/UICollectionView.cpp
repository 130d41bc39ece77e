#include "platform/uikit/lists/UICollectionView.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/lists/CollectionContent.h"

namespace platform {

UICollectionView::UICollectionView() : content_(std::make_unique<CollectionContent>(*this)) {}
UICollectionView::~UICollectionView() = default;

void UICollectionView::init(CGRect frame, const Ref<UICollectionViewLayout>& layout) {
  initWithFrame(frame);
  setCollectionViewLayout(layout);
}

void UICollectionView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::systemBackground());
  setCollectionViewLayout(make<UICollectionViewFlowLayout>());
}

const Ref<UICollectionViewLayout>& UICollectionView::collectionViewLayout() const { return content_->layout; }

void UICollectionView::setCollectionViewLayout(const Ref<UICollectionViewLayout>& layout) {
  if (!layout) return;
  if (content_->layout) content_->layout->collectionView_.reset();
  content_->layout = layout;
  layout->collectionView_ = self();
  layoutWasInvalidated();
}

void UICollectionView::layoutWasInvalidated() {
  content_->prepared = false;
  content_->stale = true;
  setNeedsLayout();
}

Ref<NSObject> UICollectionView::dataSource() const { return content_->dataSource.lock(); }

void UICollectionView::setDataSource(const Ref<NSObject>& dataSource) {
  content_->dataSource = dataSource;
  content_->unload();
  setNeedsLayout();
}

void UICollectionView::setDelegate(const Ref<NSObject>& delegate) {
  Super::setDelegate(delegate);
  layoutWasInvalidated();  // it may tell other sizes
}

// ---- Cells

void UICollectionView::registerClass(CellMaker maker, const std::string& reuseIdentifier) {
  content_->makers[reuseIdentifier] = std::move(maker);
}

void UICollectionView::registerSupplementary(SupplementaryMaker maker, const std::string& kind,
                                             const std::string& reuseIdentifier) {
  content_->supplementaryMakers[{kind, reuseIdentifier}] = std::move(maker);
}

Ref<UICollectionViewCell> UICollectionView::dequeueReusableCell(const std::string& reuseIdentifier, IndexPath) {
  if (const Ref<UICollectionViewCell> cell = content_->waiting.take(reuseIdentifier)) return cell;
  const auto maker = content_->makers.find(reuseIdentifier);
  const Ref<UICollectionViewCell> cell =
      maker == content_->makers.end() ? make<UICollectionViewCell>() : maker->second();
  if (cell) CollectionContent::stamp(*cell, reuseIdentifier);
  return cell;
}

Ref<UICollectionReusableView> UICollectionView::dequeueReusableSupplementaryView(const std::string& kind,
                                                                                 const std::string& reuseIdentifier,
                                                                                 IndexPath) {
  const auto waiting = content_->waitingSupplementary.take({kind, reuseIdentifier});
  if (waiting) return waiting;
  const auto maker = content_->supplementaryMakers.find({kind, reuseIdentifier});
  const Ref<UICollectionReusableView> view =
      maker == content_->supplementaryMakers.end() ? make<UICollectionReusableView>() : maker->second();
  if (view) CollectionContent::stamp(*view, reuseIdentifier);
  return view;
}

// ---- What there is

std::int64_t UICollectionView::numberOfSections() const {
  content_->loadIfNeeded();
  return static_cast<std::int64_t>(content_->counts.size());
}

std::int64_t UICollectionView::numberOfItemsInSection(std::int64_t section) const {
  if (section < 0 || section >= numberOfSections()) return 0;
  return content_->counts[static_cast<std::size_t>(section)];
}

std::optional<IndexPath> UICollectionView::indexPathForItemAtPoint(CGPoint point) const {
  if (!content_->layout) return std::nullopt;
  content_->prepareIfNeeded();
  const std::vector<IndexPath> found = content_->layout->itemsInRect({point.x, point.y, 0.001, 0.001});
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::optional<IndexPath> UICollectionView::indexPathForCell(const Ref<UICollectionViewCell>& cell) const {
  return content_->visible.pathOf(cell);
}

Ref<UICollectionViewCell> UICollectionView::cellForItemAtIndexPath(IndexPath indexPath) const {
  content_->tileIfStale();
  return content_->visible.cellAt(indexPath);
}

std::vector<Ref<UICollectionViewCell>> UICollectionView::visibleCells() const {
  content_->tileIfStale();
  std::vector<Ref<UICollectionViewCell>> cells;
  for (const auto& [path, cell] : content_->visible) cells.push_back(cell);
  return cells;
}

std::vector<IndexPath> UICollectionView::indexPathsForVisibleItems() const {
  content_->tileIfStale();
  std::vector<IndexPath> paths;
  for (const auto& [path, cell] : content_->visible) paths.push_back(path);
  return paths;
}

// ---- Changes

void UICollectionView::reloadData() {
  content_->pending = {};
  content_->selected.clear();
  content_->unload();
  content_->loadIfNeeded();
  setNeedsLayout();
}

void UICollectionView::performBatchUpdates(const std::function<void()>& updates, std::function<void(bool)> completion) {
  const Ref<NSObject> keeper = self();
  content_->loadIfNeeded();
  if (content_->layout) content_->prepareIfNeeded();
  ++content_->updateDepth;
  if (updates) updates();
  if (--content_->updateDepth == 0) {
    content_->applyPending(std::move(completion));
  } else if (completion) {
    completion(true);
  }
}

void UICollectionView::insertItems(const std::vector<IndexPath>& indexPaths) {
  content_->change([&] { content_->pending.inserted.insert(indexPaths.begin(), indexPaths.end()); });
}

void UICollectionView::deleteItems(const std::vector<IndexPath>& indexPaths) {
  content_->change([&] { content_->pending.deleted.insert(indexPaths.begin(), indexPaths.end()); });
}

void UICollectionView::reloadItems(const std::vector<IndexPath>& indexPaths) {
  content_->change([&] {
    for (const IndexPath path : indexPaths) {
      if (content_->contains(path)) content_->pending.reloaded.insert(path);
    }
  });
}

void UICollectionView::moveItem(IndexPath from, IndexPath to) {
  content_->change([&] { content_->pending.moved[from] = to; });
}

void UICollectionView::insertSections(const std::vector<std::int64_t>& sections) {
  content_->change([&] { content_->pending.insertedSections.insert(sections.begin(), sections.end()); });
}

void UICollectionView::deleteSections(const std::vector<std::int64_t>& sections) {
  content_->change([&] { content_->pending.deletedSections.insert(sections.begin(), sections.end()); });
}

void UICollectionView::reloadSections(const std::vector<std::int64_t>& sections) {
  content_->change([&] {
    for (const std::int64_t section : sections) {
      if (section >= 0 && section < numberOfSections()) content_->pending.reloadedSections.insert(section);
    }
  });
}

// ---- Scrolling to an item

/// The offset that moves no further than it takes to see the rectangle.
CGPoint CollectionContent::nearestOffset(CGRect rect) const {
  const UIEdgeInsets insets = view.adjustedContentInset();
  const CGSize size = view.bounds().size;
  const auto nearest = [](double offset, double first, double last) {
    return last < first ? last : std::clamp(offset, first, last);
  };
  const CGPoint now = view.contentOffset();
  return {nearest(now.x, rect.maxX() - size.width + insets.right, rect.minX() - insets.left),
          nearest(now.y, rect.maxY() - size.height + insets.bottom, rect.minY() - insets.top)};
}

CGPoint CollectionContent::offsetFor(CGRect rect, UICollectionViewScrollPosition position) const {
  const UIEdgeInsets insets = view.adjustedContentInset();
  const CGSize size = view.bounds().size;
  CGPoint offset = nearestOffset(rect);
  switch (position) {
    case UICollectionViewScrollPosition::none:
      break;
    case UICollectionViewScrollPosition::top:
      offset.y = rect.minY() - insets.top;
      break;
    case UICollectionViewScrollPosition::centeredVertically:
      offset.y = rect.midY() - (size.height + insets.top - insets.bottom) / 2;
      break;
    case UICollectionViewScrollPosition::bottom:
      offset.y = rect.maxY() - size.height + insets.bottom;
      break;
    case UICollectionViewScrollPosition::left:
      offset.x = rect.minX() - insets.left;
      break;
    case UICollectionViewScrollPosition::centeredHorizontally:
      offset.x = rect.midX() - (size.width + insets.left - insets.right) / 2;
      break;
    case UICollectionViewScrollPosition::right:
      offset.x = rect.maxX() - size.width + insets.right;
      break;
  }
  const CGSize content = view.contentSize();
  const auto hold = [](double value, double least, double most) {
    return std::clamp(value, least, std::max(least, most));
  };
  return {hold(offset.x, -insets.left, content.width + insets.right - size.width),
          hold(offset.y, -insets.top, content.height + insets.bottom - size.height)};
}

void UICollectionView::scrollToItem(IndexPath indexPath, UICollectionViewScrollPosition position, bool animated) {
  content_->loadIfNeeded();
  if (!content_->contains(indexPath)) return;
  if (window()) layoutIfNeeded();
  content_->prepareIfNeeded();
  setContentSize(content_->layout->collectionViewContentSize());
  const std::optional<CGRect> rect = content_->layout->frameForItem(indexPath);
  if (!rect) return;
  if (position == UICollectionViewScrollPosition::none) return scrollRectToVisible(*rect, animated);
  setContentOffset(content_->offsetFor(*rect, position), animated);
}

// ---- Layout

void UICollectionView::layoutSubviews() {
  Super::layoutSubviews();
  content_->tile();
}

void UICollectionView::contentOffsetDidChange() {
  Super::contentOffsetDidChange();
  content_->stale = true;
}

}  // namespace platform
