#include "platform/uikit/lists/UITableView.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/lists/TableContent.h"

namespace platform {

UITableView::UITableView() : content_(std::make_unique<TableContent>(*this)) {}
UITableView::~UITableView() = default;

void UITableView::init(CGRect frame, UITableViewStyle style) {
  content_->style = style;
  initWithFrame(frame);
}

void UITableView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setAlwaysBounceVertical(true);
  setBackgroundColor(content_->style == UITableViewStyle::plain ? UIColor::systemBackground()
                                                                : UIColor::systemGroupedBackground());
}

UITableViewStyle UITableView::style() const { return content_->style; }
Ref<NSObject> UITableView::dataSource() const { return content_->dataSource.lock(); }

void UITableView::setDataSource(const Ref<NSObject>& dataSource) {
  content_->dataSource = dataSource;
  content_->unload();
  setNeedsLayout();
}

void UITableView::setDelegate(const Ref<NSObject>& delegate) {
  Super::setDelegate(delegate);
  content_->unload();  // it may tell other heights
  setNeedsLayout();
}

// ---- Cells

void UITableView::registerClass(CellMaker maker, const std::string& reuseIdentifier) {
  content_->makers[reuseIdentifier] = std::move(maker);
}

void UITableView::registerHeaderFooter(HeaderFooterMaker maker, const std::string& reuseIdentifier) {
  content_->headerMakers[reuseIdentifier] = std::move(maker);
}

Ref<UITableViewCell> UITableView::dequeueReusableCell(const std::string& reuseIdentifier) {
  if (const Ref<UITableViewCell> cell = content_->waiting.take(reuseIdentifier)) return cell;
  const auto maker = content_->makers.find(reuseIdentifier);
  return maker == content_->makers.end() ? nullptr : maker->second(reuseIdentifier);
}

Ref<UITableViewCell> UITableView::dequeueReusableCell(const std::string& reuseIdentifier, IndexPath) {
  if (const Ref<UITableViewCell> cell = dequeueReusableCell(reuseIdentifier)) return cell;
  return make<UITableViewCell>(UITableViewCellStyle::standard, reuseIdentifier);
}

Ref<UITableViewHeaderFooterView> UITableView::dequeueReusableHeaderFooterView(const std::string& reuseIdentifier) {
  if (const Ref<UITableViewHeaderFooterView> view = content_->waitingHeaders.take(reuseIdentifier)) return view;
  const auto maker = content_->headerMakers.find(reuseIdentifier);
  return maker == content_->headerMakers.end() ? nullptr : maker->second(reuseIdentifier);
}

// ---- What there is

std::int64_t UITableView::numberOfSections() const {
  content_->loadIfNeeded();
  return content_->geometry.numberOfSections();
}

std::int64_t UITableView::numberOfRowsInSection(std::int64_t section) const {
  content_->loadIfNeeded();
  return content_->geometry.numberOfRows(section);
}

CGRect UITableView::rectForRowAtIndexPath(IndexPath indexPath) const {
  content_->loadIfNeeded();
  if (!content_->geometry.contains(indexPath)) return {};
  return content_->rowRect(content_->geometry, indexPath);
}

CGRect UITableView::rectForSection(std::int64_t section) const {
  content_->loadIfNeeded();
  if (!content_->geometry.containsSection(section)) return {};
  const TableGeometry::Span span = content_->geometry.section(section);
  return {0, span.top, bounds().size.width, span.height};
}

CGRect UITableView::rectForHeaderInSection(std::int64_t section) const {
  content_->loadIfNeeded();
  if (!content_->geometry.containsSection(section)) return {};
  const TableGeometry::Span span = content_->geometry.header(section);
  return {content_->sideMargin(), span.top, content_->rowWidth(), span.height};
}

std::optional<IndexPath> UITableView::indexPathForRowAtPoint(CGPoint point) const {
  content_->loadIfNeeded();
  const std::optional<IndexPath> path = content_->geometry.rowAt(point.y);
  return path && content_->rowRect(content_->geometry, *path).contains(point) ? path : std::nullopt;
}

std::optional<IndexPath> UITableView::indexPathForCell(const Ref<UITableViewCell>& cell) const {
  return content_->visible.pathOf(cell);
}

Ref<UITableViewCell> UITableView::cellForRowAtIndexPath(IndexPath indexPath) const {
  content_->tileIfStale();
  return content_->visible.cellAt(indexPath);
}

std::vector<IndexPath> UITableView::indexPathsForVisibleRows() const {
  content_->tileIfStale();
  std::vector<IndexPath> paths;
  for (const auto& [path, cell] : content_->visible) {
    if (content_->geometry.contains(path) && bounds().intersects(content_->rowRect(content_->geometry, path))) {
      paths.push_back(path);
    }
  }
  return paths;
}

std::vector<Ref<UITableViewCell>> UITableView::visibleCells() const {
  std::vector<Ref<UITableViewCell>> cells;
  for (const IndexPath path : indexPathsForVisibleRows()) cells.push_back(content_->visible[path]);
  return cells;
}

