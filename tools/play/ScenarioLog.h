#pragma once

#include <functional>
#include <ostream>

#include "lumicor/actions/TLActionsObserver.h"

namespace play {

/// Writes down what a run does, a paragraph a step: what was looked up, what was found, in how many tries, and what the
/// step returned. Main thread.
class ScenarioLog final : public lumicor::TLActionsObserver {
 public:
  using StepEnded = std::function<void(std::size_t i)>;
  /// `count` is the length of the list; `stepEnded` is called when a step is over.
  ScenarioLog(std::ostream& out, std::size_t count, StepEnded stepEnded = nullptr);

  void stepBegins(std::size_t i, const lumicor::TLAction& step) override;
  void scrollRestored(std::size_t i, const lumicor::TLScrollActionDetails& details,
                      lumicor::TLScrollOutcome outcome) override;
  void lookedUp(std::size_t i, const lumicor::TLStepTarget& target, bool isThere) override;
  void stepEnded(std::size_t i, const lumicor::TLTaskResult& result) override;

  /// Seconds of the clock since this log was made, as they stand before every line.
  double elapsed() const;

 private:
  std::ostream& line();

  std::ostream& out_;
  std::size_t count_;
  StepEnded stepEnded_;
  double startedAt_;
  int tries_ = 0;
};

}  // namespace play
