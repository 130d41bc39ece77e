#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "examples/teashop/demo/DemoReport.h"

namespace teashop {

/// Notes down how a play goes: a picture of the screen at each stage, and what never came about. Main thread.
class DemoScribe {
 public:
  /// The report is borrowed; the pictures' names begin with the prefix.
  DemoScribe(DemoReport& report, std::string prefix);

  /// Turns the run loop until the condition holds, at most so many seconds; one that never holds is noted as a failed
  /// check.
  bool until(const std::string& what, const std::function<bool()>& condition, double seconds = 20);
  void stage(const std::string& title, const std::string& asked, const std::string& done);

  std::size_t stages() const { return stages_; }
  /// Since it was made; the pictures' processor time is not counted.
  DemoReport::Times times() const;

 private:
  DemoReport& report_;
  const std::string prefix_;
  const double startedAt_;
  const double processorAtStart_;
  double lastStageAt_;
  double pictureSeconds_ = 0;
  std::size_t stages_ = 0;
};

}  // namespace teashop
