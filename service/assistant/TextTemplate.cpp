#include "service/assistant/TextTemplate.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "service/assistant/Task.h"

namespace service {
namespace {

bool isName(std::string_view text) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  const auto isNameCharacter = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
  return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), isNameCharacter);
}

Placeholder parsePlaceholder(std::string_view inner) {
  Placeholder result;
  const std::string quoted = "\"{" + std::string(inner) + "}\"";
  const std::size_t sign = inner.find_first_of("+-");
  if (sign != std::string_view::npos) {
    const std::string_view digits = inner.substr(sign + 1);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), result.offset);
    const bool isNumber = error == std::errc() && end == digits.data() + digits.size() && digits.front() != '-';
    if (!isNumber || result.offset > 1'000'000) throw std::invalid_argument(quoted + " needs a number after the sign");
    if (inner[sign] == '-') result.offset = -result.offset;
  }
  const std::string_view name = inner.substr(0, sign);
  const std::size_t dot = name.find('.');
  result.slot = name.substr(0, dot);
  if (dot != std::string_view::npos) result.attribute = name.substr(dot + 1);
  if (!isName(result.slot) || (dot != std::string_view::npos && !isName(result.attribute)))
    throw std::invalid_argument(quoted + " is not a placeholder");
  return result;
}

}  // namespace

std::string Placeholder::expand(const SlotValues& values) const {
  const SlotValue& value = values.at(slot);
  const std::string& text = attribute.empty() ? value.text : value.choice->attributes.at(attribute);
  return hasOffset() ? std::to_string(std::stoll(text) + offset) : text;
}

TextTemplate::TextTemplate(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool isDoubled = i + 1 < text.size() && text[i + 1] == c;
    if ((c == '{' || c == '}') && isDoubled) {
      addLiteral(c);
      ++i;
    } else if (c == '{') {
      const std::size_t end = text.find('}', i);
      if (end == std::string_view::npos) throw std::invalid_argument("a \"{\" is not closed");
      parts_.push_back({"", parsePlaceholder(text.substr(i + 1, end - i - 1))});
      i = end;
    } else if (c == '}') {
      throw std::invalid_argument("a \"}\" was not opened");
    } else {
      addLiteral(c);
    }
  }
}

void TextTemplate::addLiteral(char c) {
  if (parts_.empty() || parts_.back().placeholder) parts_.push_back({"", std::nullopt});
  parts_.back().literal += c;
}

void TextTemplate::fix(const SlotValues& values) {
  const std::vector<Part> parts = std::exchange(parts_, {});
  for (const Part& part : parts) {
    if (part.placeholder && !values.contains(part.placeholder->slot)) {
      parts_.push_back(part);
      continue;
    }
    for (const char c : part.placeholder ? part.placeholder->expand(values) : part.literal) addLiteral(c);
  }
}

std::string TextTemplate::expand(const SlotValues& values) const {
  std::string result;
  for (const Part& part : parts_) result += part.placeholder ? part.placeholder->expand(values) : part.literal;
  return result;
}

}  // namespace service
