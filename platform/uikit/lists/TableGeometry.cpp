#include "platform/uikit/lists/TableGeometry.h"

#include <utility>

namespace platform {

void TableGeometry::setSections(std::vector<TableSection> sections) {
  sections_ = std::move(sections);
  std::vector<double> heights;
  heights.reserve(sections_.size());
  for (const TableSection& section : sections_) heights.push_back(section.height());
  heights_ = RowHeights(std::move(heights));
}

std::int64_t TableGeometry::numberOfRows(std::int64_t section) const {
  return containsSection(section) ? static_cast<std::int64_t>(at(section).rows.count()) : 0;
}

bool TableGeometry::contains(IndexPath path) const {
  return path.row() >= 0 && path.row() < numberOfRows(path.section());
}

double TableGeometry::rowHeight(IndexPath path) const {
  return at(path.section()).rows.height(static_cast<std::size_t>(path.row()));
}

bool TableGeometry::isMeasured(IndexPath path) const {
  return at(path.section()).measured[static_cast<std::size_t>(path.row())];
}

bool TableGeometry::setMeasuredHeight(IndexPath path, double height) {
  TableSection& section = at(path.section());
  const auto row = static_cast<std::size_t>(path.row());
  section.measured[row] = true;
  if (section.rows.height(row) == height) return false;
  section.rows.setHeight(row, height);
  heights_.setHeight(static_cast<std::size_t>(path.section()), section.height());
  return true;
}

void TableGeometry::forgetMeasures() {
  for (TableSection& section : sections_) section.measured.assign(section.rows.count(), false);
}

TableGeometry::Span TableGeometry::section(std::int64_t section) const {
  return {leading + heights_.offset(static_cast<std::size_t>(section)), at(section).height()};
}

TableGeometry::Span TableGeometry::header(std::int64_t section) const {
  return {this->section(section).top, at(section).headerHeight};
}

TableGeometry::Span TableGeometry::footer(std::int64_t section) const {
  const double height = at(section).footerHeight;
  return {this->section(section).bottom() - height, height};
}

TableGeometry::Span TableGeometry::row(IndexPath path) const {
  const TableSection& section = at(path.section());
  const auto row = static_cast<std::size_t>(path.row());
  const double top = leading + heights_.offset(static_cast<std::size_t>(path.section()));
  const RowHeights::Span span = section.rows.span(row);
  return {top + section.headerHeight + span.top, span.height};
}

double TableGeometry::contentHeight() const { return leading + heights_.total() + trailing; }

std::optional<std::int64_t> TableGeometry::sectionAt(double y) const {
  if (sections_.empty()) return std::nullopt;
  const std::size_t found = heights_.rowAt(y - leading);
  return static_cast<std::int64_t>(std::min(found, sections_.size() - 1));
}

std::optional<IndexPath> TableGeometry::rowAt(double y) const {
  const std::optional<IndexPath> found = firstRowBelow(y);
  return found && row(*found).top <= y ? found : std::nullopt;
}

std::optional<IndexPath> TableGeometry::firstRowBelow(double y) const {
  const std::optional<std::int64_t> start = sectionAt(y);
  if (!start) return std::nullopt;
  const TableSection& section = at(*start);
  const double inRows = y - this->section(*start).top - section.headerHeight;
  const auto row = static_cast<std::int64_t>(section.rows.rowAt(inRows));
  if (row < numberOfRows(*start)) return IndexPath(row, *start);
  return rowAfter(IndexPath(row, *start));
}

std::optional<IndexPath> TableGeometry::rowAfter(IndexPath path) const {
  if (path.row() + 1 < numberOfRows(path.section())) return IndexPath(path.row() + 1, path.section());
  for (std::int64_t section = path.section() + 1; section < numberOfSections(); ++section) {
    if (numberOfRows(section) > 0) return IndexPath(0, section);
  }
  return std::nullopt;
}

}  // namespace platform
