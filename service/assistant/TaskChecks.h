#pragma once

#include "service/assistant/Task.h"
#include "service/base/Json.h"

namespace service {

/// What must hold of a slot by itself. `fields` is where it was read from and complains (JsonError).
void checkSlot(const Slot& slot, const JsonObject& fields);

/// What must hold between the parts of a task: samples and steps against slots.
void checkTask(const Task& task, const JsonObject& fields);

}  // namespace service
