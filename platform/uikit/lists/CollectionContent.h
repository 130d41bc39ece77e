#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/HeldCell.h"
#include "platform/uikit/lists/ListSelection.h"
#include "platform/uikit/lists/ReusePool.h"
#include "platform/uikit/lists/TableChanges.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/VisibleCells.h"

namespace platform {

/// What a UICollectionView holds and does behind its interface. Shared by UICollectionView*.cpp and
/// CollectionContent.cpp alone.
class CollectionContent {
 public:
  explicit CollectionContent(UICollectionView& owner) : view(owner) {}

  UICollectionView& view;
  Ref<UICollectionViewLayout> layout;
  Weak<NSObject> dataSource;

  // ---- Counts
  std::vector<std::int64_t> counts;
  bool loaded = false;
  std::uint64_t reloads = 0;  ///< a callback in which it grows has made everything remembered before it worthless
  void loadIfNeeded();
  void unload();
  std::vector<std::int64_t> askCounts() const;
  bool contains(IndexPath path) const;

  // ---- Cells
  using Kind = std::pair<std::string, std::string>;  ///< of a supplementary view: its kind and its identifier
  std::map<std::string, UICollectionView::CellMaker> makers;
  std::map<Kind, UICollectionView::SupplementaryMaker> supplementaryMakers;
  ReusePool<std::string, UICollectionViewCell> waiting;
  ReusePool<Kind, UICollectionReusableView> waitingSupplementary;
  VisibleCells<UICollectionViewCell> visible;
  struct Supplementary {
    Ref<UICollectionReusableView> view;
    std::string kind;
  };
  std::map<std::pair<bool, std::int64_t>, Supplementary> supplementary;  ///< by (is a footer, section)
  ListSelection selected;
  static void stamp(UICollectionReusableView& view, const std::string& identifier);

  // ---- Showing
  bool prepared = false;
  bool stale = true;
  bool tiling = false;
  CGSize preparedSize{-1, -1};
  bool isPrepared() const;
  void prepareIfNeeded();
  void tile();
  void tileIfStale();
  CGPoint nearestOffset(CGRect rect) const;
  /// In the direction that the position does not speak of, the item only comes into view.
  CGPoint offsetFor(CGRect rect, UICollectionViewScrollPosition position) const;

  // ---- Changes
  TableChanges pending;
  int updateDepth = 0;
  /// Carries out one kind of change, or adds it to the batch that is under way.
  void change(const std::function<void()>& note);
  void applyPending(std::function<void(bool)> completion);

  // ---- Touches
  HeldCell<UICollectionViewCell> held;
  void hold(CGPoint point);
  void highlightHeld();
  void letGo(bool choose);
  void choose(IndexPath path);
  void deselect(IndexPath path, bool tell);

  template <class... Args>
  void tell(SEL selector, const Args&... args) const {
    sendOptional(view.delegate(), selector, view.shared_from_this(), args...);
  }
  bool ask(SEL selector, IndexPath path) const;

 private:
  const TableChanges* transition_ = nullptr;
  const std::map<IndexPath, CGRect>* framesBefore_ = nullptr;

  Ref<UICollectionViewCell> makeCell(IndexPath path) const;
  void display(IndexPath path, const Ref<UICollectionViewCell>& cell, CGRect frame);
  void recycle(const Ref<UICollectionViewCell>& cell, IndexPath path);
  void dropSupplementary(const std::set<std::pair<bool, std::int64_t>>& wanted);
  bool tileItems(CGRect rect);
  bool tileSupplementary(CGRect rect);
};

}  // namespace platform
