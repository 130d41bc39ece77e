#pragma once

#include <bit>
#include <cstddef>
#include <vector>

namespace platform {

/// Numbers in a row and the sums of their beginnings (a Fenwick tree): changing one, summing a beginning and finding
/// the beginning that a sum fills take logarithmic time.
template <class Number>
class PartialSums {
 public:
  PartialSums() = default;
  explicit PartialSums(std::vector<Number> numbers) : tree_(std::move(numbers)), highestStep_(std::bit_floor(count())) {
    for (std::size_t i = 0; i < tree_.size(); ++i) {
      const std::size_t parent = i | (i + 1);
      if (parent < tree_.size()) tree_[parent] += tree_[i];
    }
  }

  std::size_t count() const { return tree_.size(); }
  void add(std::size_t index, Number change) {
    for (std::size_t i = index; i < tree_.size(); i |= i + 1) tree_[i] += change;
  }
  /// Of the numbers before this one; `index` may be count().
  Number before(std::size_t index) const {
    Number sum{};
    for (std::size_t i = index; i > 0; i &= i - 1) sum += tree_[i - 1];
    return sum;
  }
  /// How many numbers, from the first on, add up to no more than this.
  std::size_t countWithin(Number sum) const {
    std::size_t found = 0;
    for (std::size_t step = highestStep_; step > 0; step /= 2) {
      if (found + step > tree_.size() || tree_[found + step - 1] > sum) continue;
      found += step;
      sum -= tree_[found - 1];
    }
    return found;
  }

 private:
  std::vector<Number> tree_;  // tree_[i] sums the numbers (i & (i + 1)) .. i
  std::size_t highestStep_ = 0;
};

}  // namespace platform
