#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/IndexPath.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/lists/UITableViewCell.h"
#include "platform/uikit/lists/UITableViewHeaderFooterView.h"

namespace platform {

class TableContent;

enum class UITableViewStyle { plain, grouped, insetGrouped };
enum class UITableViewRowAnimation { fade, right, left, top, bottom, none, middle, automatic };
enum class UITableViewScrollPosition { none, top, middle, bottom };
enum class UITableViewCellSeparatorStyle { none, singleLine };

/// A row height that the cell's own constraints (or its sizeThatFits) decide.
inline constexpr double UITableViewAutomaticDimension = -1;

/// A list of rows in sections. Only the visible rows have cells; rows that left the screen give theirs to others of the
/// same identifier. Data source and delegate are held weakly and asked by selector.
///
/// Data source: numberOfSectionsInTableView:, tableView:numberOfRowsInSection:, tableView:cellForRowAtIndexPath:,
/// tableView:titleForHeaderInSection:, tableView:titleForFooterInSection:.
/// Delegate (one with the scroll view's): tableView:heightForRowAtIndexPath:,
/// tableView:estimatedHeightForRowAtIndexPath:, tableView:heightForHeaderInSection:,
/// tableView:heightForFooterInSection:, tableView:viewForHeaderInSection:, tableView:viewForFooterInSection:,
/// tableView:shouldHighlightRowAtIndexPath:, tableView:didHighlightRowAtIndexPath:,
/// tableView:didUnhighlightRowAtIndexPath:, tableView:willSelectRowAtIndexPath: (gives a std::optional<IndexPath>, none
/// for no), tableView:didSelectRowAtIndexPath:, tableView:didDeselectRowAtIndexPath:,
/// tableView:accessoryButtonTappedForRowWithIndexPath:, tableView:willDisplayCell:forRowAtIndexPath:,
/// tableView:didEndDisplayingCell:forRowAtIndexPath:.
///
/// Index paths out of range are never an error: they find, select and scroll to nothing. When the data source's counts
/// do not fit the announced changes, the table reloads. Main thread.
class UITableView : public Object<UITableView, UIScrollView> {
 public:
  UITableView();
  ~UITableView() override;
  using UIView::init;
  void init(UITableViewStyle style) { init(CGRect{}, style); }
  void init(CGRect frame, UITableViewStyle style);
  void initWithFrame(CGRect frame) override;

  UITableViewStyle style() const;
  virtual Ref<NSObject> dataSource() const;
  void setDataSource(const Ref<NSObject>& dataSource);
  void setDelegate(const Ref<NSObject>& delegate) override;

  // ---- Cells
  using CellMaker = std::function<Ref<UITableViewCell>(const std::string& reuseIdentifier)>;
  /// What makes a cell of that identifier when none waits for reuse.
  void registerClass(CellMaker maker, const std::string& reuseIdentifier);
  template <class Cell>
  void registerClass(const std::string& reuseIdentifier) {
    registerClass([](const std::string& id) { return make<Cell>(UITableViewCellStyle::standard, id); },
                  reuseIdentifier);
  }
  using HeaderFooterMaker = std::function<Ref<UITableViewHeaderFooterView>(const std::string& reuseIdentifier)>;
  void registerHeaderFooter(HeaderFooterMaker maker, const std::string& reuseIdentifier);
  /// A waiting cell, a new one of a registered class, or none.
  Ref<UITableViewCell> dequeueReusableCell(const std::string& reuseIdentifier);
  /// The same; an identifier that nothing was registered for gives a plain cell.
  Ref<UITableViewCell> dequeueReusableCell(const std::string& reuseIdentifier, IndexPath indexPath);
  Ref<UITableViewHeaderFooterView> dequeueReusableHeaderFooterView(const std::string& reuseIdentifier);

  // ---- What there is
  virtual std::int64_t numberOfSections() const;
  virtual std::int64_t numberOfRowsInSection(std::int64_t section) const;
  virtual CGRect rectForRowAtIndexPath(IndexPath indexPath) const;
  CGRect rectForSection(std::int64_t section) const;
  CGRect rectForHeaderInSection(std::int64_t section) const;
  virtual std::optional<IndexPath> indexPathForRowAtPoint(CGPoint point) const;
  virtual std::optional<IndexPath> indexPathForCell(const Ref<UITableViewCell>& cell) const;
  /// None unless the row is visible.
  virtual Ref<UITableViewCell> cellForRowAtIndexPath(IndexPath indexPath) const;
  virtual std::vector<Ref<UITableViewCell>> visibleCells() const;
  virtual std::vector<IndexPath> indexPathsForVisibleRows() const;
  Ref<UIView> headerViewForSection(std::int64_t section) const;
  Ref<UIView> footerViewForSection(std::int64_t section) const;

  // ---- Changes. Deleted and reloaded paths count as before the changes, inserted ones as after them.
  void reloadData();
  void reloadRows(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation);
  void reloadSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation);
  void insertRows(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation);
  void deleteRows(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation);
  void insertSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation);
  void deleteSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation);
  void moveRow(IndexPath from, IndexPath to);
  /// Several changes as one; pairs nest.
  void beginUpdates();
  void endUpdates();
  void performBatchUpdates(const std::function<void()>& updates, std::function<void(bool)> completion = nullptr);

  // ---- Selection. Selecting by program tells the delegate nothing.
  bool allowsSelection() const;
  void setAllowsSelection(bool allows);
  bool allowsMultipleSelection() const;
  void setAllowsMultipleSelection(bool allows);
  virtual std::optional<IndexPath> indexPathForSelectedRow() const;
  virtual std::vector<IndexPath> indexPathsForSelectedRows() const;
  virtual void selectRow(std::optional<IndexPath> indexPath, bool animated, UITableViewScrollPosition position);
  virtual void deselectRow(IndexPath indexPath, bool animated);
  virtual void scrollToRow(IndexPath indexPath, UITableViewScrollPosition position, bool animated);

  // ---- Look
  double rowHeight() const;
  void setRowHeight(double height);
  double estimatedRowHeight() const;
  void setEstimatedRowHeight(double height);
  double sectionHeaderHeight() const;
  void setSectionHeaderHeight(double height);
  double sectionFooterHeight() const;
  void setSectionFooterHeight(double height);
  UITableViewCellSeparatorStyle separatorStyle() const;
  void setSeparatorStyle(UITableViewCellSeparatorStyle style);
  UIColor separatorColor() const;
  void setSeparatorColor(const UIColor& color);
  UIEdgeInsets separatorInset() const;
  void setSeparatorInset(UIEdgeInsets insets);
  Ref<UIView> tableHeaderView() const;
  void setTableHeaderView(const Ref<UIView>& view);
  Ref<UIView> tableFooterView() const;
  void setTableFooterView(const Ref<UIView>& view);
  Ref<UIView> backgroundView() const;
  void setBackgroundView(const Ref<UIView>& view);

  using UIScrollView::setContentOffset;
  void setContentOffset(CGPoint offset, bool animated) override;
  void layoutSubviews() override;
  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;

 protected:
  void contentOffsetDidChange() override;

 private:
  friend class TableContent;
  std::unique_ptr<TableContent> content_;
};

}  // namespace platform
