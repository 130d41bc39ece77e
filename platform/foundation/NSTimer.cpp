#include "platform/foundation/NSTimer.h"

#include <algorithm>
#include <utility>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"

namespace platform {

namespace {

constexpr double shortestInterval = 0.0001;

}  // namespace

Ref<NSTimer> NSTimer::scheduledTimer(double interval, bool repeats, Block block) {
  Ref<NSTimer> timer = make<NSTimer>();
  timer->start(interval, repeats, std::move(block));
  return timer;
}

Ref<NSTimer> NSTimer::scheduledTimer(double interval, const Ref<NSObject>& target, SEL selector, bool repeats) {
  return scheduledTimer(interval, repeats, [target, selector](const Ref<NSTimer>& timer) {
    if (selector.name().ends_with(':')) {
      target->perform(selector, timer);
    } else {
      target->perform(selector);
    }
  });
}

void NSTimer::start(double interval, bool repeats, Block block) {
  assertMainThread("NSTimer::scheduledTimer");
  interval_ = std::max(interval, shortestInterval);
  repeats_ = repeats;
  block_ = std::move(block);
  due_ = Clock::nanoseconds() + Clock::nanosecondsOf(interval_);
  schedule();
}

void NSTimer::schedule() {
  const double wait = static_cast<double>(due_ - Clock::nanoseconds()) / 1e9;
  pending_ = DispatchQueue::main().asyncAfter(wait, [timer = self()] { timer->fireWhenDue(); });
}

void NSTimer::fireWhenDue() {
  if (repeats_) {
    const std::int64_t step = Clock::nanosecondsOf(interval_);
    const std::int64_t missed = (Clock::nanoseconds() - due_) / step;
    due_ += (std::max<std::int64_t>(missed, 0) + 1) * step;
    schedule();
  }
  fire();
}

void NSTimer::fire() {
  if (!block_) return;
  const Ref<NSTimer> keeper = self();
  const Block block = block_;
  if (!repeats_) invalidate();
  block(keeper);
}

void NSTimer::invalidate() {
  const Ref<NSTimer> keeper = self();  // the run loop's reference goes with the pending work
  const Block released = std::exchange(block_, nullptr);
  if (const Ref<DispatchWorkItem> pending = std::exchange(pending_, {}).lock()) pending->cancel();
}

}  // namespace platform
