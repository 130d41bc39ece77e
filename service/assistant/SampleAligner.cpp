#include "service/assistant/SampleAligner.h"

#include <algorithm>

#include "service/assistant/WordForms.h"

namespace service {
namespace {

/// Words inside a text slot count a little less than words that the sample itself holds, so that the slot never
/// swallows those.
constexpr double kTextShare = 0.9;

/// Of several ways to divide words among text slots that follow each other, the one that divides at commas is
/// preferred.
constexpr double kClauseGain = 0.01;

/// Fills, from the back, a table of the best gain that is still to be had from element i and token j on.
class Aligner {
 public:
  Aligner(const PreparedTask& task, const Sample& sample, const std::vector<Token>& tokens)
      : task_(task), sample_(sample), tokens_(tokens), cells_((sample.size() + 1) * (tokens.size() + 1) * 2) {
    sums_.push_back(0);
    for (const Token& token : tokens) sums_.push_back(sums_.back() + token.weight);
    for (std::size_t i = sample.size(); i-- > 0;) {
      for (std::size_t j = tokens.size() + 1; j-- > 0;) {
        cell(i, j, false) = choose(i, j, false);
        cell(i, j, true) = choose(i, j, true);
      }
    }
  }

  Alignment trace() {
    Alignment result;
    result.claimed.resize(tokens_.size());
    bool hasTellingWord = false;
    for (const SampleElement& element : sample_)
      hasTellingWord = hasTellingWord || (element.slot == nullptr && element.weight >= kTellingWeight);
    result.foundTellingWord = !hasTellingWord;
    std::size_t i = 0;
    std::size_t j = 0;
    bool isAdjacent = true;
    while (i < sample_.size()) {
      const Cell& at = cell(i, j, isAdjacent);
      if (at.taken > 0) note(result, sample_[i], j, at.taken);
      // At the start of the sample, passing over the first words of the query leaves nothing behind.
      isAdjacent = at.taken > 0 || (at.skipsToken && i == 0);
      j += at.skipsToken ? 1 : at.taken;
      i += at.skipsToken ? 0 : 1;
    }
    return result;
  }

 private:
  struct Cell {
    double gain = 0;
    std::size_t taken = 0;    ///< tokens that the element takes; 0 when it is passed over
    bool skipsToken = false;  ///< the token is passed over and the element stays
  };

  Cell& cell(std::size_t i, std::size_t j, bool isAdjacent) {
    return cells_[(i * (tokens_.size() + 1) + j) * 2 + (isAdjacent ? 1 : 0)];
  }

  Cell choose(std::size_t i, std::size_t j, bool isAdjacent) {
    Cell best{cell(i + 1, j, false).gain, 0, false};
    if (j == tokens_.size()) return best;
    const double passing = cell(i, j + 1, i == 0).gain;
    if (passing > best.gain) best = {passing, 0, true};
    const auto offer = [&](std::size_t count, double gain) {
      const double total = gain + cell(i + 1, j + count, true).gain;
      if (total >= best.gain) best = {total, count, false};
    };
    const SampleElement& element = sample_[i];
    if (element.slot == nullptr) {
      if (tokens_[j].key == element.key) offer(1, element.weight + tokens_[j].weight);
    } else if (element.slot->type == SlotType::Choice) {
      if (const Phrase* const phrase = task_.phraseAt(*element.slot, tokens_, j))
        offer(phrase->keys.size(), element.weight + weightOf(j, phrase->keys.size()));
    } else if (element.slot->type == SlotType::Number) {
      if (tokens_[j].number) offer(1, element.weight + tokens_[j].weight);
    } else if (isAdjacent) {
      for (std::size_t count = 1; j + count <= tokens_.size(); ++count)
        offer(count,
              element.weight + kTextShare * weightOf(j, count) + (tokens_[j + count - 1].endsClause ? kClauseGain : 0));
    }
    return best;
  }

  double weightOf(std::size_t first, std::size_t count) const { return sums_[first + count] - sums_[first]; }

  void note(Alignment& result, const SampleElement& element, std::size_t first, std::size_t count) const {
    std::fill_n(result.claimed.begin() + static_cast<std::ptrdiff_t>(first), count, true);
    if (element.slot != nullptr) {
      const Phrase* const phrase = task_.phraseAt(*element.slot, tokens_, first);
      result.captures.push_back({element.slot, first, count, phrase == nullptr ? nullptr : phrase->choice});
    } else {
      result.matchedWords += element.weight;
      if (element.weight >= kTellingWeight) result.foundTellingWord = true;
    }
  }

  const PreparedTask& task_;
  const Sample& sample_;
  const std::vector<Token>& tokens_;
  std::vector<Cell> cells_;
  std::vector<double> sums_;
};

}  // namespace

Alignment alignSample(const PreparedTask& task, const Sample& sample, const std::vector<Token>& tokens) {
  return Aligner(task, sample, tokens).trace();
}

}  // namespace service
