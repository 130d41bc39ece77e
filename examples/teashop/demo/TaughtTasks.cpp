#include "examples/teashop/demo/TaughtTasks.h"

#include <fstream>

namespace teashop {

using namespace platform;

namespace {

constexpr const char* idsFile = "taught";

}  // namespace

std::vector<std::string> TaughtTasks::complete() const {
  std::vector<std::string> ids;
  const auto data = pages_.get("/admin/tasks");
  const JSONValue* const tasks = data ? data->find("tasks") : nullptr;
  if (!tasks || !tasks->asArray()) return ids;
  for (const JSONValue& task : *tasks->asArray()) {
    if (textOf(task, "state") != "incomplete") ids.push_back(textOf(task, "id"));
  }
  return ids;
}

bool TaughtTasks::name(const std::string& id, const std::string& title, const std::vector<std::string>& samples) const {
  const JSONValue body = JSONValue::object(
      {{"id", id}, {"title", title}, {"samples", JSONValue::array({samples.begin(), samples.end()})}});
  return pages_.post("/admin/task/name", body).has_value();
}

bool TaughtTasks::save(const std::vector<std::string>& ids, const std::filesystem::path& folder) {
  std::ofstream file(folder / idsFile);
  for (const std::string& id : ids) file << id << "\n";
  return static_cast<bool>(file.flush());
}

std::vector<std::string> TaughtTasks::load(const std::filesystem::path& folder) {
  std::vector<std::string> ids;
  std::ifstream file(folder / idsFile);
  for (std::string id; std::getline(file, id);) ids.push_back(id);
  return ids;
}

}  // namespace teashop
