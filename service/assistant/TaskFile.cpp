#include "service/assistant/TaskFile.h"

#include <algorithm>
#include <array>
#include <set>

#include "service/assistant/TaskChecks.h"
#include "service/base/Json.h"
#include "service/base/LoadError.h"
#include "service/base/TextFile.h"

namespace service {
namespace {

TextTemplate templateOf(const JsonObject& object, std::string_view key, const std::string& text) {
  try {
    return TextTemplate(text);
  } catch (const std::invalid_argument& error) {
    object.complain(key, error.what());
  }
}

TextTemplate readTemplate(const JsonObject& object, std::string_view key) {
  return templateOf(object, key, object.string(key));
}

/// A whole number, or a text that becomes one.
TextTemplate readNumber(const JsonObject& object, std::string_view key) {
  if (const auto number = wholeNumber(object.at(key))) return TextTemplate(std::to_string(*number));
  if (!object.at(key).is_string()) object.complain(key, "must be a whole number or a text such as \"{slot}\"");
  return readTemplate(object, key);
}

Choice readChoice(const Json& json, const std::string& place) {
  Choice choice;
  if (json.is_string()) {
    choice.value = json.get<std::string>();
    return choice;
  }
  const JsonObject fields(json, place);
  fields.allowOnly({"value", "synonyms", "attributes"});
  choice.value = fields.nonEmptyString("value");
  if (fields.has("synonyms")) choice.synonyms = fields.strings("synonyms");
  if (!fields.has("attributes")) return choice;
  const JsonObject attributes = fields.object("attributes");
  for (const auto& [name, value] : attributes.value().items()) {
    const auto number = wholeNumber(value);
    if (!number && !value.is_string()) attributes.complain(name, "must be a text or a whole number");
    choice.attributes[name] = number ? std::to_string(*number) : value.get<std::string>();
  }
  return choice;
}

SlotType readSlotType(const JsonObject& fields) {
  const std::string type = fields.string("type");
  if (type == "number") return SlotType::Number;
  if (type == "text") return SlotType::Text;
  if (type == "one-of") return SlotType::Choice;
  fields.complain("type", "must be \"number\", \"text\" or \"one-of\"");
}

Slot readSlot(const JsonObject& fields) {
  fields.allowOnly({"name", "type", "required", "default", "minimum", "maximum", "ask", "example", "choices"});
  Slot slot;
  slot.name = fields.nonEmptyString("name");
  slot.type = readSlotType(fields);
  if (fields.has("required")) slot.isRequired = fields.boolean("required");
  if (fields.has("default")) {
    const auto number = wholeNumber(fields.at("default"));
    slot.defaultValue = number ? std::to_string(*number) : fields.string("default");
  }
  if (fields.has("minimum")) slot.minimum = fields.integer("minimum");
  if (fields.has("maximum")) slot.maximum = fields.integer("maximum");
  if (fields.has("ask")) slot.question = fields.nonEmptyString("ask");
  if (fields.has("example")) slot.example = fields.string("example");
  if (fields.has("choices")) {
    for (const Json& choice : fields.array("choices"))
      slot.choices.push_back(readChoice(choice, placeOfItem(fields.placeOf("choices"), slot.choices.size())));
  }
  checkSlot(slot, fields);
  return slot;
}

ScrollTemplate readScroll(const JsonObject& fields) {
  fields.allowOnly({"viewId", "offsets"});
  const JsonObject offsets = fields.object("offsets");
  offsets.allowOnly({"x", "y"});
  return {readTemplate(fields, "viewId"), readNumber(offsets, "x"), readNumber(offsets, "y")};
}

void checkActionType(const std::string& type, const JsonObject& fields) {
  constexpr std::array<std::string_view, 19> kTypes{
      "TYPE_TEXT",          "TYPE_IMAGE",        "TYPE_WEBVIEW",   "TYPE_RADIO_GROUP", "TYPE_INPUT",
      "TYPE_TABBAR",        "TYPE_SEARCH",       "TYPE_EDIT_TEXT", "TYPE_SYSTEM_BACK", "TYPE_PICKER_VIEW",
      "TYPE_SEARCH_CANCEL", "TYPE_BUTTON",       "TYPE_CHECKBOX",  "TYPE_RADIO",       "TYPE_BAR_BUTTON_ITEM",
      "TYPE_SELECT",        "TYPE_PROGRESS_BAR", "TYPE_TOGGLE",    "TYPE_DEFAULT"};
  if (std::find(kTypes.begin(), kTypes.end(), type) == kTypes.end())
    fields.complain("actionType", "\"" + type + "\" is not an action type");
}

StepTemplate readStep(const JsonObject& fields, std::size_t position) {
  fields.allowOnly({"elementId", "index", "value", "scrollDetails", "viewName", "actionType", "repeat", "when"});
  StepTemplate step;
  step.elementId = readTemplate(fields, "elementId");
  step.viewName = readTemplate(fields, "viewName");
  step.actionType = fields.string("actionType");
  checkActionType(step.actionType, fields);
  if (fields.has("value")) step.value = readTemplate(fields, "value");
  if (fields.has("index") && fields.integer("index") != static_cast<std::int64_t>(position))
    fields.complain("index", "must be the step's place in the list, from 0; leave it out to have it counted");
  if (fields.has("scrollDetails")) {
    for (const Json& scroll : fields.array("scrollDetails"))
      step.scrollDetails.push_back(
          readScroll({scroll, placeOfItem(fields.placeOf("scrollDetails"), step.scrollDetails.size())}));
  }
  if (fields.has("repeat")) step.repeat = readNumber(fields, "repeat");
  if (fields.has("when")) step.when = fields.nonEmptyString("when");
  return step;
}

Task readTask(const JsonObject& unnamed) {
  Task task;
  task.id = unnamed.nonEmptyString("id");
  const JsonObject fields(unnamed.value(), "task \"" + task.id + "\"");
  fields.allowOnly({"id", "title", "samples", "slots", "steps", "answer", "shouldOpenChatWindow"});
  task.title = fields.nonEmptyString("title");
  task.samples = fields.strings("samples");
  if (fields.has("shouldOpenChatWindow")) task.shouldOpenChatWindow = fields.boolean("shouldOpenChatWindow");
  if (fields.has("answer")) task.answer = fields.nonEmptyString("answer");
  if (fields.has("slots")) {
    for (const Json& slot : fields.array("slots"))
      task.slots.push_back(readSlot({slot, placeOfItem(fields.placeOf("slots"), task.slots.size())}));
  }
  if (fields.has("steps")) {
    for (const Json& step : fields.array("steps"))
      task.steps.push_back(
          readStep({step, placeOfItem(fields.placeOf("steps"), task.steps.size())}, task.steps.size()));
  }
  checkTask(task, fields);
  return task;
}

}  // namespace

std::vector<Task> TaskFile::load(const std::filesystem::path& file) {
  try {
    return parse(readTextFile(file));
  } catch (const JsonError& error) {
    throw LoadError(file.string() + ": " + error.what());
  }
}

std::vector<Task> TaskFile::parse(std::string_view text) {
  const Json document = parseJson(text);
  const JsonObject fields(document, "");
  fields.allowOnly({"tasks"});
  std::vector<Task> tasks;
  std::set<std::string> ids;
  for (const Json& item : fields.array("tasks")) {
    const JsonObject task(item, placeOfItem("tasks", tasks.size()));
    tasks.push_back(readTask(task));
    if (!ids.insert(tasks.back().id).second) task.complain("id", "\"" + tasks.back().id + "\" is used twice");
  }
  if (tasks.empty()) fields.complain("tasks", "must hold a task");
  return tasks;
}

Task TaskFile::parseTask(const Json& task) { return readTask({task, ""}); }

}  // namespace service
