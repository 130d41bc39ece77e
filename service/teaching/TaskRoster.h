#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "service/assistant/Assistant.h"
#include "service/teaching/DemonstrationStore.h"

namespace service {

/// All tasks that can be asked for: those of the task file and the named ones that were taught. Notices what people
/// name, correct and remove while the service runs, in this process or another. Any thread.
class TaskRoster {
 public:
  /// `demonstrations` is borrowed.
  TaskRoster(std::vector<Task> fileTasks, DemonstrationStore& demonstrations);

  /// The assistant for the tasks as they are now; it stays as it is for as long as it is held.
  std::shared_ptr<const Assistant> assistant();

 private:
  std::shared_ptr<const Assistant> gather() const;

  const std::vector<Task> fileTasks_;
  DemonstrationStore& demonstrations_;
  std::mutex mutex_;
  std::int64_t revision_ = 0;
  std::shared_ptr<const Assistant> assistant_;
};

}  // namespace service
