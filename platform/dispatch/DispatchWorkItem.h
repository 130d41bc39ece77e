#pragma once

#include <atomic>
#include <functional>
#include <mutex>

#include "platform/runtime/Ref.h"

namespace platform {

/// A piece of work that can be called off while it waits. Shared between the queue and whoever wants to cancel it;
/// dropping the reference cancels nothing. Any thread.
class DispatchWorkItem {
 public:
  explicit DispatchWorkItem(std::function<void()> work) : work_(std::move(work)) {}

  /// The work will not start any more, and what it holds is let go. Work that has started runs to its end.
  void cancel();
  bool isCancelled() const { return cancelled_.load(std::memory_order_acquire); }
  /// Runs the work now, on this thread, unless it was cancelled or has run before. What it holds is let go afterwards.
  void perform();

 private:
  std::mutex mutex_;
  std::function<void()> work_;
  std::atomic<bool> cancelled_{false};
};

}  // namespace platform
