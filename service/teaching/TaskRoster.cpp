#include "service/teaching/TaskRoster.h"

#include <cstdio>

#include "service/teaching/TaughtTask.h"

namespace service {

TaskRoster::TaskRoster(std::vector<Task> fileTasks, DemonstrationStore& demonstrations)
    : fileTasks_(std::move(fileTasks)),
      demonstrations_(demonstrations),
      revision_(demonstrations.revision()),
      assistant_(gather()) {}

std::shared_ptr<const Assistant> TaskRoster::assistant() {
  // Asked for before anything is read: what changes in between is noticed the next time.
  const std::int64_t revision = demonstrations_.revision();
  const std::lock_guard lock(mutex_);
  if (revision != revision_) {
    assistant_ = gather();
    revision_ = revision;
  }
  return assistant_;
}

std::shared_ptr<const Assistant> TaskRoster::gather() const {
  std::vector<Task> tasks = fileTasks_;
  for (const Demonstration& record : demonstrations_.list()) {
    if (!record.isComplete || !isAnswerable(record.draft)) continue;
    try {
      tasks.push_back(answerableTask(record.draft));
    } catch (const std::exception& problem) {
      // One that an earlier program wrote and this one does not understand must not take the others with it.
      std::fprintf(stderr, "lumicor-service: the taught task %s is left out: %s\n", record.id.c_str(), problem.what());
    }
  }
  return std::make_shared<const Assistant>(std::move(tasks));
}

}  // namespace service
