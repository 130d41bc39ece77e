#pragma once

#include <string>
#include <vector>

#include "examples/teashop/demo/CapturedTask.h"
#include "examples/teashop/demo/DemoReport.h"

namespace teashop {

/// The page about tasks that were shown once and asked for afterwards: for each the demonstration, what was captured of
/// it with its video, and the replay beside it; below what went over HTTP.
class TeachReport {
 public:
  /// Parts, captured tasks and replays belong together in their order.
  TeachReport(const DemoReport& shown, std::vector<CapturedTask> captured, const DemoReport& replayed)
      : shown_(shown), captured_(std::move(captured)), replayed_(replayed) {}

  bool holds() const;
  /// Writes report.html into the folder of `replayed`; false when it cannot be written.
  bool write(const DemoReport::Times& times) const;

 private:
  const DemoReport& shown_;
  std::vector<CapturedTask> captured_;
  const DemoReport& replayed_;
};

}  // namespace teashop
