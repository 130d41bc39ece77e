#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/IndexPath.h"
#include "platform/uikit/lists/UICollectionViewCell.h"
#include "platform/uikit/lists/UICollectionViewFlowLayout.h"
#include "platform/uikit/lists/UIScrollView.h"

namespace platform {

class CollectionContent;

enum class UICollectionViewScrollPosition { none, top, centeredVertically, bottom, left, centeredHorizontally, right };

/// Items that a layout object places. Only the visible items have cells. Data source and delegate are held weakly and
/// asked by selector.
///
/// Data source: numberOfSectionsInCollectionView:, collectionView:numberOfItemsInSection:,
/// collectionView:cellForItemAtIndexPath:, collectionView:viewForSupplementaryElementOfKind:atIndexPath:.
/// Delegate (one with the scroll view's): collectionView:shouldHighlightItemAtIndexPath:,
/// collectionView:shouldSelectItemAtIndexPath:, collectionView:didSelectItemAtIndexPath:,
/// collectionView:didDeselectItemAtIndexPath:, collectionView:willDisplayCell:forItemAtIndexPath:,
/// collectionView:didEndDisplayingCell:forItemAtIndexPath:.
///
/// Index paths out of range are never an error: they find, select and scroll to nothing. Main thread.
class UICollectionView : public Object<UICollectionView, UIScrollView> {
 public:
  inline static const std::string elementKindSectionHeader = "UICollectionElementKindSectionHeader";
  inline static const std::string elementKindSectionFooter = "UICollectionElementKindSectionFooter";

  UICollectionView();
  ~UICollectionView() override;
  using UIView::init;
  void init(CGRect frame, const Ref<UICollectionViewLayout>& layout);
  void initWithFrame(CGRect frame) override;

  const Ref<UICollectionViewLayout>& collectionViewLayout() const;
  void setCollectionViewLayout(const Ref<UICollectionViewLayout>& layout);
  virtual Ref<NSObject> dataSource() const;
  void setDataSource(const Ref<NSObject>& dataSource);
  void setDelegate(const Ref<NSObject>& delegate) override;

  // ---- Cells
  using CellMaker = std::function<Ref<UICollectionViewCell>()>;
  void registerClass(CellMaker maker, const std::string& reuseIdentifier);
  template <class Cell>
  void registerClass(const std::string& reuseIdentifier) {
    registerClass([] { return make<Cell>(CGRect{}); }, reuseIdentifier);
  }
  using SupplementaryMaker = std::function<Ref<UICollectionReusableView>()>;
  void registerSupplementary(SupplementaryMaker maker, const std::string& kind, const std::string& reuseIdentifier);
  /// An identifier that nothing was registered for gives a plain cell.
  Ref<UICollectionViewCell> dequeueReusableCell(const std::string& reuseIdentifier, IndexPath indexPath);
  Ref<UICollectionReusableView> dequeueReusableSupplementaryView(const std::string& kind,
                                                                 const std::string& reuseIdentifier,
                                                                 IndexPath indexPath);

  // ---- What there is
  virtual std::int64_t numberOfSections() const;
  virtual std::int64_t numberOfItemsInSection(std::int64_t section) const;
  virtual std::optional<IndexPath> indexPathForItemAtPoint(CGPoint point) const;
  virtual std::optional<IndexPath> indexPathForCell(const Ref<UICollectionViewCell>& cell) const;
  /// None unless the item is visible.
  virtual Ref<UICollectionViewCell> cellForItemAtIndexPath(IndexPath indexPath) const;
  virtual std::vector<Ref<UICollectionViewCell>> visibleCells() const;
  virtual std::vector<IndexPath> indexPathsForVisibleItems() const;

  // ---- Changes. Deleted, reloaded and moved-away paths count as before the changes, inserted and moved-to ones as
  // after them. The data changes before the call; for several calls at once, within the updates of a batch.
  void reloadData();
  void reloadItems(const std::vector<IndexPath>& indexPaths);
  void insertItems(const std::vector<IndexPath>& indexPaths);
  void deleteItems(const std::vector<IndexPath>& indexPaths);
  void moveItem(IndexPath from, IndexPath to);
  void insertSections(const std::vector<std::int64_t>& sections);
  void deleteSections(const std::vector<std::int64_t>& sections);
  void reloadSections(const std::vector<std::int64_t>& sections);
  void performBatchUpdates(const std::function<void()>& updates, std::function<void(bool)> completion = nullptr);

  // ---- Selection. Selecting by program tells the delegate nothing.
  bool allowsSelection() const;
  void setAllowsSelection(bool allows);
  bool allowsMultipleSelection() const;
  void setAllowsMultipleSelection(bool allows);
  virtual std::vector<IndexPath> indexPathsForSelectedItems() const;
  virtual void selectItem(std::optional<IndexPath> indexPath, bool animated, UICollectionViewScrollPosition position);
  virtual void deselectItem(IndexPath indexPath, bool animated);
  /// In the direction that the position does not speak of, the item only comes into view.
  virtual void scrollToItem(IndexPath indexPath, UICollectionViewScrollPosition position, bool animated);

  void layoutSubviews() override;
  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;

 protected:
  void contentOffsetDidChange() override;

 private:
  friend class CollectionContent;
  friend class UICollectionViewLayout;
  void layoutWasInvalidated();
  std::unique_ptr<CollectionContent> content_;
};

}  // namespace platform
