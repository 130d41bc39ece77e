#include "platform/uikit/lists/RowHeights.h"

#include <bit>
#include <utility>

namespace platform {

RowHeights::RowHeights(std::vector<double> heights) : heights_(std::move(heights)), tree_(heights_) {
  for (std::size_t i = 0; i < tree_.size(); ++i) {
    const std::size_t parent = i | (i + 1);
    if (parent < tree_.size()) tree_[parent] += tree_[i];
  }
  highestStep_ = std::bit_floor(tree_.size());
}

void RowHeights::setHeight(std::size_t row, double height) {
  const double change = height - heights_[row];
  if (change == 0) return;
  heights_[row] = height;
  for (std::size_t i = row; i < tree_.size(); i |= i + 1) tree_[i] += change;
}

double RowHeights::offset(std::size_t row) const {
  double sum = 0;
  for (std::size_t i = row; i > 0; i &= i - 1) sum += tree_[i - 1];
  return sum;
}

std::size_t RowHeights::rowAt(double offset) const {
  if (offset < 0) offset = 0;
  std::size_t row = 0;
  for (std::size_t step = highestStep_; step > 0; step /= 2) {
    if (row + step <= tree_.size() && tree_[row + step - 1] <= offset) {
      row += step;
      offset -= tree_[row - 1];
    }
  }
  return row;
}

}  // namespace platform
