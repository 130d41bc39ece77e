#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "service/assistant/Task.h"
#include "service/assistant/TokenText.h"

namespace service {

/// One way to name a choice, as word keys.
struct Phrase {
  std::vector<std::string> keys;
  const Choice* choice = nullptr;
};

/// A word of a sample request, or a slot.
struct SampleElement {
  std::string key;
  double weight = 0;           ///< what finding it is worth
  const Slot* slot = nullptr;  ///< absent for a word
};

using Sample = std::vector<SampleElement>;

/// A task's words, made ready for comparing. Borrows the task, which must stay where it is.
struct PreparedTask {
  explicit PreparedTask(const Task& task);

  /// The longest phrase for a choice of `slot` that begins at token `first`; nothing when none does.
  const Phrase* phraseAt(const Slot& slot, const std::vector<Token>& tokens, std::size_t first) const;

  const Task* task;
  std::vector<Sample> samples;  ///< the title counts as one
  std::map<const Slot*, std::vector<Phrase>> phrases;
  std::set<std::string> tellingWords;  ///< of all samples
  /// For a text slot: the words that stand right before it in some sample, as the "to" in "to {address}".
  std::map<const Slot*, std::set<std::string>> leadIns;
};

}  // namespace service
