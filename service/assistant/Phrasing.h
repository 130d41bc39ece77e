#pragma once

#include <string>
#include <vector>

#include "service/assistant/Task.h"

namespace service {

/// The question about a required slot that has no value: the slot's own, followed by its choices if it has some.
std::string questionFor(const Slot& slot);

/// The question about a slot whose number is not allowed.
std::string rangeQuestionFor(const Slot& slot);

/// Tells that a slot can have only one of the choices that were named.
std::string oneAtATimeFor(const Slot& slot);

/// Tells what can be asked for, with an example of each.
std::string helpFor(const std::vector<Task>& tasks);

}  // namespace service
