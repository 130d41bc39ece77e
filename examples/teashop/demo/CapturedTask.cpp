#include "examples/teashop/demo/CapturedTask.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "examples/teashop/demo/ServicePages.h"
#include "platform/foundation/JSONValue.h"

namespace teashop {

using namespace platform;

namespace {

std::string mediaFile(const std::filesystem::path& folder, const std::string& key) {
  const std::string name = "media/" + key;
  return !key.empty() && std::filesystem::is_regular_file(folder / name) ? name : "";
}

double number(const JSONValue& object, std::string_view member) {
  const JSONValue* const value = object.find(member);
  return value ? value->asDouble().value_or(0) : 0;
}

std::optional<JSONValue> parsed(const JSONValue& exchange, std::string_view member) {
  auto value = JSONValue::parse(textOf(exchange, member));
  return value ? std::optional(std::move(*value)) : std::nullopt;
}

CapturedAction actionOf(const std::filesystem::path& folder, const JSONValue& snapshot) {
  CapturedAction action;
  action.viewName = textOf(snapshot, "viewName");
  action.picture = mediaFile(folder, textOf(snapshot, "screenshotKey"));
  const JSONValue* const element = snapshot.find("actionElement");
  if (!element) return action;
  action.doing = textOf(*element, "actionId");
  action.name = textOf(*element, "actionName");
  action.elementId = textOf(*element, "elementId");
  action.value = textOf(*element, "value");
  action.element = {number(*element, "x"), number(*element, "y"), number(*element, "width"),
                    number(*element, "height")};
  return action;
}

}  // namespace

std::vector<CapturedTask> capturedTasks(const std::filesystem::path& folder) {
  std::vector<CapturedTask> tasks;
  std::ifstream lines(folder / "http.jsonl");
  for (std::string line; std::getline(lines, line);) {
    const auto exchange = JSONValue::parse(line);
    if (!exchange) continue;
    const std::string path = textOf(*exchange, "path");
    if (path == "/sdk/task/register") {
      const auto body = parsed(*exchange, "requestBody"), reply = parsed(*exchange, "responseBody");
      const JSONValue* const data = reply ? reply->find("data") : nullptr;
      if (!body || !data) continue;
      tasks.push_back({textOf(*data, "insertedId"), mediaFile(folder, textOf(*body, "recordingKey")), {}});
    } else if (path == "/sdk/snapshot/register") {
      const auto body = parsed(*exchange, "requestBody");
      const JSONValue* const snapshot = body ? body->find("snapshot") : nullptr;
      const auto task = std::ranges::find(tasks, body ? textOf(*body, "taskId") : "", &CapturedTask::id);
      if (!snapshot || task == tasks.end()) continue;
      CapturedAction action = actionOf(folder, *snapshot);
      const bool isBroughtAbout = !task->actions.empty() && task->actions.back().doing == action.doing;
      if (!isBroughtAbout) task->actions.push_back(std::move(action));
    }
  }
  return tasks;
}

}  // namespace teashop
