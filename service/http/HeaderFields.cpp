#include "service/http/HeaderFields.h"

#include <algorithm>

namespace service {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isNameCharacter(char c) {
  const bool letterOrDigit = (c >= '0' && c <= '9') || (lower(c) >= 'a' && lower(c) <= 'z');
  return letterOrDigit || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

bool isControl(char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

/// Takes the next line off `text`, without its line end.
std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace

std::optional<HeaderFields> HeaderFields::parse(std::string_view head) {
  HeaderFields result;
  takeLine(head);
  while (!head.empty()) {
    const std::string_view line = takeLine(head);
    if (line.empty()) break;
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0) return std::nullopt;
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (!std::all_of(name.begin(), name.end(), isNameCharacter)) return std::nullopt;
    if (std::any_of(value.begin(), value.end(), isControl)) return std::nullopt;
    result.add(std::string(name), std::string(value));
  }
  return result;
}

std::optional<std::string> HeaderFields::value(std::string_view name) const {
  for (const auto& [key, value] : fields_) {
    if (equalNames(key, name)) return value;
  }
  return std::nullopt;
}

std::size_t HeaderFields::count(std::string_view name) const {
  const auto matches = [&](const auto& field) { return equalNames(field.first, name); };
  return static_cast<std::size_t>(std::count_if(fields_.begin(), fields_.end(), matches));
}

bool equalNames(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace service
