#include "platform/animation/CATransaction.h"

#include <vector>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/FatalError.h"

namespace platform {

namespace {

struct Settings {
  CATransaction::Action action;
  bool animates = false;
  bool disablesActions = false;
  std::shared_ptr<CompletionGroup> completion;
  bool ownsCompletion = false;
};

/// The open transactions, the outermost first.
std::vector<Settings>& open() {
  static std::vector<Settings>* const transactions = new std::vector<Settings>;
  return *transactions;
}

Settings& current(const char* what) {
  if (open().empty()) fatalError(std::string("CATransaction::") + what + " needs a transaction; begin one first");
  return open().back();
}

}  // namespace

void CompletionGroup::leave(bool finished) {
  finished_ = finished_ && finished;
  if (--pending_ == 0) tell();
}

void CompletionGroup::close() { leave(true); }

void CompletionGroup::tell() {
  if (!completion_) return;
  DispatchQueue::main().async([completion = std::move(completion_), finished = finished_] { completion(finished); });
  completion_ = nullptr;
}

void CATransaction::begin() {
  assertMainThread("CATransaction::begin");
  Settings settings = open().empty() ? Settings{} : open().back();
  settings.ownsCompletion = false;
  open().push_back(std::move(settings));
}

void CATransaction::commit() {
  const Settings settings = current("commit");
  open().pop_back();
  if (settings.ownsCompletion) settings.completion->close();
}

bool CATransaction::disableActions() { return !open().empty() && open().back().disablesActions; }

void CATransaction::setDisableActions(bool disable) { current("setDisableActions").disablesActions = disable; }

double CATransaction::animationDuration() { return open().empty() ? Action().duration : open().back().action.duration; }

void CATransaction::setAnimationDuration(double seconds) {
  Settings& settings = current("setAnimationDuration");
  settings.action.duration = seconds;
  settings.animates = seconds > 0;
}

void CATransaction::setAnimationDelay(double seconds) { current("setAnimationDelay").action.delay = seconds; }

void CATransaction::setAnimationTimingFunction(const CAMediaTimingFunction& function) {
  current("setAnimationTimingFunction").action.timing = function;
}

void CATransaction::setAnimationRepeat(double count, bool autoreverses) {
  Settings& settings = current("setAnimationRepeat");
  settings.action.repeatCount = count;
  settings.action.autoreverses = autoreverses;
}

void CATransaction::setCompletionBlock(std::function<void(bool)> completion) {
  Settings& settings = current("setCompletionBlock");
  if (settings.ownsCompletion) settings.completion->close();
  settings.completion = std::make_shared<CompletionGroup>(std::move(completion));
  settings.ownsCompletion = true;
}

const CATransaction::Action* CATransaction::currentAction() {
  if (open().empty() || !open().back().animates || open().back().disablesActions) return nullptr;
  return &open().back().action;
}

std::shared_ptr<CompletionGroup> CATransaction::currentCompletion() {
  return open().empty() ? nullptr : open().back().completion;
}

}  // namespace platform
