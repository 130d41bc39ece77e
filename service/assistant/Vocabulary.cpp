#include "service/assistant/Vocabulary.h"

#include <algorithm>

namespace service {
namespace {

/// A guessed word tells less than one that was typed right.
constexpr double kGuessedWeight = 0.8;
constexpr std::size_t kShortestGuess = 5;

}  // namespace

Vocabulary::Vocabulary(const std::vector<PreparedTask>& tasks) {
  for (const PreparedTask& task : tasks) {
    for (const Sample& sample : task.samples) {
      for (const SampleElement& element : sample) keys_.insert(element.key);
    }
    for (const auto& [slot, phrases] : task.phrases) {
      for (const Phrase& phrase : phrases) keys_.insert(phrase.keys.begin(), phrase.keys.end());
    }
  }
}

void Vocabulary::correct(std::vector<Token>& tokens) const {
  for (Token& token : tokens) {
    if (keys_.contains(token.key) || token.number || token.weight < 1) continue;
    const std::string* guess = nullptr;
    int guesses = 0;
    for (const std::string& key : keys_) {
      const bool isLongEnough = key.size() >= kShortestGuess || token.key.size() >= kShortestGuess;
      if (!isLongEnough || !differByOneSlip(token.key, key)) continue;
      guess = &key;
      ++guesses;
    }
    if (guesses != 1) continue;
    token.key = *guess;
    token.weight = kGuessedWeight;
  }
}

bool differByOneSlip(std::string_view a, std::string_view b) {
  if (a.size() < b.size()) std::swap(a, b);
  if (a == b || a.size() - b.size() > 1) return false;
  const auto [inA, inB] = std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(b.size()), b.begin());
  const auto first = static_cast<std::size_t>(inB - b.begin());
  if (a.size() > b.size()) return a.substr(first + 1) == b.substr(first);
  if (a.substr(first + 1) == b.substr(first + 1)) return true;
  return first + 1 < a.size() && a[first] == b[first + 1] && a[first + 1] == b[first] &&
         a.substr(first + 2) == b.substr(first + 2);
}

}  // namespace service
