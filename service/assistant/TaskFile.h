#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "service/assistant/Task.h"
#include "service/base/Json.h"

namespace service {

/// Reads the file of tasks. Everything that could go wrong while a request is answered is checked here: that
/// placeholders name slots that have a value, that repeats and offsets are numbers, that defaults are possible values.
class TaskFile {
 public:
  /// Throws LoadError, naming file, task and field.
  static std::vector<Task> load(const std::filesystem::path& file);
  /// The same for a text; throws JsonError, naming task and field.
  static std::vector<Task> parse(std::string_view text);
  /// One task that is not of a file; throws JsonError, naming the field.
  static Task parseTask(const Json& task);
};

}  // namespace service