Ref<UIView> UITableView::headerViewForSection(std::int64_t section) const {
  content_->tileIfStale();
  const auto found = content_->headers.find(section);
  return found == content_->headers.end() ? nullptr : found->second;
}

Ref<UIView> UITableView::footerViewForSection(std::int64_t section) const {
  content_->tileIfStale();
  const auto found = content_->footers.find(section);
  return found == content_->footers.end() ? nullptr : found->second;
}

void UITableView::scrollToRow(IndexPath indexPath, UITableViewScrollPosition position, bool animated) {
  content_->loadIfNeeded();
  if (!content_->geometry.contains(indexPath)) return;
  // Rows around the goal may turn out to have other heights than they were thought to have: they are measured first.
  if (window()) layoutIfNeeded();
  double offset = contentOffset().y;
  constexpr int mostTries = 8;
  for (int i = 0; i < mostTries && content_->geometry.contains(indexPath); ++i) {
    const double goal = content_->offsetFor(indexPath, position);
    content_->measureBetween(goal, goal + bounds().size.height);
    if (!content_->loaded || !content_->geometry.contains(indexPath)) return;
    offset = content_->offsetFor(indexPath, position);
    if (offset == goal) break;
  }
  setContentSize({bounds().size.width, content_->geometry.contentHeight()});
  content_->stale = true;
  setNeedsLayout();
  setContentOffset({contentOffset().x, offset}, animated);
  if (isScrollingAnimated() && position != UITableViewScrollPosition::none) {
    content_->goal = TableContent::Goal{indexPath, position};
  }
}

void UITableView::setContentOffset(CGPoint offset, bool animated) {
  content_->goal = std::nullopt;
  Super::setContentOffset(offset, animated);
}

// ---- Settings

bool UITableView::allowsSelection() const { return content_->selected.allows; }
void UITableView::setAllowsSelection(bool allows) { content_->selected.allows = allows; }
bool UITableView::allowsMultipleSelection() const { return content_->selected.allowsMultiple; }
void UITableView::setAllowsMultipleSelection(bool allows) { content_->selected.allowsMultiple = allows; }

namespace {

template <class T>
void change(UITableView& table, TableContent& content, T& setting, T value) {
  if (setting == value) return;
  setting = value;
  content.unload();
  table.setNeedsLayout();
}

}  // namespace

double UITableView::rowHeight() const { return content_->rowHeight; }
void UITableView::setRowHeight(double height) { change(*this, *content_, content_->rowHeight, height); }
double UITableView::estimatedRowHeight() const { return content_->estimatedRowHeight; }
void UITableView::setEstimatedRowHeight(double height) {
  change(*this, *content_, content_->estimatedRowHeight, height);
}
double UITableView::sectionHeaderHeight() const { return content_->sectionHeaderHeight; }
void UITableView::setSectionHeaderHeight(double height) {
  change(*this, *content_, content_->sectionHeaderHeight, height);
}
double UITableView::sectionFooterHeight() const { return content_->sectionFooterHeight; }
void UITableView::setSectionFooterHeight(double height) {
  change(*this, *content_, content_->sectionFooterHeight, height);
}
UITableViewCellSeparatorStyle UITableView::separatorStyle() const { return content_->separatorStyle; }
void UITableView::setSeparatorStyle(UITableViewCellSeparatorStyle style) {
  content_->separatorStyle = style;
  content_->stale = true;
  setNeedsLayout();
}
UIColor UITableView::separatorColor() const { return content_->separatorColor; }
void UITableView::setSeparatorColor(const UIColor& color) {
  content_->separatorColor = color;
  content_->stale = true;
  setNeedsLayout();
}
UIEdgeInsets UITableView::separatorInset() const { return content_->separatorInset; }
void UITableView::setSeparatorInset(UIEdgeInsets insets) {
  content_->separatorInset = insets;
  content_->stale = true;
  setNeedsLayout();
}

namespace {

void exchange(UITableView& table, TableContent& content, Ref<UIView>& place, const Ref<UIView>& view) {
  if (place && place != view) place->removeFromSuperview();
  place = view;
  if (view) table.insertSubview(view, 0);
  content.stale = true;
  table.setNeedsLayout();
}

}  // namespace

Ref<UIView> UITableView::tableHeaderView() const { return content_->tableHeader; }
void UITableView::setTableHeaderView(const Ref<UIView>& view) {
  exchange(*this, *content_, content_->tableHeader, view);
}
Ref<UIView> UITableView::tableFooterView() const { return content_->tableFooter; }
void UITableView::setTableFooterView(const Ref<UIView>& view) {
  exchange(*this, *content_, content_->tableFooter, view);
}
Ref<UIView> UITableView::backgroundView() const { return content_->background; }
void UITableView::setBackgroundView(const Ref<UIView>& view) { exchange(*this, *content_, content_->background, view); }

// ---- Layout

void UITableView::layoutSubviews() {
  content_->tile();
  Super::layoutSubviews();
}

void UITableView::contentOffsetDidChange() {
  Super::contentOffsetDidChange();
  content_->stale = true;
}

}  // namespace platform
