#pragma once

#include <cstddef>

#include "lumicor/actions/TLScrollRestoration.h"
#include "lumicor/actions/TLTaskResult.h"
#include "lumicor/core/TLAction.h"

namespace lumicor {

struct TLStepTarget;

/// Told what a run does while it does it, for tools; a run without one costs nothing more. Steps are named by their
/// place in the list. Main thread.
class TLActionsObserver {
 public:
  virtual ~TLActionsObserver() = default;
  /// The pause before the step is over.
  virtual void stepBegins(std::size_t i, const TLAction& step) = 0;
  virtual void scrollRestored(std::size_t i, const TLScrollActionDetails& details, TLScrollOutcome outcome) = 0;
  /// After every look-up; `isThere` tells whether the step is performed on what was found.
  virtual void lookedUp(std::size_t i, const TLStepTarget& target, bool isThere) = 0;
  /// The step is over; the pause after it begins.
  virtual void stepEnded(std::size_t i, const TLTaskResult& result) = 0;
};

}  // namespace lumicor
