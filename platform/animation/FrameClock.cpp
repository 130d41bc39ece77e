#include "platform/animation/FrameClock.h"

#include <algorithm>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"

namespace platform {

FrameClock& FrameClock::shared() {
  static FrameClock clock;
  return clock;
}

void FrameClock::setNeedsFrame() {
  if (isFramePending()) return;
  const double now = Clock::mediaTime();
  // Time may have been set back since the last frame: a test ended.
  const double due = lastFrame_ > now ? now : std::max(now, lastFrame_ + frameDuration);
  const std::shared_ptr<bool> pending = std::make_shared<bool>(true);
  pending_ = pending;
  DispatchQueue::main().asyncAfter(due - now, [this, pending] { tick(); });
}

void FrameClock::tick() {
  pending_.reset();
  lastFrame_ = Clock::mediaTime();
  ++frames_;
  for (const Phase phase : {Phase::update, Phase::display}) {
    const std::vector<Observer> observers = observers_;
    for (const Observer& observer : observers) {
      if (observer.phase != phase) continue;
      const std::function<void(double)> call = *observer.call;  // it may remove itself
      if (call) call(lastFrame_);
    }
  }
}

std::uint64_t FrameClock::addObserver(Phase phase, std::function<void(double)> observer) {
  observers_.push_back({++lastNumber_, phase, std::make_shared<std::function<void(double)>>(std::move(observer))});
  return lastNumber_;
}

void FrameClock::removeObserver(std::uint64_t observer) {
  const auto found = std::find_if(observers_.begin(), observers_.end(),
                                  [&](const Observer& known) { return known.number == observer; });
  if (found == observers_.end()) return;
  // It may be about to run in the frame under way.
  const std::shared_ptr<std::function<void(double)>> call = found->call;
  observers_.erase(found);
  *call = nullptr;
}

}  // namespace platform
