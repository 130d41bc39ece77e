#include "platform/uikit/text/CaretBlink.h"

#include <utility>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

namespace {

constexpr double period = 0.5;

}  // namespace

void CaretBlink::start(std::function<void()> changed) {
  changed_ = std::move(changed);
  restart();
}

void CaretBlink::stop() {
  if (next_) next_->cancel();
  next_ = nullptr;
  changed_ = nullptr;
  shown_ = false;
}

void CaretBlink::restart() {
  if (!changed_) return;
  if (next_) next_->cancel();
  shown_ = true;
  changed_();
  schedule();
}

void CaretBlink::schedule() {
  // Stopping, which destruction does too, cancels the work; so it never meets a dead object.
  next_ = DispatchQueue::main().asyncAfter(period, [this] {
    shown_ = !shown_;
    schedule();
    if (const auto changed = changed_) changed();
  });
}

}  // namespace platform
