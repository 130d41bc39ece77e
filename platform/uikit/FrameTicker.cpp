#include "platform/uikit/FrameTicker.h"

#include <utility>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"

namespace platform {

namespace {

constexpr double frameInterval = 1.0 / 60;

}  // namespace

struct FrameTicker::Run {
  Tick tick;
  double startedAt = 0;
  bool stopped = false;
};

void FrameTicker::start(Tick tick) {
  stop();
  run_ = std::make_shared<Run>();
  run_->tick = std::move(tick);
  run_->startedAt = Clock::mediaTime();
  schedule(run_);
}

void FrameTicker::stop() {
  if (!run_) return;
  run_->stopped = true;
  run_ = nullptr;
}

void FrameTicker::schedule(const std::shared_ptr<Run>& run) {
  DispatchQueue::main().asyncAfter(frameInterval, [weak = std::weak_ptr<Run>(run)] {
    const std::shared_ptr<Run> current = weak.lock();
    if (!current || current->stopped) return;
    current->tick(Clock::mediaTime() - current->startedAt);
    if (!current->stopped) schedule(current);
  });
}

}  // namespace platform
