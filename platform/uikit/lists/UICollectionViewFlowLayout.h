#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/foundation/IndexPath.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"

namespace platform {

class UICollectionView;

enum class UICollectionViewScrollDirection { vertical, horizontal };

/// Where the items of a collection stand. Owned by the collection view, which it knows weakly. Main thread.
class UICollectionViewLayout : public Object<UICollectionViewLayout, NSObject> {
 public:
  Ref<UICollectionView> collectionView() const { return collectionView_.lock(); }
  /// Everything is calculated anew before the next layout.
  void invalidateLayout();

  /// Calculates for the sizes and counts that now hold; called before any of the questions below.
  virtual void prepareLayout() = 0;
  virtual CGSize collectionViewContentSize() const = 0;
  virtual std::vector<IndexPath> itemsInRect(CGRect rect) const = 0;
  /// None for an item that is not there.
  virtual std::optional<CGRect> frameForItem(IndexPath path) const = 0;
  /// None for a section without one.
  virtual std::optional<CGRect> frameForHeader(std::int64_t section) const = 0;
  virtual std::optional<CGRect> frameForFooter(std::int64_t section) const = 0;
  virtual std::vector<std::int64_t> sectionsInRect(CGRect rect) const = 0;

 private:
  friend class UICollectionView;
  friend class CollectionContent;
  Weak<UICollectionView> collectionView_;
};

/// Items one after another in lines, like words. The collection's delegate may say more by selector:
/// collectionView:layout:sizeForItemAtIndexPath:, collectionView:layout:insetForSectionAtIndex:,
/// collectionView:layout:minimumLineSpacingForSectionAtIndex:,
/// collectionView:layout:minimumInteritemSpacingForSectionAtIndex:,
/// collectionView:layout:referenceSizeForHeaderInSection:, collectionView:layout:referenceSizeForFooterInSection:.
/// Items of one size cost nothing each; otherwise one rectangle is kept for every item.
class UICollectionViewFlowLayout : public Object<UICollectionViewFlowLayout, UICollectionViewLayout> {
 public:
  CGSize itemSize() const { return itemSize_; }
  void setItemSize(CGSize size);
  double minimumLineSpacing() const { return lineSpacing_; }
  void setMinimumLineSpacing(double spacing);
  double minimumInteritemSpacing() const { return itemSpacing_; }
  void setMinimumInteritemSpacing(double spacing);
  UIEdgeInsets sectionInset() const { return sectionInset_; }
  void setSectionInset(UIEdgeInsets insets);
  UICollectionViewScrollDirection scrollDirection() const { return direction_; }
  void setScrollDirection(UICollectionViewScrollDirection direction);
  CGSize headerReferenceSize() const { return headerSize_; }
  void setHeaderReferenceSize(CGSize size);
  CGSize footerReferenceSize() const { return footerSize_; }
  void setFooterReferenceSize(CGSize size);

  void prepareLayout() override;
  CGSize collectionViewContentSize() const override { return contentSize_; }
  std::vector<IndexPath> itemsInRect(CGRect rect) const override;
  std::optional<CGRect> frameForItem(IndexPath path) const override;
  std::optional<CGRect> frameForHeader(std::int64_t section) const override;
  std::optional<CGRect> frameForFooter(std::int64_t section) const override;
  std::vector<std::int64_t> sectionsInRect(CGRect rect) const override;

 private:
  /// One section, along the scroll direction ("along") and across it.
  struct Section {
    double start = 0;  ///< where the header begins
    double header = 0;
    double footer = 0;
    double end = 0;
    double linesStart = 0;
    double lineSpacing = 0;
    double across = 0;  ///< where lines begin
    std::int64_t count = 0;
    // Items of one size: lines of `perLine` items, `gap` apart.
    bool uniform = true;
    CGSize size;
    std::int64_t perLine = 1;
    double gap = 0;
    // Items of their own sizes.
    struct Line {
      double start;
      double end;
      std::int64_t first;
    };
    std::vector<CGRect> frames;
    std::vector<Line> lines;
  };
  void layOutUniform(Section& section, double room, double gap);
  void layOutFreely(Section& section, double room, const std::vector<CGSize>& sizes, double gap);
  void itemsBetween(const Section& section, std::int64_t index, double start, double end,
                    std::vector<IndexPath>& found) const;
  CGRect placed(double along, double across, double length, double breadth) const;
  double lengthOf(CGSize size) const { return isVertical() ? size.height : size.width; }
  double breadthOf(CGSize size) const { return isVertical() ? size.width : size.height; }
  bool isVertical() const { return direction_ == UICollectionViewScrollDirection::vertical; }

  CGSize itemSize_{50, 50};
  double lineSpacing_ = 10;
  double itemSpacing_ = 10;
  UIEdgeInsets sectionInset_;
  UICollectionViewScrollDirection direction_ = UICollectionViewScrollDirection::vertical;
  CGSize headerSize_;
  CGSize footerSize_;
  std::vector<Section> sections_;
  CGSize contentSize_;
};

}  // namespace platform
