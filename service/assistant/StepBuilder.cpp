#include "service/assistant/StepBuilder.h"

#include "service/base/Json.h"

namespace service {
namespace {

OrderedJson buildScrolls(const StepTemplate& step, const SlotValues& values) {
  OrderedJson scrolls = OrderedJson::array();
  for (const ScrollTemplate& scroll : step.scrollDetails) {
    OrderedJson entry;
    entry["viewId"] = scroll.viewId.expand(values);
    entry["offsets"]["x"] = std::stoll(scroll.x.expand(values));
    entry["offsets"]["y"] = std::stoll(scroll.y.expand(values));
    scrolls.push_back(std::move(entry));
  }
  return scrolls;
}

OrderedJson buildStep(const StepTemplate& step, const SlotValues& values) {
  OrderedJson result;
  result["elementId"] = step.elementId.expand(values);
  result["index"] = 0;
  result["value"] = step.value.expand(values);
  result["scrollDetails"] = buildScrolls(step, values);
  result["viewName"] = step.viewName.expand(values);
  result["actionType"] = step.actionType;
  return result;
}

OrderedJson closingStep() {
  StepTemplate step;
  step.actionType = "TYPE_DEFAULT";
  return buildStep(step, {});
}

}  // namespace

std::string buildSteps(const Task& task, const SlotValues& values) {
  OrderedJson steps = OrderedJson::array();
  for (const StepTemplate& step : task.steps) {
    if (!step.when.empty() && !values.contains(step.when)) continue;
    const std::int64_t times = step.repeat ? std::stoll(step.repeat->expand(values)) : 1;
    const OrderedJson built = times > 0 ? buildStep(step, values) : OrderedJson();
    for (std::int64_t i = 0; i < times; ++i) steps.push_back(built);
  }
  if (steps.empty()) return "";
  steps.push_back(closingStep());
  for (std::size_t i = 0; i < steps.size(); ++i) steps[i]["index"] = i;
  return writeJson(steps);
}

}  // namespace service
