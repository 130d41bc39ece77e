#include "service/assistant/SlotFiller.h"

#include <algorithm>
#include <charconv>

namespace service {
namespace {

/// The words from `first` on as they were written, without a "please" or "thank you" at the end.
std::string textOf(const std::vector<Token>& tokens, std::string_view query, std::size_t first, std::size_t end) {
  const auto isPolite = [&](std::size_t i) {
    const std::string& word = tokens[i].word;
    return word == "please" || word == "thanks" || word == "thank" || (word == "you" && tokens[i - 1].word == "thank");
  };
  while (end - first > 1 && isPolite(end - 1)) --end;
  return std::string(query.substr(tokens[first].begin, tokens[end - 1].end - tokens[first].begin));
}

SlotValue valueOf(const Capture& capture, const std::vector<Token>& tokens, std::string_view query) {
  switch (capture.slot->type) {
    case SlotType::Choice:
      return {capture.choice->value, capture.choice};
    case SlotType::Number:
      return {std::to_string(*tokens[capture.first].number)};
    case SlotType::Text:
      break;
  }
  return {textOf(tokens, query, capture.first, capture.first + capture.count)};
}

bool isFree(const std::vector<bool>& claimed, std::size_t first, std::size_t count) {
  const auto begin = claimed.begin() + static_cast<std::ptrdiff_t>(first);
  return std::find(begin, begin + static_cast<std::ptrdiff_t>(count), true) ==
         begin + static_cast<std::ptrdiff_t>(count);
}

/// The slot as it can be read at one of the tokens that nothing has claimed.
std::optional<Capture> readAt(const PreparedTask& task, const Slot& slot, const std::vector<Token>& tokens,
                              const std::vector<bool>& claimed, std::size_t i) {
  if (slot.type == SlotType::Number && tokens[i].number) return Capture{&slot, i, 1, nullptr};
  if (slot.type == SlotType::Choice) {
    const Phrase* const phrase = task.phraseAt(slot, tokens, i);
    if (phrase != nullptr && isFree(claimed, i, phrase->keys.size()))
      return Capture{&slot, i, phrase->keys.size(), phrase->choice};
  }
  const auto leadIns = task.leadIns.find(&slot);
  if (leadIns == task.leadIns.end() || !leadIns->second.contains(tokens[i].key)) return std::nullopt;
  std::size_t end = i + 1;
  while (end < tokens.size() && !claimed[end]) ++end;
  // "I want to order": here the "to" leads in no text of the user's.
  if (end == i + 1 || task.tellingWords.contains(tokens[i + 1].key)) return std::nullopt;
  return Capture{&slot, i + 1, end - i - 1, nullptr};
}

std::optional<Capture> findUnclaimed(const PreparedTask& task, const Slot& slot, const std::vector<Token>& tokens,
                                     const std::vector<bool>& claimed) {
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (claimed[i]) continue;
    if (const auto capture = readAt(task, slot, tokens, claimed, i)) return capture;
  }
  return std::nullopt;
}

class Filler {
 public:
  Filler(const PreparedTask& task, const std::vector<Token>& tokens, std::string_view query)
      : task_(task), tokens_(tokens), query_(query) {}

  Filling fill(const Alignment& alignment) {
    result_.claimed = alignment.claimed;
    for (const Capture& capture : alignment.captures) take(capture);
    takeUnclaimed(SlotType::Choice);
    // Before the numbers: the one in "to 1 Mill Lane" is not how many are wanted.
    takeUnclaimed(SlotType::Text);
    takeUnclaimed(SlotType::Number);
    for (const Slot& slot : task_.task->slots) {
      const auto value = result_.values.find(slot.name);
      if (slot.type != SlotType::Choice || value == result_.values.end()) continue;
      const auto other = findUnclaimed(task_, slot, tokens_, result_.claimed);
      if (other && other->choice != value->second.choice) result_.contradicted = &slot;
    }
    return std::move(result_);
  }

 private:
  void takeUnclaimed(SlotType type) {
    for (const Slot& slot : task_.task->slots) {
      if (slot.type != type || result_.values.contains(slot.name)) continue;
      if (const auto capture = findUnclaimed(task_, slot, tokens_, result_.claimed)) take(*capture);
    }
  }

  void take(const Capture& capture) {
    const auto first = result_.claimed.begin() + static_cast<std::ptrdiff_t>(capture.first);
    std::fill_n(first, capture.count, true);
    SlotValue value = valueOf(capture, tokens_, query_);
    if (!isAllowed(*capture.slot, value)) result_.outOfRange = capture.slot;
    result_.values[capture.slot->name] = std::move(value);
  }

  const PreparedTask& task_;
  const std::vector<Token>& tokens_;
  const std::string_view query_;
  Filling result_;
};

}  // namespace

Filling fillSlots(const PreparedTask& task, const Alignment& alignment, const std::vector<Token>& tokens,
                  std::string_view query) {
  return Filler(task, tokens, query).fill(alignment);
}

std::optional<SlotValue> readAnswer(const PreparedTask& task, const Slot& slot, const std::vector<Token>& tokens,
                                    std::string_view reply) {
  if (tokens.empty()) return std::nullopt;
  if (slot.type != SlotType::Text) {
    const auto capture = findUnclaimed(task, slot, tokens, std::vector<bool>(tokens.size()));
    if (!capture) return std::nullopt;
    return valueOf(*capture, tokens, reply);
  }
  const auto isLeadIn = [](const Token& token) {
    return token.word == "to" || token.word == "at" || token.word == "please";
  };
  std::size_t first = 0;
  while (first + 1 < tokens.size() && isLeadIn(tokens[first])) ++first;
  return SlotValue{textOf(tokens, reply, first, tokens.size())};
}

bool isAllowed(const Slot& slot, const SlotValue& value) {
  if (slot.type != SlotType::Number) return true;
  std::int64_t number = 0;
  std::from_chars(value.text.data(), value.text.data() + value.text.size(), number);
  return number >= slot.minimum && number <= slot.maximum;
}

}  // namespace service
