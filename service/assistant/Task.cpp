#include "service/assistant/Task.h"

#include <algorithm>

namespace service {

const Choice* Slot::findChoice(const std::string& value) const {
  const auto found = std::find_if(choices.begin(), choices.end(), [&](const Choice& c) { return c.value == value; });
  return found == choices.end() ? nullptr : &*found;
}

const Slot* Task::findSlot(const std::string& name) const {
  const auto found = std::find_if(slots.begin(), slots.end(), [&](const Slot& slot) { return slot.name == name; });
  return found == slots.end() ? nullptr : &*found;
}

void Task::fix(const SlotValues& values) {
  for (StepTemplate& step : steps) {
    for (TextTemplate* text : {&step.elementId, &step.value, &step.viewName}) text->fix(values);
    if (step.repeat) step.repeat->fix(values);
    for (ScrollTemplate& scroll : step.scrollDetails) {
      for (TextTemplate* text : {&scroll.viewId, &scroll.x, &scroll.y}) text->fix(values);
    }
  }
  std::erase_if(slots, [&](const Slot& slot) { return values.contains(slot.name); });
}

}  // namespace service
