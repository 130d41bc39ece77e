#include <algorithm>
#include <cmath>

#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/TableContent.h"

// Asking for counts and heights, and measuring rows.

namespace platform {

namespace {

constexpr double standardRowHeight = 44;
constexpr double groupedGap = 18;  // above and below the rows of a group without title
/// More rows than this are not shown: a count beyond it is a mistake of the data source.
constexpr std::int64_t mostRows = 20'000'000;

double upToPixel(double value) {
  const double scale = UIScreen::main().scale();
  return std::ceil(value * scale - 1e-6) / scale;
}

SEL heightForRow() {
  static const SEL selector = sel("tableView:heightForRowAtIndexPath:");
  return selector;
}
SEL estimateForRow() {
  static const SEL selector = sel("tableView:estimatedHeightForRowAtIndexPath:");
  return selector;
}

double usable(double height) { return std::isfinite(height) ? std::clamp(height, 0.0, 1e6) : 0; }

}  // namespace

std::int64_t TableContent::askSections() const {
  static const SEL numberOfSections = sel("numberOfSectionsInTableView:");
  if (dataSource.expired()) return 0;
  return std::clamp<std::int64_t>(askSource<std::int64_t>(numberOfSections).value_or(1), 0, mostRows);
}

std::int64_t TableContent::askRows(std::int64_t section) const {
  static const SEL numberOfRows = sel("tableView:numberOfRowsInSection:");
  return std::clamp<std::int64_t>(askSource<std::int64_t>(numberOfRows, section).value_or(0), 0, mostRows);
}

std::vector<std::int64_t> TableContent::askCounts() const {
  std::vector<std::int64_t> counts(static_cast<std::size_t>(askSections()));
  std::int64_t left = mostRows;
  for (std::size_t section = 0; section < counts.size(); ++section) {
    counts[section] = std::min(askRows(static_cast<std::int64_t>(section)), left);
    left -= counts[section];
  }
  return counts;
}

std::vector<std::int64_t> TableContent::counts() const {
  std::vector<std::int64_t> counts;
  counts.reserve(geometry.sections().size());
  for (const TableSection& section : geometry.sections()) {
    counts.push_back(static_cast<std::int64_t>(section.rows.count()));
  }
  return counts;
}

void TableContent::loadIfNeeded() {
  if (loaded) return;
  loaded = true;
  loadedWidth = rowWidth();
  const std::uint64_t before = reloads;
  const std::vector<std::int64_t> counts = askCounts();
  std::vector<TableSection> sections;
  sections.reserve(counts.size());
  for (std::size_t section = 0; section < counts.size(); ++section) {
    sections.push_back(makeSection(static_cast<std::int64_t>(section), counts[section]));
  }
  if (reloads == before) geometry.setSections(std::move(sections));  // else the host has reloaded while it answered
}

TableSection TableContent::makeSection(std::int64_t section, std::int64_t rows) {
  TableSection made;
  const auto count = static_cast<std::size_t>(rows);
  if (const std::optional<Height> every = heightOfEveryRow()) {
    made.rows = RowHeights(count, every->height);
    made.measured.assign(count, every->measured);
  } else {
    std::vector<double> heights;
    heights.reserve(count);
    made.measured.reserve(count);
    for (std::int64_t row = 0; row < rows; ++row) {
      const Height height = initialHeight(IndexPath(row, section));
      heights.push_back(height.height);
      made.measured.push_back(height.measured);
    }
    made.rows = RowHeights(heights);
  }
  made.headerHeight = headerHeight(section, true);
  made.footerHeight = headerHeight(section, false);
  return made;
}

TableContent::Answers TableContent::delegateAnswers() {
  const Ref<NSObject> delegate = table.delegate();
  if (!delegate) return {false, false};
  if (!answers) {
    answers = {delegate->respondsToSelector(heightForRow()), delegate->respondsToSelector(estimateForRow())};
  }
  return *answers;
}

std::optional<TableContent::Height> TableContent::heightOfEveryRow() {
  const Answers told = delegateAnswers();
  if (!told.height && rowHeight >= 0) return Height{rowHeight, true};
  if (told.estimate || (told.height && estimatedRowHeight <= 0)) return std::nullopt;
  return Height{estimatedRowHeight > 0 ? estimatedRowHeight : standardRowHeight, false};
}

TableContent::Height TableContent::initialHeight(IndexPath path) {
  if (const std::optional<Height> every = heightOfEveryRow()) return *every;
  const Answers told = delegateAnswers();
  const Ref<NSObject> delegate = table.delegate();
  if (told.estimate) {
    const double estimate = delegate->perform<double>(estimateForRow(), shared(), path);
    if (estimate > 0) return {usable(estimate), false};
  }
  if (told.height && estimatedRowHeight <= 0) {
    const double height = delegate->perform<double>(heightForRow(), shared(), path);
    if (height >= 0) return {usable(height), true};
  }
  return {estimatedRowHeight > 0 ? estimatedRowHeight : standardRowHeight, false};
}

double TableContent::measure(IndexPath path, UITableViewCell& cell) {
  if (const std::optional<double> told = ask<double>(heightForRow(), path); told && *told >= 0) return usable(*told);
  if (rowHeight >= 0) return rowHeight;
  const double width = rowWidth();
  const Ref<UIView>& content = cell.contentView();
  double height = 0;
  UIView::performWithoutAnimation([&] {
    if (content->constraints().empty()) {
      height = cell.sizeThatFits({width, 0}).height;
    } else {
      const double room = std::max(0.0, width - cell.accessoryWidth());
      height = content->systemLayoutSizeFitting({room, 0}, UILayoutPriorityRequired, UILayoutPriorityFittingSizeLevel)
                   .height;
    }
  });
  return height > 0 ? usable(upToPixel(height)) : standardRowHeight;
}

void TableContent::measureRow(IndexPath path) {
  if (geometry.isMeasured(path)) return;
  const std::uint64_t before = reloads;
  Ref<UITableViewCell> cell = visible.cellAt(path);
  if (!cell) {
    cell = makeCell(path);
    if (reloads != before) return;  // the data source reloaded the table meanwhile
    visible[path] = cell;
    display(path, cell);
    if (reloads != before) return;
  }
  const double height = measure(path, *cell);
  if (reloads == before) geometry.setMeasuredHeight(path, height);
}

void TableContent::measureBetween(double top, double bottom) {
  const std::uint64_t before = reloads;
  std::optional<IndexPath> path = geometry.firstRowBelow(top);
  while (path && geometry.row(*path).top < bottom) {
    measureRow(*path);
    if (reloads != before) return;
    path = geometry.rowAfter(*path);
  }
}

double TableContent::headerHeight(std::int64_t section, bool isHeader) {
  static const SEL heightForHeader = sel("tableView:heightForHeaderInSection:");
  static const SEL heightForFooter = sel("tableView:heightForFooterInSection:");
  static const SEL viewForHeader = sel("tableView:viewForHeaderInSection:");
  static const SEL viewForFooter = sel("tableView:viewForFooterInSection:");
  const auto told = ask<double>(isHeader ? heightForHeader : heightForFooter, section);
  if (told && *told >= 0) return usable(*told);
  const double set = isHeader ? sectionHeaderHeight : sectionFooterHeight;
  if (set >= 0) return set;
  if (const auto view = ask<Ref<UIView>>(isHeader ? viewForHeader : viewForFooter, section); view && *view) {
    const double height = (*view)->sizeThatFits({rowWidth(), 0}).height;
    const double fitting = (*view)->systemLayoutSizeFitting({rowWidth(), 0}, UILayoutPriorityRequired).height;
    return upToPixel(std::max({height, fitting, (*view)->bounds().size.height}));
  }
  const bool plain = style == UITableViewStyle::plain;
  const std::optional<std::string> text = title(section, isHeader);
  if (!text || text->empty()) return plain ? 0 : groupedGap;
  using Header = UITableViewHeaderFooterView;
  const auto role = !isHeader ? Header::Role::footer : plain ? Header::Role::plainHeader : Header::Role::groupedHeader;
  return Header::heightOf(*text, role, 16, rowWidth());
}

std::optional<std::string> TableContent::title(std::int64_t section, bool isHeader) const {
  static const SEL titleForHeader = sel("tableView:titleForHeaderInSection:");
  static const SEL titleForFooter = sel("tableView:titleForFooterInSection:");
  return askSource<std::string>(isHeader ? titleForHeader : titleForFooter, section);
}

// ---- Where things stand

double TableContent::rowWidth() const { return std::max(0.0, table.bounds().size.width - 2 * sideMargin()); }

CGRect TableContent::rowRect(const TableGeometry& from, IndexPath path) const {
  const TableGeometry::Span span = from.row(path);
  return {sideMargin(), span.top, rowWidth(), span.height};
}

double TableContent::visibleTop() const { return table.bounds().minY() + table.adjustedContentInset().top; }

CGRect TableContent::headerRect(std::int64_t section) const {
  TableGeometry::Span span = geometry.header(section);
  if (style == UITableViewStyle::plain) {
    // It stays at the top while its section passes, until the next one pushes it away.
    const double last = geometry.section(section).bottom() - span.height;
    span.top = std::clamp(visibleTop(), span.top, std::max(span.top, last));
  }
  return {sideMargin(), span.top, rowWidth(), span.height};
}

CGRect TableContent::footerRect(std::int64_t section) const {
  const TableGeometry::Span span = geometry.footer(section);
  return {sideMargin(), span.top, rowWidth(), span.height};
}

double TableContent::offsetFor(IndexPath path, UITableViewScrollPosition position) const {
  const UIEdgeInsets insets = table.adjustedContentInset();
  const double height = table.bounds().size.height;
  const TableGeometry::Span row = geometry.row(path);
  const double header = style == UITableViewStyle::plain ? geometry.header(path.section()).height : 0;
  const double top = row.top - insets.top - header;
  const double bottom = row.bottom() - height + insets.bottom;
  double offset = table.contentOffset().y;
  switch (position) {
    case UITableViewScrollPosition::none:
      if (offset > top) {
        offset = top;
      } else if (offset < bottom) {
        offset = std::min(bottom, top);
      }
      break;
    case UITableViewScrollPosition::top:
      offset = top;
      break;
    case UITableViewScrollPosition::middle:
      offset = (top + bottom) / 2;
      break;
    case UITableViewScrollPosition::bottom:
      offset = bottom;
      break;
  }
  const double least = -insets.top;
  return std::clamp(offset, least, std::max(least, geometry.contentHeight() + insets.bottom - height));
}

}  // namespace platform
