#pragma once

#include <cstdint>

namespace service {

/// What one key may cost.
struct TeachingLimits {
  std::int64_t fileBytes = std::int64_t{512} << 20;
  std::int64_t keyBytes = std::int64_t{8} << 30;   ///< of all files of a key
  std::int64_t addressTime = 15 * 60 * 1000;       ///< milliseconds for which an upload address works
  std::int64_t openAddresses = 5000;               ///< of a key, not used yet
  std::int64_t demonstrations = 1000;              ///< of a key
  std::int64_t snapshots = 5000;                   ///< of a demonstration
  std::int64_t demonstrationTime = 24 * 3600'000;  ///< milliseconds after which one that never ended is removed
};

}  // namespace service
