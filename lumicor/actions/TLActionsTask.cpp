#include "lumicor/actions/TLActionsTask.h"

#include <unordered_set>

#include "lumicor/actions/TLActionsObserver.h"
#include "lumicor/actions/TLScrollRestoration.h"
#include "lumicor/actions/TLStepOperation.h"
#include "lumicor/actions/TLStepTarget.h"
#include "lumicor/core/Lumicor.h"
#include "platform/dispatch/DispatchGroup.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/device/UIPasteboard.h"

namespace lumicor {

namespace {

// Seconds: the host's screens need time to appear.
constexpr double pauseBeforeStep = 1.5;
constexpr double pauseBetweenLookups = 1.0;
constexpr double pauseAfterStep = 2.0;
constexpr int lookupRetries = 3;

using ResetTabBars = std::unordered_set<const UITabBarController*>;

/// Every tab goes back to its root. Children lead to the same tab bar controller again: each is reset once.
void resetNavigation(UIViewController& screen, ResetTabBars& done) {
  const Ref<UITabBarController> tabs = screen.tabBarController();
  if (!tabs || !done.insert(tabs.get()).second) return;
  const auto controllers = tabs->viewControllers();
  for (const Ref<UIViewController>& controller : controllers) {
    auto navigation = as<UINavigationController>(controller);
    if (!navigation) navigation = controller->navigationController();
    if (navigation) {
      navigation->popToRootViewControllerAnimated(false);
    } else {
      for (const Ref<UIViewController>& child : controller->childViewControllers()) resetNavigation(*child, done);
    }
  }
}

std::string clipboardText() { return UIPasteboard::general().string().value_or(""); }

TLTaskResult failure(std::string clipboardContent) {
  return {.success = false, .resultValue = "", .clipboardContent = std::move(clipboardContent)};
}

/// The last step of a list only marks its end: the run is over after the one before it, or after one that failed.
bool runEndsAfterStep(std::size_t i, std::size_t count, bool success) { return !success || i + 2 == count; }

}  // namespace

TLActionsTask::TLActionsTask(std::vector<TLAction> steps, Callback callback)
    : steps_(std::move(steps)), callback_(std::move(callback)) {}

void TLActionsTask::start() {
  const Ref<UIViewController> screen = Lumicor::shared().getCurrentViewController();
  if (!screen) fatalError("steps were started without a current screen");
  ResetTabBars done;
  resetNavigation(*screen, done);
  runStep(0);
}

void TLActionsTask::runStep(std::size_t i) {
  if (i + 1 >= steps_.size()) return;
  DispatchQueue::main().asyncAfter(pauseBeforeStep, [task = self(), i] { task->restoreScrollPositions(i); });
}

void TLActionsTask::restoreScrollPositions(std::size_t i) {
  if (const auto observer = observer_.lock()) observer->stepBegins(i, steps_[i]);
  const DispatchGroup entries;
  const auto failed = std::make_shared<bool>(false);
  for (const TLScrollActionDetails& details : steps_[i].scrollDetails) {
    entries.enter();
    DispatchQueue::main().async([task = self(), i, &details, entries, failed] {
      const TLScrollOutcome outcome = restoreScrollPosition(details, task->steps_[i].viewName);
      if (const auto observer = task->observer_.lock()) observer->scrollRestored(i, details, outcome);
      if (outcome == TLScrollOutcome::failed) *failed = true;
      if (outcome != TLScrollOutcome::stalled) entries.leave();  // a stalled entry ends the run without a word
    });
  }
  entries.notify(DispatchQueue::main(), [task = self(), i, failed] {
    if (*failed) {
      task->finishStep(i, failure(""));
    } else {
      task->lookUpAndPerform(i, lookupRetries);
    }
  });
}

void TLActionsTask::lookUpAndPerform(std::size_t i, int retriesLeft) {
  const TLAction& step = steps_[i];
  TLStepTarget target = TLStepTarget::find(step);
  TLTaskResult result;
  result.clipboardContent = clipboardText();
  const bool isThere = step.actionType == TLActionType::systemBack || target.isThereFor(step.actionType);
  if (const auto observer = observer_.lock()) observer->lookedUp(i, target, isThere);
  if (step.actionType == TLActionType::systemBack) {
    performSystemBack();
    finishStep(i, std::move(result));
  } else if (isThere) {
    DispatchQueue::main().async([task = self(), i, target = std::move(target), result = std::move(result)]() mutable {
      performStep(task->steps_[i], target, result);
      task->finishStep(i, std::move(result));
    });
  } else if (retriesLeft < 1) {
    finishStep(i, failure(std::move(result.clipboardContent)));
  } else {
    DispatchQueue::main().asyncAfter(pauseBetweenLookups,
                                     [task = self(), i, retriesLeft] { task->lookUpAndPerform(i, retriesLeft - 1); });
  }
}

void TLActionsTask::finishStep(std::size_t i, TLTaskResult result) {
  if (const auto observer = observer_.lock()) observer->stepEnded(i, result);
  const bool ends = runEndsAfterStep(i, steps_.size(), result.success);
  DispatchQueue::main().asyncAfter(pauseAfterStep, [task = self(), i, ends, result = std::move(result)] {
    if (!ends) {
      task->runStep(i + 1);
    } else if (task->callback_) {
      task->callback_(result);
    }
  });
}

}  // namespace lumicor
