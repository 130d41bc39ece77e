#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "examples/teashop/TeashopApplication.h"
#include "examples/teashop/demo/DemoHands.h"
#include "examples/teashop/demo/DemoReport.h"
#include "examples/teashop/demo/DemoScribe.h"
#include "examples/teashop/demo/Demonstration.h"
#include "examples/teashop/demo/TaughtTasks.h"
#include "platform/runtime/Ref.h"

namespace teashop {

/// Shows tasks on the running shop as a person does: "Start" on the control bar, one act after the other, each when
/// the one before was registered, "Stop"; then it gives the task its name. Works in real and in virtual time. Main
/// thread.
class TeachPlayer {
 public:
  TeachPlayer(TeashopApplication& application, const std::string& serviceAddress, std::filesystem::path folder);

  /// Shows all of them; true when the service has every one whole and named. What was seen, and which tasks came of it,
  /// is left in the folder for the report (`DemoReport::save`, `taught.json`).
  bool play();

 private:
  bool show(const Demonstration& demonstration);
  bool start();
  bool perform(const DemoAct& act);
  bool stop(const Demonstration& demonstration);
  bool until(const std::string& what, const std::function<bool()>& condition, double seconds = 20);
  /// A short message of that text has come since the last one that was waited for.
  bool hasNewToast(const std::string& text);

  TeashopApplication& application_;
  TaughtTasks tasks_;
  DemoReport report_;
  DemoScribe scribe_;
  DemoHands hands_;
  std::vector<platform::Weak<platform::UIView>> seenToasts_;
  std::vector<std::string> taught_;
};

}  // namespace teashop
