#pragma once

#include <cstdint>

namespace platform {

/// A run of characters or bytes: where it starts and how many there are.
struct NSRange {
  std::int64_t location = 0;
  std::int64_t length = 0;

  std::int64_t end() const { return location + length; }
  bool contains(std::int64_t index) const { return index >= location && index < end(); }
  friend bool operator==(const NSRange&, const NSRange&) = default;
};

}  // namespace platform
