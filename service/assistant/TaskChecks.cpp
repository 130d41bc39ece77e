#include "service/assistant/TaskChecks.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "service/assistant/TokenText.h"

namespace service {
namespace {

constexpr std::int64_t kMaximumRepeat = 200;

bool isWholeNumber(const std::string& text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= -1'000'000'000 &&
         number <= 1'000'000'000;
}

void checkDefault(const Slot& slot, const JsonObject& fields) {
  if (!slot.defaultValue) return;
  if (slot.isRequired) fields.complain("default", "a required slot is asked for and has no default");
  if (slot.type == SlotType::Number) {
    if (!isWholeNumber(*slot.defaultValue)) fields.complain("default", "must be a whole number");
    const std::int64_t number = std::stoll(*slot.defaultValue);
    if (number < slot.minimum || number > slot.maximum) fields.complain("default", "is not from minimum to maximum");
  }
  if (slot.type == SlotType::Choice && slot.findChoice(*slot.defaultValue) == nullptr)
    fields.complain("default", "\"" + *slot.defaultValue + "\" is not one of the choices");
}

/// Checks the placeholders of one task's texts; remembers where it is for its complaints.
class PlaceholderCheck {
 public:
  PlaceholderCheck(const Task& task, const JsonObject& fields, std::string key, std::string guard)
      : task_(task), fields_(fields), key_(std::move(key)), guard_(std::move(guard)) {}

  void check(const TextTemplate& text) const {
    for (const TextTemplate::Part& part : text.parts()) {
      if (part.placeholder) check(*part.placeholder);
    }
  }

  void checkNumber(const TextTemplate& text) const {
    check(text);
    if (text.parts().size() != 1) complain("must be one number or one placeholder");
    const TextTemplate::Part& part = text.parts().front();
    const bool isNumber = part.placeholder ? isNumeric(*part.placeholder) : isWholeNumber(part.literal);
    if (!isNumber) complain("is not a whole number");
  }

  void checkRepeat(const TextTemplate& text) const {
    checkNumber(text);
    const TextTemplate::Part& part = text.parts().front();
    const std::int64_t most = part.placeholder ? largest(*part.placeholder) : std::stoll(part.literal);
    if (most > kMaximumRepeat) complain("could be more than " + std::to_string(kMaximumRepeat) + " times");
  }

 private:
  void check(const Placeholder& placeholder) const {
    const Slot& slot = slotOf(placeholder);
    if (!placeholder.attribute.empty()) checkAttribute(placeholder, slot);
    if (placeholder.hasOffset() && !isNumeric(placeholder))
      complain("{" + placeholder.slot + "} is not a number to count with");
    if (!slot.alwaysHasValue() && guard_ != slot.name)
      complain("the slot \"" + slot.name + "\" may have no value: add \"when\": \"" + slot.name + "\" or a default");
  }

  const Slot& slotOf(const Placeholder& placeholder) const {
    const Slot* const slot = task_.findSlot(placeholder.slot);
    if (slot == nullptr) complain("there is no slot \"" + placeholder.slot + "\"");
    return *slot;
  }

  void checkAttribute(const Placeholder& placeholder, const Slot& slot) const {
    const auto has = [&](const Choice& choice) { return choice.attributes.contains(placeholder.attribute); };
    if (slot.type != SlotType::Choice || !std::all_of(slot.choices.begin(), slot.choices.end(), has))
      complain("not every choice of \"" + slot.name + "\" has the attribute \"" + placeholder.attribute + "\"");
  }

  bool isNumeric(const Placeholder& placeholder) const {
    const Slot& slot = slotOf(placeholder);
    if (placeholder.attribute.empty()) return slot.type == SlotType::Number;
    const auto isNumber = [&](const Choice& c) { return isWholeNumber(c.attributes.at(placeholder.attribute)); };
    return std::all_of(slot.choices.begin(), slot.choices.end(), isNumber);
  }

