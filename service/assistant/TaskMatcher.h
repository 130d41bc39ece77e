#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "service/assistant/SlotFiller.h"
#include "service/assistant/TaskIndex.h"
#include "service/assistant/Vocabulary.h"

namespace service {

/// A task that a query asks for, with what the query says for its slots.
struct Match {
  const PreparedTask* task = nullptr;
  Filling filling;
  double score = 0;         ///< 0 to 1
  double matchedWords = 0;  ///< weight of the sample's own words that the query has
};

/// Finds the task that a query asks for. Any thread.
///
/// The index gives the candidates; every sample request of those is laid along the query. The score of a sample is the
/// harmonic mean of two shares: how much of the sample the query says, and how much of the query the sample explains.
/// A sample whose telling words are all missing does not count, however well its slots fit.
class TaskMatcher {
 public:
  /// From this score on, a task is taken to be meant.
  static constexpr double kThreshold = 0.6;
  /// From this score on, a query is a request of its own, even where the reply to a question is awaited.
  static constexpr double kCertain = 0.8;

  /// Borrows the tasks, which must stay where they are.
  explicit TaskMatcher(const std::vector<Task>& tasks);

  /// The best match from the threshold on.
  std::optional<Match> find(std::string_view query) const;

  /// The words of a text, mistyped ones put right.
  std::vector<Token> read(std::string_view text) const;

 private:
  void consider(const PreparedTask& task, const std::vector<Token>& tokens, std::string_view query,
                std::optional<Match>& best) const;

  std::vector<PreparedTask> tasks_;
  Vocabulary vocabulary_;
  TaskIndex index_;
};

}  // namespace service
