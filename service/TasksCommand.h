#pragma once

#include <span>

namespace service {

/// "lumicor-service tasks ...": lists, shows, names, corrects and removes what was taught, in a data folder on which a
/// service may be running. `words` come behind "tasks". Prints to the standard output. Throws LoadError for wrong
/// arguments and JsonError for what cannot be done.
void runTasksCommand(std::span<const char* const> words);

}  // namespace service
