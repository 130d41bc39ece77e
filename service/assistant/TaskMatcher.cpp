#include "service/assistant/TaskMatcher.h"

#include <cmath>

namespace service {
namespace {

constexpr std::size_t kCandidates = 8;
constexpr double kLevel = 1e-6;
/// Longer queries are read up to here.
constexpr std::size_t kMaximumTokens = 120;
/// What a missing slot costs that will be asked for; a missing choice is what a request is about, and costs all.
constexpr double kMissingPart = 0.3;

std::vector<PreparedTask> prepareAll(const std::vector<Task>& tasks) {
  std::vector<PreparedTask> prepared;
  for (const Task& task : tasks) prepared.emplace_back(task);
  return prepared;
}

/// How much of the sample the query says.
double sampleShare(const Sample& sample, const Alignment& alignment, const SlotValues& values) {
  double found = alignment.matchedWords;
  double all = 0;
  for (const SampleElement& element : sample) {
    if (element.slot == nullptr) {
      all += element.weight;
    } else if (values.contains(element.slot->name)) {
      all += element.weight;
      found += element.weight;
    } else if (element.slot->isRequired) {
      all += element.slot->type == SlotType::Choice ? element.weight : kMissingPart;
    }
  }
  return all == 0 ? 0 : found / all;
}

/// How much of the query the sample explains.
double queryShare(const std::vector<Token>& tokens, const std::vector<bool>& claimed) {
  double explained = 0;
  double all = 0;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    all += tokens[i].weight;
    if (claimed[i]) explained += tokens[i].weight;
  }
  return all == 0 ? 0 : explained / all;
}

}  // namespace

TaskMatcher::TaskMatcher(const std::vector<Task>& tasks)
    : tasks_(prepareAll(tasks)), vocabulary_(tasks_), index_(tasks_) {}

std::vector<Token> TaskMatcher::read(std::string_view text) const {
  std::vector<Token> tokens = tokenise(text);
  if (tokens.size() > kMaximumTokens) tokens.resize(kMaximumTokens);
  vocabulary_.correct(tokens);
  return tokens;
}

std::optional<Match> TaskMatcher::find(std::string_view query) const {
  const std::vector<Token> tokens = read(query);
  std::optional<Match> best;
  for (const std::size_t place : index_.candidates(tokens, kCandidates)) consider(tasks_[place], tokens, query, best);
  if (best && best->score < kThreshold) best.reset();
  return best;
}

void TaskMatcher::consider(const PreparedTask& task, const std::vector<Token>& tokens, std::string_view query,
                           std::optional<Match>& best) const {
  for (const Sample& sample : task.samples) {
    const Alignment alignment = alignSample(task, sample, tokens);
    if (!alignment.foundTellingWord) continue;
    Filling filling = fillSlots(task, alignment, tokens, query);
    const double said = sampleShare(sample, alignment, filling.values);
    const double explained = queryShare(tokens, filling.claimed);
    const double score = said + explained == 0 ? 0 : 2 * said * explained / (said + explained);
    // Of two samples that fit alike the one that says more itself is meant, not the one whose text slot took it all.
    const bool isLevel = best && std::abs(score - best->score) < kLevel;
    const bool isBetter = !best || (isLevel ? alignment.matchedWords > best->matchedWords : score > best->score);
    if (isBetter) best = Match{&task, std::move(filling), score, alignment.matchedWords};
  }
}

}  // namespace service
