#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/uikit/lists/PartialSums.h"

namespace platform {

/// The heights of many rows and the sums of their beginnings: reading a row's place, finding the row at a place,
/// changing one height, and a row more or less take logarithmic time. Rows stand in blocks that copies share until one
/// of them changes: a copy is cheap, and so are many rows of one height. Indices out of range are the caller's error.
/// Main thread. Units: points.
class RowHeights {
 public:
  RowHeights() = default;
  RowHeights(std::size_t count, double height);
  explicit RowHeights(const std::vector<double>& heights);

  std::size_t count() const { return count_; }
  double height(std::size_t row) const;
  void setHeight(std::size_t row, double height);
  /// The new row stands before the one that was there; `row` may be count().
  void insert(std::size_t row, double height);
  void erase(std::size_t row);

  /// The sum of the heights of the rows before this one; `row` may be count().
  double offset(std::size_t row) const;
  double total() const { return offset(count_); }
  struct Span {
    double top;
    double height;
  };
  /// Where a row stands, found once for both.
  Span span(std::size_t row) const;
  /// The row that covers the offset: the first for a negative one, count() for one at or beyond the end. Rows of no
  /// height cover nothing.
  std::size_t rowAt(double offset) const;

 private:
  struct Block {
    std::vector<double> heights;
    std::vector<double> ends;  ///< the sums up to and with each row
    void sumFrom(std::size_t row);
  };
  struct Place {
    std::size_t block;
    std::size_t row;  ///< in the block
  };
  /// The block that was asked for last and where it stands: who asks for one row asks for its neighbours.
  struct Near {
    std::size_t block = 0;
    std::size_t first = 0;
    std::size_t count = 0;  ///< none while nothing is known
    double top = 0;
  };
  static std::shared_ptr<Block> makeBlock(std::vector<double> heights);
  Place placeOf(std::size_t row) const;
  /// As placeOf for a row that is there, whose block `near_` tells of then.
  std::size_t findNear(std::size_t row) const;
  /// A block that no copy shares.
  Block& own(std::size_t block);
  void sumBlocks();

  std::vector<std::shared_ptr<Block>> blocks_;
  std::size_t count_ = 0;
  PartialSums<std::size_t> rows_;  // of whole blocks
  PartialSums<double> heights_;
  mutable Near near_;
};

}  // namespace platform
