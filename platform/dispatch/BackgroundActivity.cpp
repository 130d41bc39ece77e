#include "platform/dispatch/BackgroundActivity.h"

#include <utility>

#include "platform/dispatch/Scheduler.h"

namespace platform {

BackgroundActivity::BackgroundActivity(const char* what) : what_(what) { Scheduler::shared().beginActivity(what); }

BackgroundActivity::BackgroundActivity(BackgroundActivity&& other) noexcept
    : what_(std::exchange(other.what_, nullptr)) {}

BackgroundActivity& BackgroundActivity::operator=(BackgroundActivity&& other) noexcept {
  std::swap(what_, other.what_);
  return *this;
}

BackgroundActivity::~BackgroundActivity() { end(); }

void BackgroundActivity::end() {
  if (const char* const what = std::exchange(what_, nullptr)) Scheduler::shared().endActivity(what);
}

std::size_t BackgroundActivity::count() { return Scheduler::shared().activities(); }

}  // namespace platform
