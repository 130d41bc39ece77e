#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "service/base/Json.h"

namespace service {

/// An element of a screen as an application sends it; what the tests do not set has a harmless value.
struct FlowElement {
  std::string id;
  std::string type = "TYPE_DEFAULT";
  std::string inputType = "TYPE_DEFAULT";
  std::string value = "";
  std::int64_t y = 0;
  std::int64_t height = 44;
  std::string actionId = "";

  Json json(const std::string& actionName = "") const;
};

/// A demonstration, action by action, as the snapshots that an application registers for it.
class Flow {
 public:
  /// Everything that follows happens on this screen, on which these elements are seen.
  Flow& on(const std::string& viewName, std::vector<FlowElement> elements = {});
  Flow& scrolled(const std::string& viewId, std::int64_t y);
  Flow& act(const std::string& actionName, const FlowElement& element);
  Flow& press(const std::string& id, int times = 1);
  Flow& type(const std::string& id, const std::string& text);
  Flow& close();

  const std::vector<Json>& snapshots() const { return snapshots_; }

 private:
  std::string viewName_ = "Screen";
  std::vector<FlowElement> elements_;
  Json scrolls_ = Json::object();
  std::vector<Json> snapshots_;
};

/// Shop, tea, quantity, town: tab, row, three presses that count from 1 to 4, a field, a button; closed.
Flow orderFlow();

/// The registrations of an application over the wire.
std::string registerTask(int port, const std::string& userId = "ann");
int registerSnapshot(int port, const std::string& taskId, int index, const Json& snapshot,
                     const std::string& userId = "ann");
/// A whole flow; the task's id.
std::string teach(int port, const Flow& flow, const std::string& userId = "ann");

}  // namespace service
