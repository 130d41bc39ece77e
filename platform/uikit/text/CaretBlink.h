#pragma once

#include <functional>
#include <memory>

#include "platform/dispatch/DispatchWorkItem.h"

namespace platform {

/// The rhythm of a caret: shown for half a second, hidden for half a second, and shown afresh after every key.
/// Main thread.
class CaretBlink {
 public:
  ~CaretBlink() { stop(); }
  /// `changed` is called whenever the caret comes or goes; it must not keep its view alive.
  void start(std::function<void()> changed);
  void stop();
  /// Shown from now on for a whole period.
  void restart();
  bool isShown() const { return shown_; }

 private:
  void schedule();
  std::function<void()> changed_;
  std::shared_ptr<DispatchWorkItem> next_;
  bool shown_ = false;
};

}  // namespace platform
