#include "service/teaching/SampleReader.h"

#include <optional>
#include <set>
#include <stdexcept>
#include <vector>

#include "service/assistant/TextTemplate.h"
#include "service/assistant/TokenText.h"

namespace service {
namespace {

struct Value {
  std::string slot;
  std::vector<Token> words;
  bool isNumber = false;
};

/// Where a value stands in the words of a sample.
struct Place {
  const Value* value = nullptr;
  std::size_t first = 0;
};

bool stands(const Value& value, const std::vector<Token>& tokens, std::size_t first) {
  if (value.words.empty() || first + value.words.size() > tokens.size()) return false;
  for (std::size_t i = 0; i < value.words.size(); ++i) {
    const Token& mine = value.words[i];
    const Token& other = tokens[first + i];
    const bool isSame = value.isNumber ? mine.number && mine.number == other.number : mine.key == other.key;
    if (!isSame) return false;
  }
  return true;
}

class SampleReader {
 public:
  explicit SampleReader(const Json& slots) {
    for (const Json& slot : slots) {
      const std::string name = slot.at("name");
      values_.push_back({name, tokenise(slot.at("example").get<std::string>()), slot.at("type") == "number"});
    }
  }

  std::string read(const TextTemplate& sample) {
    for (const TextTemplate::Part& part : sample.parts()) {
      if (part.placeholder) used_.insert(part.placeholder->slot);
    }
    std::string result;
    for (const TextTemplate::Part& part : sample.parts())
      result += part.placeholder ? "{" + part.placeholder->slot + "}" : readWords(part.literal);
    return result;
  }

 private:
  std::string readWords(const std::string& text) {
    const std::vector<Token> tokens = tokenise(text);
    std::vector<const Value*> found(tokens.size());
    std::vector<bool> isTaken(tokens.size());
    while (const auto place = longest(tokens, isTaken)) {
      used_.insert(place->value->slot);
      found[place->first] = place->value;
      for (std::size_t i = 0; i < place->value->words.size(); ++i) isTaken[place->first + i] = true;
    }
    std::string result;
    std::size_t at = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      if (found[i] == nullptr) continue;
      result += escaped(text.substr(at, tokens[i].begin - at)) + "{" + found[i]->slot + "}";
      at = tokens[i + found[i]->words.size() - 1].end;
    }
    return result + escaped(text.substr(at));
  }

  /// The longest value first: of "12 Harbour Street" and "12" the street is meant.
  std::optional<Place> longest(const std::vector<Token>& tokens, const std::vector<bool>& isTaken) const {
    std::optional<Place> best;
    for (const Value& value : values_) {
      if (used_.contains(value.slot) || (best && value.words.size() <= best->value->words.size())) continue;
      for (std::size_t first = 0; first < tokens.size(); ++first) {
        if (!stands(value, tokens, first) || isAnyTaken(isTaken, first, value.words.size())) continue;
        best = Place{&value, first};
        break;
      }
    }
    return best;
  }

  static bool isAnyTaken(const std::vector<bool>& isTaken, std::size_t first, std::size_t count) {
    for (std::size_t i = first; i < first + count; ++i) {
      if (isTaken[i]) return true;
    }
    return false;
  }

  static std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) result += (c == '{' || c == '}') ? std::string(2, c) : std::string(1, c);
    return result;
  }

  std::vector<Value> values_;
  std::set<std::string> used_;
};

}  // namespace

std::string sampleWithSlots(const std::string& sample, const Json& slots) {
  try {
    return SampleReader(slots).read(TextTemplate(sample));
  } catch (const std::invalid_argument& error) {
    throw JsonError("\"" + sample + "\": " + error.what());
  }
}

}  // namespace service
