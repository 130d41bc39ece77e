#include "platform/uikit/controls/NSProgress.h"

#include <algorithm>
#include <utility>

namespace platform {

void NSProgress::setCompletedUnitCount(std::int64_t count) {
  completed_ = count;
  changed();
}

void NSProgress::setTotalUnitCount(std::int64_t count) {
  total_ = count;
  changed();
}

double NSProgress::fractionCompleted() const {
  if (total_ <= 0) return 0;
  return std::clamp(static_cast<double>(completed_) / static_cast<double>(total_), 0.0, 1.0);
}

std::uint64_t NSProgress::addObserver(std::function<void()> observer) {
  observers_[nextObserver_] = std::move(observer);
  return nextObserver_++;
}

void NSProgress::removeObserver(std::uint64_t observer) { observers_.erase(observer); }

void NSProgress::changed() {
  const auto observers = observers_;  // one may take itself away
  for (const auto& [number, observer] : observers) observer();
}

}  // namespace platform
