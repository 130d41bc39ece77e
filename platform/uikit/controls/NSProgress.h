#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "platform/runtime/Object.h"

namespace platform {

/// How much of some work is done, in units. Main thread.
class NSProgress : public Object<NSProgress, NSObject> {
 public:
  explicit NSProgress(std::int64_t totalUnitCount = 0) : total_(totalUnitCount) {}

  std::int64_t completedUnitCount() const { return completed_; }
  void setCompletedUnitCount(std::int64_t count);
  std::int64_t totalUnitCount() const { return total_; }
  void setTotalUnitCount(std::int64_t count);
  /// 0 to 1; 0 while the total is not positive.
  double fractionCompleted() const;

  /// Calls back after every change; the number takes the observer away again.
  std::uint64_t addObserver(std::function<void()> observer);
  void removeObserver(std::uint64_t observer);

 private:
  void changed();
  std::int64_t completed_ = 0;
  std::int64_t total_ = 0;
  std::uint64_t nextObserver_ = 1;
  std::map<std::uint64_t, std::function<void()>> observers_;
};

}  // namespace platform
