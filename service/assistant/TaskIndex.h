#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

#include "service/assistant/PreparedTask.h"
#include "service/store/Database.h"

namespace service {

/// A full-text index over the words of all tasks. Picks the few that are worth a closer look. Any thread.
class TaskIndex {
 public:
  explicit TaskIndex(const std::vector<PreparedTask>& tasks);

  /// The places in the list of the tasks that share telling words with the query, the best ranked (bm25) first.
  std::vector<std::size_t> candidates(const std::vector<Token>& tokens, std::size_t limit) const;

 private:
  mutable std::mutex mutex_;
  mutable Database database_;
};

}  // namespace service
