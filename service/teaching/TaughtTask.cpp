#include "service/teaching/TaughtTask.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include "service/assistant/TaskFile.h"
#include "service/teaching/SampleReader.h"

namespace service {
namespace {

std::set<std::string> mentionedIn(const Json& samples) {
  std::set<std::string> mentioned;
  for (const Json& sample : samples) {
    const TextTemplate text(sample.get<std::string>());
    for (const TextTemplate::Part& part : text.parts()) {
      if (part.placeholder) mentioned.insert(part.placeholder->slot);
    }
  }
  return mentioned;
}

Json* findSlot(Json& draft, const std::string& name) {
  for (Json& slot : draft["slots"]) {
    if (slot["name"] == name) return &slot;
  }
  return nullptr;
}

/// "{old" becomes "{new" in every text, where the name ends there and no other brace stands before it.
void renameIn(Json& value, const std::string& from, const std::string& to) {
  if (value.is_string()) {
    std::string result;
    const std::string text = value.get<std::string>();
    for (std::size_t i = 0; i < text.size(); ++i) {
      result += text[i];
      if (text[i] != '{') continue;
      if (i + 1 < text.size() && text[i + 1] == '{') {
        result += text[++i];
        continue;
      }
      const std::size_t end = text.find_first_of("}.+-", i);
      if (end == std::string::npos || text.substr(i + 1, end - i - 1) != from) continue;
      result += to;
      i = end - 1;
    }
    value = result;
  } else if (value.is_structured()) {
    for (Json& item : value) renameIn(item, from, to);
  }
}

void addChoice(Json& slot, const std::string& text) {
  if (slot["type"] != "one-of") throw JsonError("only a slot of type \"one-of\" has choices");
  Json& choices = slot["choices"];
  const std::size_t mark = text.find('=');
  const std::string value = text.substr(0, mark);
  if (value.empty() || mark == text.size() - 1) throw JsonError("a choice is VALUE=IDENTIFIER, or another name");
  if (mark == std::string::npos) {
    const auto shown =
        std::find_if(choices.begin(), choices.end(), [&](const Json& c) { return c["value"] == slot["example"]; });
    if (shown != choices.end()) (*shown)["synonyms"].push_back(value);
    return;
  }
  const std::string attribute = choices[0]["attributes"].begin().key();
  const Json choice = {{"value", value}, {"attributes", {{attribute, text.substr(mark + 1)}}}};
  const auto same = std::find_if(choices.begin(), choices.end(), [&](const Json& c) { return c["value"] == value; });
  if (same == choices.end())
    choices.push_back(choice);
  else
    *same = choice;
}

/// As a task of the task file, every slot with a value.
Json taskJson(const Json& draft) {
  Json task = draft;
  task.erase("notes");
  const std::set<std::string> mentioned = mentionedIn(task["samples"]);
  for (Json& slot : task["slots"]) {
    const bool isMentioned = mentioned.contains(slot["name"].get<std::string>());
    const Json example =
        slot["type"] == "number" ? Json(std::stoll(slot["example"].get<std::string>())) : slot["example"];
    if (!isMentioned)
      slot["default"] = example;
    else if (slot.contains("start"))
      slot["default"] = slot["start"];
    else
      slot["required"] = true;
    slot.erase("start");
  }
  return task;
}

/// That everything which is read later can be read.
void check(const Json& draft) {
  Json trial = draft;
  if (trial["title"] == "") trial["title"] = "-";
  if (trial["samples"].empty()) trial["samples"].push_back("a");
  try {
    (void)TaskFile::parseTask(taskJson(trial));
  } catch (const std::invalid_argument& error) {
    throw JsonError(error.what());
  }
}

}  // namespace

void nameTask(Json& draft, const std::string& title, const std::vector<std::string>& samples) {
  Json changed = draft;
  if (title.empty()) throw JsonError("the title must not be empty");
  if (changed["steps"].empty()) throw JsonError("nothing in this demonstration can be repeated");
  changed["title"] = title;
  changed["samples"] = Json::array();
  for (const std::string& sample : samples) changed["samples"].push_back(sampleWithSlots(sample, changed["slots"]));
  if (samples.empty()) {
    // The title is understood as a request anyhow; its words stand for themselves.
    std::string words;
    for (const char c : title) words += (c == '{' || c == '}') ? std::string(2, c) : std::string(1, c);
    changed["samples"].push_back(words);
  }
  check(changed);
  draft = std::move(changed);
}

void correctSlot(Json& draft, const std::string& name, const SlotCorrection& correction) {
  Json changed = draft;
  Json* const slot = findSlot(changed, name);
  if (slot == nullptr) throw JsonError("there is no slot \"" + name + "\"");
  for (const std::string& choice : correction.choices) addChoice(*slot, choice);
  if (correction.question) (*slot)["ask"] = *correction.question;
  if (correction.example) {
    if ((*slot)["type"] == "one-of") throw JsonError("the example of a choice is the one that was shown");
    const bool isNumber = correction.example->size() <= 9 && !correction.example->empty() &&
                          correction.example->find_first_not_of("0123456789") == std::string::npos;
    if ((*slot)["type"] == "number" && !isNumber) throw JsonError("the example must be a whole number");
    (*slot)["example"] = *correction.example;
  }
  if (correction.name && *correction.name != name) {
    if (findSlot(changed, *correction.name) != nullptr)
      throw JsonError("there is a slot \"" + *correction.name + "\" already");
    (*slot)["name"] = *correction.name;
    renameIn(changed["samples"], name, *correction.name);
    renameIn(changed["steps"], name, *correction.name);
  }
  check(changed);
  draft = std::move(changed);
}

bool isAnswerable(const Json& draft) { return draft["title"] != "" && !draft["samples"].empty(); }

Task answerableTask(const Json& draft) {
  Task task = TaskFile::parseTask(taskJson(draft));
  const std::set<std::string> mentioned = mentionedIn(draft["samples"]);
  SlotValues fixed;
  for (const Slot& slot : task.slots) {
    if (!mentioned.contains(slot.name)) fixed[slot.name] = {*slot.defaultValue, slot.findChoice(*slot.defaultValue)};
  }
  task.fix(fixed);
  return task;
}

}  // namespace service
