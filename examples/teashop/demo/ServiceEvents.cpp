#include "examples/teashop/demo/ServiceEvents.h"

namespace teashop {

using namespace platform;

std::vector<ServiceEvents::Event> ServiceEvents::since(std::int64_t id) const {
  std::vector<Event> events;
  const auto data = pages_.get("/admin/events?limit=1000&after=" + std::to_string(id));
  const JSONValue* const list = data ? data->find("events") : nullptr;
  if (!list || !list->asArray()) return events;
  for (const JSONValue& event : *list->asArray()) {
    const JSONValue* const number = event.find("id");
    events.push_back(
        {number ? number->asInteger().value_or(0) : 0, textOf(event, "eventName"), textOf(event, "taskId")});
  }
  return events;
}

}  // namespace teashop
