#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "lumicor/actions/TLTaskResult.h"
#include "lumicor/core/TLAction.h"
#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

class TLActionsObserver;

/// Performs steps on the host's live screens, paced so that screens have time to appear, and reports one result.
///
/// The last step of the list is never performed: the run ends after the one before it, and a list of one step (or none)
/// does nothing and reports nothing. A failed step ends the run.
/// Owner:   whoever starts it may let go; the scheduled work keeps it alive until the callback has been called.
/// Thread:  main.
class TLActionsTask : public Object<TLActionsTask, NSObject> {
 public:
  using Callback = std::function<void(const TLTaskResult&)>;

  /// Steps sorted by index, each scroll entry's viewId already cut to its target. The callback may be none.
  explicit TLActionsTask(std::vector<TLAction> steps, Callback callback = nullptr);

  /// Before the run starts. Held weakly.
  void setObserver(std::weak_ptr<TLActionsObserver> observer) { observer_ = std::move(observer); }

  /// Starts the run on the current screen; without one it is a fatal programming error.
  void start();

 private:
  void runStep(std::size_t i);
  void restoreScrollPositions(std::size_t i);
  void lookUpAndPerform(std::size_t i, int retriesLeft);
  void finishStep(std::size_t i, TLTaskResult result);

  std::vector<TLAction> steps_;
  Callback callback_;
  std::weak_ptr<TLActionsObserver> observer_;
};

}  // namespace lumicor
