#include "service/assistant/TaskIndex.h"

#include <set>

#include "service/assistant/WordForms.h"

namespace service {
namespace {

std::string wordsOf(const PreparedTask& task) {
  std::string words;
  for (const Sample& sample : task.samples) {
    for (const SampleElement& element : sample) words += element.key + " ";
  }
  for (const auto& [slot, phrases] : task.phrases) {
    for (const Phrase& phrase : phrases) {
      for (const std::string& key : phrase.keys) words += key + " ";
    }
  }
  return words;
}

/// "\"order\" OR \"tea\"". Keys hold letters and digits only, so quoting them is enough.
std::string expressionFor(const std::vector<Token>& tokens) {
  constexpr std::size_t kMaximumTerms = 64;
  std::set<std::string> terms;
  std::string expression;
  for (const Token& token : tokens) {
    if (token.weight < kTellingWeight || terms.size() == kMaximumTerms || !terms.insert(token.key).second) continue;
    expression += (expression.empty() ? "\"" : " OR \"") + token.key + "\"";
  }
  return expression;
}

}  // namespace

TaskIndex::TaskIndex(const std::vector<PreparedTask>& tasks) : database_(":memory:") {
  database_.run("CREATE VIRTUAL TABLE tasks USING fts5(words, tokenize = 'unicode61')");
  Statement insert = database_.prepare("INSERT INTO tasks(rowid, words) VALUES(?, ?)");
  std::int64_t row = 0;
  for (const PreparedTask& task : tasks) insert.bind(row++).bind(wordsOf(task)).run();
}

std::vector<std::size_t> TaskIndex::candidates(const std::vector<Token>& tokens, std::size_t limit) const {
  std::vector<std::size_t> places;
  const std::string expression = expressionFor(tokens);
  if (expression.empty()) return places;
  const std::lock_guard lock(mutex_);
  Statement row = database_.prepare("SELECT rowid FROM tasks WHERE tasks MATCH ? ORDER BY bm25(tasks), rowid LIMIT ?");
  row.bind(expression).bind(static_cast<std::int64_t>(limit));
  while (row.step()) places.push_back(static_cast<std::size_t>(row.integer(0)));
  return places;
}

}  // namespace service
