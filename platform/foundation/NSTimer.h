#pragma once

#include <cstdint>
#include <functional>

#include "platform/dispatch/DispatchWorkItem.h"
#include "platform/runtime/Object.h"

namespace platform {

/// Does something after a while, once or again and again, on the main queue. A scheduled timer is kept alive by the run
/// loop until it has fired (or, repeating, until it is invalidated); holding it is only needed to invalidate it.
/// Repetitions keep to the grid of the first one; those that were missed are left out. Main thread.
class NSTimer : public Object<NSTimer, NSObject> {
 public:
  using Block = std::function<void(const Ref<NSTimer>&)>;

  static Ref<NSTimer> scheduledTimer(double interval, bool repeats, Block block);
  /// Sends the selector, with the timer when it ends with a colon. The target is kept alive while the timer is valid.
  static Ref<NSTimer> scheduledTimer(double interval, const Ref<NSObject>& target, SEL selector, bool repeats);

  /// It will not fire any more and lets go of what it holds.
  void invalidate();
  bool isValid() const { return block_ != nullptr; }
  double timeInterval() const { return interval_; }
  /// Fires now; a timer that does not repeat is then invalid.
  void fire();

 private:
  void start(double interval, bool repeats, Block block);
  void schedule();
  void fireWhenDue();

  Block block_;
  double interval_ = 0;
  bool repeats_ = false;
  std::int64_t due_ = 0;  // nanoseconds of the clock
  Weak<DispatchWorkItem> pending_;  // it keeps the timer
};

using Timer = NSTimer;

}  // namespace platform