  std::int64_t largest(const Placeholder& placeholder) const {
    const Slot& slot = slotOf(placeholder);
    std::int64_t most = placeholder.attribute.empty() ? slot.maximum : 0;
    if (!placeholder.attribute.empty()) {
      for (const Choice& choice : slot.choices)
        most = std::max<std::int64_t>(most, std::stoll(choice.attributes.at(placeholder.attribute)));
    }
    return most + placeholder.offset;
  }

  [[noreturn]] void complain(const std::string& what) const { fields_.complain(key_, what); }

  const Task& task_;
  const JsonObject& fields_;
  const std::string key_;
  const std::string guard_;
};

void checkSample(const Task& task, const std::string& sample, const std::string& key, const JsonObject& fields) {
  std::set<std::string> used;
  try {
    const TextTemplate text(sample);
    for (const TextTemplate::Part& part : text.parts()) {
      if (!part.placeholder) continue;
      const Placeholder& placeholder = *part.placeholder;
      if (task.findSlot(placeholder.slot) == nullptr)
        fields.complain(key, "there is no slot \"" + placeholder.slot + "\"");
      if (!placeholder.attribute.empty() || placeholder.hasOffset())
        fields.complain(key, "a sample names slots only, as in {" + placeholder.slot + "}");
      if (!used.insert(placeholder.slot).second) fields.complain(key, "{" + placeholder.slot + "} stands there twice");
    }
  } catch (const std::invalid_argument& error) {
    fields.complain(key, error.what());
  }
  if (tokenise(sample).empty()) fields.complain(key, "must hold a word");
}

void checkStep(const Task& task, const StepTemplate& step, const std::string& key, const JsonObject& fields) {
  if (!step.when.empty() && task.findSlot(step.when) == nullptr)
    fields.complain(key + ".when", "there is no slot \"" + step.when + "\"");
  const auto at = [&](const std::string& field) {
    return PlaceholderCheck(task, fields, key + "." + field, step.when);
  };
  at("elementId").check(step.elementId);
  at("value").check(step.value);
  at("viewName").check(step.viewName);
  if (step.repeat) at("repeat").checkRepeat(*step.repeat);
  for (std::size_t i = 0; i < step.scrollDetails.size(); ++i) {
    const std::string scroll = placeOfItem("scrollDetails", i);
    at(scroll + ".viewId").check(step.scrollDetails[i].viewId);
    at(scroll + ".offsets.x").checkNumber(step.scrollDetails[i].x);
    at(scroll + ".offsets.y").checkNumber(step.scrollDetails[i].y);
  }
}

}  // namespace

void checkSlot(const Slot& slot, const JsonObject& fields) {
  try {
    const TextTemplate name("{" + slot.name + "}");
    const Placeholder& placeholder = name.parts().at(0).placeholder.value();
    if (!placeholder.attribute.empty() || placeholder.hasOffset()) throw std::invalid_argument("not a plain name");
  } catch (const std::exception&) {
    fields.complain("name", "must be a letter, then letters, digits or \"_\"");
  }
  if (slot.minimum > slot.maximum) fields.complain("maximum", "must not be below the minimum");
  if (slot.minimum < -1'000'000'000 || slot.maximum > 1'000'000'000) fields.complain("maximum", "is too large");
  if ((slot.type == SlotType::Choice) == slot.choices.empty())
    fields.complain("choices", "are for a slot of type \"one-of\", which needs them");
  checkDefault(slot, fields);
}

void checkTask(const Task& task, const JsonObject& fields) {
  std::set<std::string> names;
  for (std::size_t i = 0; i < task.slots.size(); ++i) {
    const std::string& name = task.slots[i].name;
    if (!names.insert(name).second) fields.complain(placeOfItem("slots", i), "\"" + name + "\" is used twice");
  }
  if (task.steps.empty() == task.answer.empty()) fields.complain("steps", "give either steps or an answer");
  if (task.samples.empty()) fields.complain("samples", "must hold a request");
  for (std::size_t i = 0; i < task.samples.size(); ++i)
    checkSample(task, task.samples[i], placeOfItem("samples", i), fields);
  for (std::size_t i = 0; i < task.steps.size(); ++i) checkStep(task, task.steps[i], placeOfItem("steps", i), fields);
}

}  // namespace service
