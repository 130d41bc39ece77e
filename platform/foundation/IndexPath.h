#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace platform {

/// The place of a row in a table or of an item in a collection. Ordered by section, then item.
class IndexPath {
 public:
  constexpr IndexPath() = default;
  /// As one says it: row (or item) 3 in section 0 is `IndexPath(3, 0)`.
  constexpr IndexPath(std::int64_t rowOrItem, std::int64_t section) : section_(section), item_(rowOrItem) {}

  constexpr std::int64_t section() const { return section_; }
  constexpr std::int64_t row() const { return item_; }
  constexpr std::int64_t item() const { return item_; }
  friend constexpr auto operator<=>(const IndexPath&, const IndexPath&) = default;

 private:
  std::int64_t section_ = 0;
  std::int64_t item_ = 0;
};

}  // namespace platform

template <>
struct std::hash<platform::IndexPath> {
  std::size_t operator()(const platform::IndexPath& path) const {
    return std::hash<std::int64_t>{}(path.section() * 1000003 + path.item());
  }
};
