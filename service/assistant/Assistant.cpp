#include "service/assistant/Assistant.h"

#include <algorithm>
#include <array>

#include "service/assistant/Phrasing.h"
#include "service/assistant/StepBuilder.h"

namespace service {
namespace {

/// As many as an application sends.
constexpr std::size_t kRememberedMessages = 10;

/// What is still to be settled before a task can be carried out.
struct OpenPoint {
  const Slot* slot = nullptr;
  std::string question;
};

std::optional<OpenPoint> openPointOf(const Match& match) {
  const Filling& filling = match.filling;
  if (filling.contradicted != nullptr) return OpenPoint{filling.contradicted, oneAtATimeFor(*filling.contradicted)};
  if (filling.outOfRange != nullptr) return OpenPoint{filling.outOfRange, rangeQuestionFor(*filling.outOfRange)};
  for (const Slot& slot : match.task->task->slots) {
    if (slot.isRequired && !filling.values.contains(slot.name)) return OpenPoint{&slot, questionFor(slot)};
  }
  return std::nullopt;
}

void settle(Match& match, const Slot& slot, SlotValue value) {
  match.filling.contradicted = nullptr;
  match.filling.outOfRange = isAllowed(slot, value) ? nullptr : &slot;
  match.filling.values[slot.name] = std::move(value);
}

bool callsItOff(std::string_view query) {
  constexpr std::array<std::string_view, 7> kWords{"no",        "cancel",     "stop",     "nothing",
                                                   "nevermind", "never mind", "forget it"};
  std::string words;
  for (const Token& token : tokenise(query)) words += (words.empty() ? "" : " ") + token.word;
  return std::find(kWords.begin(), kWords.end(), words) != kWords.end();
}

}  // namespace

Assistant::Assistant(std::vector<Task> tasks) : tasks_(std::move(tasks)), matcher_(tasks_) {}

Reply Assistant::answer(std::string_view query, const std::vector<ChatMessage>& history) const {
  const auto recent = static_cast<std::ptrdiff_t>(std::min(history.size(), kRememberedMessages));
  const std::optional<Match> match = understand(query, {history.end() - recent, history.end()});
  return match ? carryOut(*match) : help();
}

std::optional<Match> Assistant::understand(std::string_view query, const std::vector<ChatMessage>& history) const {
  std::optional<Match> fresh = matcher_.find(query);
  if (fresh && fresh->score >= TaskMatcher::kCertain) return fresh;
  std::optional<Match> continued = continueDialogue(query, history);
  return continued ? continued : fresh;
}

/// When the last thing said was our question, the query may be its answer: what the user asked for before is understood
/// again and the answer put into it. That request may itself have been an answer to an earlier question.
std::optional<Match> Assistant::continueDialogue(std::string_view query,
                                                 const std::vector<ChatMessage>& history) const {
  if (history.size() < 2 || !history.back().isRemote || history[history.size() - 2].isRemote || callsItOff(query))
    return std::nullopt;
  const ChatMessage& request = history[history.size() - 2];
  const std::vector<ChatMessage> before(history.begin(), history.end() - 2);
  std::optional<Match> match = understand(request.message, before);
  const std::optional<OpenPoint> open = match ? openPointOf(*match) : std::nullopt;
  if (!open || open->question != history.back().message) return std::nullopt;
  std::optional<SlotValue> value = readAnswer(*match->task, *open->slot, matcher_.read(query), query);
  if (!value) return std::nullopt;
  settle(*match, *open->slot, std::move(*value));
  return match;
}

Reply Assistant::carryOut(const Match& match) const {
  const Task& task = *match.task->task;
  Reply reply{Reply::Kind::Text, task.answer, task.id, task.shouldOpenChatWindow, match.score};
  if (const auto open = openPointOf(match)) {
    reply.kind = Reply::Kind::Question;
    reply.answer = open->question;
    reply.shouldOpenChatWindow = true;
    return reply;
  }
  if (!task.answer.empty()) return reply;
  SlotValues values = match.filling.values;
  for (const Slot& slot : task.slots) {
    if (slot.defaultValue)
      values.try_emplace(slot.name, SlotValue{*slot.defaultValue, slot.findChoice(*slot.defaultValue)});
  }
  reply.answer = buildSteps(task, values);
  reply.kind = reply.answer.empty() ? Reply::Kind::Text : Reply::Kind::Steps;
  if (reply.answer.empty()) reply.answer = "There is nothing to do for that.";
  return reply;
}

Reply Assistant::help() const { return {Reply::Kind::NoMatch, helpFor(tasks_), "", true, 0}; }

}  // namespace service
