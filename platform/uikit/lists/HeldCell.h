#pragma once

#include <functional>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/touch/UITouch.h"

namespace platform {

/// The cell under a finger. It lights up when the finger has rested there for a moment: one that scrolls does not make
/// cells flicker. Main thread.
template <class Cell>
class HeldCell {
 public:
  ~HeldCell() { release(); }
  void hold(const Ref<Cell>& cell, std::function<void()> lightUp) {
    constexpr double seconds = 0.1;
    release();
    cell_ = cell;
    waiting_ = DispatchQueue::main().asyncAfter(seconds, std::move(lightUp));
  }
  Ref<Cell> cell() const { return cell_.lock(); }
  /// Gives back what was held; nothing lights up any more.
  Ref<Cell> release() {
    if (waiting_) waiting_->cancel();
    waiting_ = nullptr;
    const Ref<Cell> cell = cell_.lock();
    cell_.reset();
    return cell;
  }
  /// True when the finger has gone too far from the cell to mean it.
  bool isLeftBy(const UITouches& touches) const {
    constexpr double slop = 10;
    const Ref<Cell> cell = cell_.lock();
    if (!cell || touches.empty()) return false;
    return !cell->bounds().insetBy(-slop, -slop).contains(touches.front()->locationInView(cell.get()));
  }

 private:
  Weak<Cell> cell_;
  Ref<DispatchWorkItem> waiting_;
};

}  // namespace platform
