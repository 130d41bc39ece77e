#include "service/assistant/Phrasing.h"

#include <algorithm>

namespace service {
namespace {

constexpr std::size_t kMaximumListed = 8;

std::string choiceList(const Slot& slot) {
  std::string list;
  const std::size_t count = std::min(slot.choices.size(), kMaximumListed);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) list += i + 1 == slot.choices.size() ? " or " : ", ";
    list += slot.choices[i].value;
  }
  return count < slot.choices.size() ? list + ", ..." : list;
}

std::string exampleFor(const Slot& slot) {
  if (!slot.example.empty()) return slot.example;
  switch (slot.type) {
    case SlotType::Choice:
      return slot.choices.front().value;
    case SlotType::Number:
      return std::to_string(std::clamp<std::int64_t>(2, slot.minimum, slot.maximum));
    case SlotType::Text:
      break;
  }
  return "...";
}

std::string exampleRequest(const Task& task) {
  SlotValues values;
  for (const Slot& slot : task.slots) values[slot.name] = {exampleFor(slot)};
  return TextTemplate(task.samples.front()).expand(values);
}

}  // namespace

std::string questionFor(const Slot& slot) {
  const std::string question = slot.question.empty() ? "Please tell me the " + slot.name + "." : slot.question;
  return slot.type == SlotType::Choice ? question + " I know " + choiceList(slot) + "." : question;
}

std::string rangeQuestionFor(const Slot& slot) {
  return "The " + slot.name + " can be from " + std::to_string(slot.minimum) + " to " + std::to_string(slot.maximum) +
         ". Which shall it be?";
}

std::string oneAtATimeFor(const Slot& slot) {
  return "I can take only one " + slot.name + " at a time. " + questionFor(slot);
}

std::string helpFor(const std::vector<Task>& tasks) {
  std::string text = "I am not sure what you mean. I can help with:";
  const std::size_t count = std::min(tasks.size(), kMaximumListed);
  for (std::size_t i = 0; i < count; ++i)
    text += "\n- " + tasks[i].title + ", for example \"" + exampleRequest(tasks[i]) + "\"";
  return text;
}

}  // namespace service
