#include "tools/play/ScenarioLog.h"

#include <iomanip>

#include "lumicor/actions/TLStepTarget.h"
#include "lumicor/core/Lumicor.h"
#include "platform/dispatch/Clock.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"

namespace play {

using namespace platform;
using namespace lumicor;

namespace {

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string className(const NSObject& object) { return NSStringFromClass(object.classForCoder()); }

std::string currentScreen() {
  const auto screen = Lumicor::shared().getCurrentViewController();
  return screen ? className(*screen) : "no screen";
}

std::string foundText(const TLStepTarget& target) {
  std::string text;
  const auto add = [&text](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
  if (target.view) add(className(*target.view));
  if (target.barButtonItem) add("a bar button item");
  if (target.searchController) add("the search controller");
  if (target.tabBarHolder) add("the tab bar of " + className(*target.tabBarHolder));
  return text.empty() ? "nothing" : text;
}

const char* outcomeText(TLScrollOutcome outcome) {
  switch (outcome) {
    case TLScrollOutcome::restored:
      return "restored";
    case TLScrollOutcome::failed:
      return "NOT FOUND: the step fails";
    case TLScrollOutcome::stalled:
      return "a text view found as a step's target: the run stalls here for good";
  }
  return "";
}

}  // namespace

ScenarioLog::ScenarioLog(std::ostream& out, std::size_t count, StepEnded stepEnded)
    : out_(out), count_(count), stepEnded_(std::move(stepEnded)), startedAt_(Clock::mediaTime()) {}

double ScenarioLog::elapsed() const { return Clock::mediaTime() - startedAt_; }

std::ostream& ScenarioLog::line() {
  return out_ << std::fixed << std::setprecision(1) << std::setw(7) << elapsed() << " s  ";
}

void ScenarioLog::stepBegins(std::size_t i, const TLAction& step) {
  tries_ = 0;
  line() << "step " << i + 1 << " of " << count_ << "   " << step.actionType << "  " << quoted(step.elementId) << " on "
         << step.viewName;
  if (!step.value.empty()) out_ << ", value " << quoted(step.value);
  out_ << '\n';
}

void ScenarioLog::scrollRestored(std::size_t, const TLScrollActionDetails& details, TLScrollOutcome outcome) {
  line() << "    scroll   " << quoted(details.viewId) << " to " << details.offsets.x << ", " << details.offsets.y
         << ": " << outcomeText(outcome) << '\n';
}

void ScenarioLog::lookedUp(std::size_t, const TLStepTarget& target, bool isThere) {
  line() << "    look-up " << ++tries_ << " on " << currentScreen() << ": " << foundText(target)
         << (isThere ? "" : "; not enough") << '\n';
}

void ScenarioLog::stepEnded(std::size_t i, const TLTaskResult& result) {
  line() << "    " << (result.success ? "done" : "FAILED") << " after " << tries_ << (tries_ == 1 ? " try" : " tries");
  if (!result.resultValue.empty()) out_ << ", returned " << quoted(result.resultValue);
  if (!result.clipboardContent.empty()) out_ << ", clipboard " << quoted(result.clipboardContent);
  out_ << '\n';
  if (stepEnded_) stepEnded_(i);
}

}  // namespace play
