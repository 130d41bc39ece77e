#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "service/assistant/TaskMatcher.h"
#include "service/store/Store.h"

namespace service {

/// What the assistant says to one request.
struct Reply {
  enum class Kind { Steps, Text, Question, NoMatch };
  Kind kind = Kind::NoMatch;
  std::string answer;  ///< the text of a JSON array of steps, or words for the user
  std::string taskId;  ///< empty when no task was meant
  bool shouldOpenChatWindow = true;
  double score = 0;
};

/// Answers requests out of the list of tasks. Keeps nothing between requests: what a reply to a question belongs to is
/// found in the chat that comes with it. Any thread.
class Assistant {
 public:
  explicit Assistant(std::vector<Task> tasks);

  /// `history` is the chat before this query, oldest first.
  Reply answer(std::string_view query, const std::vector<ChatMessage>& history) const;

  std::size_t taskCount() const { return tasks_.size(); }

 private:
  std::optional<Match> understand(std::string_view query, const std::vector<ChatMessage>& history) const;
  std::optional<Match> continueDialogue(std::string_view query, const std::vector<ChatMessage>& history) const;
  Reply carryOut(const Match& match) const;
  Reply help() const;

  const std::vector<Task> tasks_;
  TaskMatcher matcher_;
};

}  // namespace service
