#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "examples/teashop/demo/ServicePages.h"

namespace teashop {

/// The tasks that the service has learnt. Main thread; turns the run loop while it waits.
class TaughtTasks {
 public:
  explicit TaughtTasks(std::string serviceAddress) : pages_(std::move(serviceAddress)) {}

  /// The ids of those whose demonstration came in whole, oldest first.
  std::vector<std::string> complete() const;
  /// Gives a task its name, and how it is asked for; false when the service refuses.
  bool name(const std::string& id, const std::string& title, const std::vector<std::string>& samples) const;

  /// Leaves the ids in the folder for the report, and reads them there; none when that fails.
  static bool save(const std::vector<std::string>& ids, const std::filesystem::path& folder);
  static std::vector<std::string> load(const std::filesystem::path& folder);

 private:
  ServicePages pages_;
};

}  // namespace teashop
