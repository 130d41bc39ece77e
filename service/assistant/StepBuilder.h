#pragma once

#include <string>

#include "service/assistant/Task.h"

namespace service {

/// The steps of a task as an application reads them: the text of a JSON array, indexes counted from 0, and behind the
/// task's own steps one closing step, because an application never performs the last step of a list. The closing step
/// names no element and no screen. Empty when no step of the task applies to these values.
/// `values` holds every slot of the task that has a value, defaults included.
std::string buildSteps(const Task& task, const SlotValues& values);

}  // namespace service
