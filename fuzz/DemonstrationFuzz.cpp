#include "fuzz/Harnesses.h"
#include "service/assistant/StepBuilder.h"
#include "service/teaching/TaskDraft.h"
#include "service/teaching/TaughtTask.h"

namespace fuzz {

using namespace service;

namespace {

/// Empty for what no application could send.
std::vector<DemonstratedAction> actionsIn(std::string_view input) {
  std::vector<DemonstratedAction> actions;
  try {
    const Json flow = parseJson(input);
    for (const Json& snapshot : flow)
      actions.push_back(DemonstratedAction::read(SnapshotRecord::read({snapshot, "snapshot"})));
  } catch (const JsonError&) {
    actions.clear();
  }
  return actions;
}

std::string sampleWithEverySlot(const Json& draft) {
  std::string sample = "do it";
  for (const Json& slot : draft["slots"]) sample += " with {" + slot["name"].get<std::string>() + "}";
  return sample;
}

}  // namespace

void demonstration(std::string_view input) {
  std::vector<DemonstratedAction> actions = actionsIn(input);
  if (actions.size() < 2) return;
  const DemonstratedAction closing = std::move(actions.back());
  actions.pop_back();
  Json draft = draftTask("taught", foldActions(std::move(actions)), closing, true);
  if (draft["steps"].empty()) return;
  // Nothing may be thrown from here on.
  nameTask(draft, "It", {});
  const Task fixed = answerableTask(draft);
  expect(fixed.slots.empty() && !buildSteps(fixed, {}).empty(), "what is not mentioned stays as it was shown");
  nameTask(draft, "It", {sampleWithEverySlot(draft)});
  expect(answerableTask(draft).slots.size() == draft["slots"].size(), "what is mentioned can be asked for");
}

}  // namespace fuzz
