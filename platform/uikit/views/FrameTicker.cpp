#include "platform/uikit/views/FrameTicker.h"

#include <cstdint>
#include <utility>

#include "platform/animation/FrameClock.h"
#include "platform/dispatch/Clock.h"

namespace platform {

/// One run from start to stop. It observes the frames as long as it lives.
struct FrameTicker::Run {
  Tick tick;
  double startedAt = Clock::mediaTime();
  std::uint64_t observer = 0;
  bool stopped = false;

  ~Run() { FrameClock::shared().removeObserver(observer); }
};

void FrameTicker::start(Tick tick) {
  stop();
  run_ = std::make_shared<Run>();
  run_->tick = std::move(tick);
  const auto frame = [weak = std::weak_ptr<Run>(run_)](double mediaTime) {
    const std::shared_ptr<Run> run = weak.lock();
    if (!run || run->stopped) return;
    run->tick(mediaTime - run->startedAt);
    if (!run->stopped) FrameClock::shared().setNeedsFrame();
  };
  run_->observer = FrameClock::shared().addObserver(FrameClock::Phase::update, frame);
  FrameClock::shared().setNeedsFrame();
}

void FrameTicker::stop() {
  if (!run_) return;
  run_->stopped = true;
  run_ = nullptr;
}

}  // namespace platform
