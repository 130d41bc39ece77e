#include "service/assistant/PreparedTask.h"

#include "service/assistant/WordForms.h"

namespace service {
namespace {

constexpr double kChoiceWeight = 1;
constexpr double kOtherSlotWeight = 0.5;

Sample prepareSample(const Task& task, const TextTemplate& text) {
  Sample sample;
  for (const TextTemplate::Part& part : text.parts()) {
    if (part.placeholder) {
      const Slot* const slot = task.findSlot(part.placeholder->slot);
      sample.push_back({"", slot->type == SlotType::Choice ? kChoiceWeight : kOtherSlotWeight, slot});
    } else {
      for (const Token& token : tokenise(part.literal)) sample.push_back({token.key, token.weight, nullptr});
    }
  }
  return sample;
}

Sample prepareTitle(const std::string& title) {
  Sample sample;
  for (const Token& token : tokenise(title)) sample.push_back({token.key, token.weight, nullptr});
  return sample;
}

Phrase preparePhrase(const std::string& text, const Choice& choice) {
  Phrase phrase{{}, &choice};
  for (const Token& token : tokenise(text)) phrase.keys.push_back(token.key);
  return phrase;
}

bool matches(const Phrase& phrase, const std::vector<Token>& tokens, std::size_t first) {
  if (phrase.keys.empty() || tokens.size() - first < phrase.keys.size()) return false;
  for (std::size_t i = 0; i < phrase.keys.size(); ++i) {
    if (tokens[first + i].key != phrase.keys[i]) return false;
  }
  return true;
}

}  // namespace

PreparedTask::PreparedTask(const Task& theTask) : task(&theTask) {
  for (const std::string& text : theTask.samples) samples.push_back(prepareSample(theTask, TextTemplate(text)));
  for (const Sample& sample : samples) {
    for (std::size_t i = 1; i < sample.size(); ++i) {
      const bool isText = sample[i].slot != nullptr && sample[i].slot->type == SlotType::Text;
      if (isText && sample[i - 1].slot == nullptr) leadIns[sample[i].slot].insert(sample[i - 1].key);
    }
  }
  samples.push_back(prepareTitle(theTask.title));
  for (const Sample& sample : samples) {
    for (const SampleElement& element : sample) {
      if (element.slot == nullptr && element.weight >= kTellingWeight) tellingWords.insert(element.key);
    }
  }
  for (const Slot& slot : theTask.slots) {
    for (const Choice& choice : slot.choices) {
      phrases[&slot].push_back(preparePhrase(choice.value, choice));
      for (const std::string& synonym : choice.synonyms) phrases[&slot].push_back(preparePhrase(synonym, choice));
    }
  }
}

const Phrase* PreparedTask::phraseAt(const Slot& slot, const std::vector<Token>& tokens, std::size_t first) const {
  const auto list = phrases.find(&slot);
  if (list == phrases.end()) return nullptr;
  const Phrase* best = nullptr;
  for (const Phrase& phrase : list->second) {
    const bool isLonger = best == nullptr || phrase.keys.size() > best->keys.size();
    if (isLonger && matches(phrase, tokens, first)) best = &phrase;
  }
  return best;
}

}  // namespace service
