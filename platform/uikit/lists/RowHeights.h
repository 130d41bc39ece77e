#pragma once

#include <cstddef>
#include <vector>

namespace platform {

/// The heights of many rows and the sums of their beginnings (a Fenwick tree): reading a row's place, finding the row
/// at a place and changing one height take logarithmic time; changing the number of rows takes linear time. Indices out
/// of range are the caller's error. Main thread. Units: points.
class RowHeights {
 public:
  RowHeights() = default;
  RowHeights(std::size_t count, double height) : RowHeights(std::vector<double>(count, height)) {}
  explicit RowHeights(std::vector<double> heights);

  std::size_t count() const { return heights_.size(); }
  double height(std::size_t row) const { return heights_[row]; }
  void setHeight(std::size_t row, double height);
  const std::vector<double>& heights() const { return heights_; }

  /// The sum of the heights of the rows before this one; `row` may be count().
  double offset(std::size_t row) const;
  double total() const { return offset(count()); }
  /// The row that covers the offset: the first for a negative one, count() for one at or beyond the end. Rows of no
  /// height cover nothing.
  std::size_t rowAt(double offset) const;

 private:
  std::vector<double> heights_;
  std::vector<double> tree_;  // tree_[i] sums the heights (i & (i+1)) .. i
  std::size_t highestStep_ = 0;
};

}  // namespace platform
