#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/lists/HeldCell.h"
#include "platform/uikit/lists/ListSelection.h"
#include "platform/uikit/lists/ReusePool.h"
#include "platform/uikit/lists/TableChanges.h"
#include "platform/uikit/lists/TableGeometry.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/lists/VisibleCells.h"

namespace platform {

/// What a UITableView holds and does behind its interface: heights, visible cells, reuse, changes under way, touches.
/// Shared by UITableView*.cpp and TableContent*.cpp alone.
class TableContent {
 public:
  explicit TableContent(UITableView& owner) : table(owner) {}

  UITableView& table;
  UITableViewStyle style = UITableViewStyle::plain;
  Weak<NSObject> dataSource;

  // ---- Settings
  double rowHeight = UITableViewAutomaticDimension;
  double estimatedRowHeight = UITableViewAutomaticDimension;
  double sectionHeaderHeight = UITableViewAutomaticDimension;
  double sectionFooterHeight = UITableViewAutomaticDimension;
  UITableViewCellSeparatorStyle separatorStyle = UITableViewCellSeparatorStyle::singleLine;
  UIColor separatorColor = UIColor::separator();
  UIEdgeInsets separatorInset{0, 16, 0, 0};
  Ref<UIView> tableHeader;
  Ref<UIView> tableFooter;
  Ref<UIView> background;

  // ---- Cells
  std::map<std::string, UITableView::CellMaker> makers;
  std::map<std::string, UITableView::HeaderFooterMaker> headerMakers;
  ReusePool<std::string, UITableViewCell> waiting;
  ReusePool<std::string, UITableViewHeaderFooterView> waitingHeaders;
  VisibleCells<UITableViewCell> visible;
  std::map<std::int64_t, Ref<UIView>> headers;
  std::map<std::int64_t, Ref<UIView>> footers;
  ListSelection selected;

  // ---- Heights
  TableGeometry geometry;
  bool loaded = false;
  double loadedWidth = -1;
  std::uint64_t reloads = 0;  ///< a callback in which it grows has made everything remembered before it worthless

  void loadIfNeeded();
  void unload();
  std::int64_t askSections() const;
  std::int64_t askRows(std::int64_t section) const;
  std::vector<std::int64_t> askCounts() const;
  std::vector<std::int64_t> counts() const;
  TableSection makeSection(std::int64_t section, std::int64_t rows);
  struct Height {
    double height;
    bool measured;
  };
  Height initialHeight(IndexPath path);
  /// What every row begins with where nobody tells a row's own height.
  std::optional<Height> heightOfEveryRow();
  /// Which of its optional questions about heights the delegate answers: asked once, not for every row.
  struct Answers {
    bool height;
    bool estimate;
  };
  std::optional<Answers> answers;
  Answers delegateAnswers();
  double headerHeight(std::int64_t section, bool isHeader);
  double measure(IndexPath path, UITableViewCell& cell);
  void measureRow(IndexPath path);
  /// Measures every row that stands, or comes to stand, between two heights.
  void measureBetween(double top, double bottom);

  // ---- Where things stand
  double sideMargin() const { return style == UITableViewStyle::insetGrouped ? 16 : 0; }
  double rowWidth() const;
  CGRect rowRect(const TableGeometry& from, IndexPath path) const;
  CGRect headerRect(std::int64_t section) const;
  CGRect footerRect(std::int64_t section) const;
  double visibleTop() const;
  double offsetFor(IndexPath path, UITableViewScrollPosition position) const;

  // ---- Showing
  bool stale = true;  ///< what is visible may not be what should be
  bool tiling = false;
  void tile();
  void tileIfStale();
  void layOutSurroundings();

  /// Where an animated scroll is to end. Rows on the way turn out to have other heights than they were thought to have:
  /// the offset to arrive at follows.
  struct Goal {
    IndexPath path;
    UITableViewScrollPosition position;
  };
  std::optional<Goal> goal;
  void followGoal();

  // ---- Changes
  TableChanges pending;
  UITableViewRowAnimation pendingAnimation = UITableViewRowAnimation::automatic;
  int updateDepth = 0;
  void applyPending(std::function<void(bool)> completion);

  // ---- Touches
  HeldCell<UITableViewCell> held;
  void hold(const UIView& touched, CGPoint point);
  void highlightHeld();
  void letGo(bool choose);
  void choose(IndexPath path);
  void deselect(IndexPath path, bool animated, bool tell);
  bool isSelectable(IndexPath path) const;

  template <class... Args>
  void tell(SEL selector, const Args&... args) const {
    sendOptional(table.delegate(), selector, shared(), args...);
  }
  template <class R, class... Args>
  std::optional<R> ask(SEL selector, const Args&... args) const {
    return askOptional<R>(table.delegate(), selector, shared(), args...);
  }
  template <class R, class... Args>
  std::optional<R> askSource(SEL selector, const Args&... args) const {
    return askOptional<R>(dataSource.lock(), selector, shared(), args...);
  }
  Ref<NSObject> shared() const { return table.shared_from_this(); }

 private:
  /// A change on its way from one look to the next.
  struct Transition {
    const TableChanges* changes;
    const TableGeometry* before;
    UITableViewRowAnimation animation;
    std::set<IndexPath> replaced;  ///< new paths whose cells take the place of others that fade
  };
  Transition* transition_ = nullptr;

  bool countsStillHold(std::set<std::int64_t>& checked, std::int64_t section) const;
  Ref<UITableViewCell> makeCell(IndexPath path);
  void display(IndexPath path, const Ref<UITableViewCell>& cell);
  void layOutBeforeItMoves(IndexPath path, UITableViewCell& cell);
  void recycle(const Ref<UITableViewCell>& cell, IndexPath path);
  void place(IndexPath path, UITableViewCell& cell);
  bool tileRows();
  void tileHeaders();
  void showHeader(std::map<std::int64_t, Ref<UIView>>& shown, std::int64_t section, CGRect rect, bool isHeader);
  void dropHeaders(std::map<std::int64_t, Ref<UIView>>& shown, const std::set<std::int64_t>& wanted);
  std::optional<std::string> title(std::int64_t section, bool isHeader) const;
  Ref<UIView> makeHeader(std::int64_t section, bool isHeader);

  std::vector<TableSection> changedSections(const TableChanges& changes, const std::vector<std::int64_t>& counts);
  VisibleCells<UITableViewCell>::Leaving carryOver(const TableChanges& changes);
};

}  // namespace platform
