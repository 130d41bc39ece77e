#pragma once

#include <functional>
#include <memory>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

/// Joins several pieces of work. A cheap handle: copies name the same group, so a closure may carry one. Any thread.
class DispatchGroup {
 public:
  DispatchGroup();

  void enter() const;
  /// Leaving more often than entering is a fatal programming error.
  void leave() const;
  /// Enters, runs the work on the queue, and leaves.
  void async(const DispatchQueue& queue, std::function<void()> work) const;
  /// Sends the work to the queue once, as soon as nobody is in the group (at once when nobody is now).
  void notify(const DispatchQueue& queue, std::function<void()> work) const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace platform
