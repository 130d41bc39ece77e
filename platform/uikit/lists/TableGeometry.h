#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "platform/foundation/IndexPath.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/lists/RowHeights.h"

namespace platform {

/// One section of a table: its header, its rows, its footer, from top to bottom. Points.
struct TableSection {
  double headerHeight = 0;
  double footerHeight = 0;
  RowHeights rows;
  std::vector<char> measured;  ///< by row: false while the height is an estimate

  double height() const { return headerHeight + rows.total() + footerHeight; }
};

/// Where everything in a table stands: a pure calculation over heights, in the table's content coordinates. Only
/// heights and tops; what belongs to the left and right is the table's. Finding and changing take logarithmic time.
/// Paths must be valid (see `contains`). Main thread.
class TableGeometry {
 public:
  /// What stands above the first section and below the last.
  double leading = 0;
  double trailing = 0;

  void setSections(std::vector<TableSection> sections);
  const std::vector<TableSection>& sections() const { return sections_; }

  std::int64_t numberOfSections() const { return static_cast<std::int64_t>(sections_.size()); }
  std::int64_t numberOfRows(std::int64_t section) const;
  bool contains(IndexPath path) const;
  bool containsSection(std::int64_t section) const { return section >= 0 && section < numberOfSections(); }

  double rowHeight(IndexPath path) const;
  bool isMeasured(IndexPath path) const;
  /// True when the height changed.
  bool setMeasuredHeight(IndexPath path, double height);
  /// Every height is an estimate again.
  void forgetMeasures();

  struct Span {
    double top = 0;
    double height = 0;
    double bottom() const { return top + height; }
  };
  Span row(IndexPath path) const;
  Span section(std::int64_t section) const;
  Span header(std::int64_t section) const;
  Span footer(std::int64_t section) const;
  double contentHeight() const;

  /// The section that covers the place, the nearest one for places outside; none without sections.
  std::optional<std::int64_t> sectionAt(double y) const;
  /// The row that covers the place, if one does.
  std::optional<IndexPath> rowAt(double y) const;
  /// The first row whose bottom lies below the place.
  std::optional<IndexPath> firstRowBelow(double y) const;
  /// The row after, in the next section that has rows if need be.
  std::optional<IndexPath> rowAfter(IndexPath path) const;

 private:
  TableSection& at(std::int64_t section) { return sections_[static_cast<std::size_t>(section)]; }
  const TableSection& at(std::int64_t section) const { return sections_[static_cast<std::size_t>(section)]; }

  std::vector<TableSection> sections_;
  RowHeights heights_;  // of whole sections
};

}  // namespace platform
