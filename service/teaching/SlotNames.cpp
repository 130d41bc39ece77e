#include "service/teaching/SlotNames.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace service {
namespace {

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLetterOrDigit(char c) {
  return static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// A word begins after a mark, with a number, and with a capital: the first of several, and the last of several that
/// small letters follow.
bool beginsWord(std::string_view text, std::size_t i) {
  if (i == 0 || !isLetterOrDigit(text[i - 1])) return true;
  if (isDigit(text[i])) return !isDigit(text[i - 1]);
  return isUpper(text[i]) && (!isUpper(text[i - 1]) || (i + 1 < text.size() && isLower(text[i + 1])));
}

const std::set<std::string, std::less<>>& wordsForKinds() {
  static const std::set<std::string, std::less<>> words{
      "bar",  "box",   "button", "cell",   "collection", "control", "edit",  "entry", "field", "grid",  "input",
      "item", "label", "list",   "picker", "row",        "screen",  "table", "text",  "view",  "wheel", "controller"};
  return words;
}

}  // namespace

std::vector<std::string> wordsOfIdentifier(std::string_view identifier) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < identifier.size(); ++i) {
    if (!isLetterOrDigit(identifier[i])) continue;
    if (beginsWord(identifier, i) || words.empty()) words.emplace_back();
    words.back() += static_cast<char>(std::tolower(static_cast<unsigned char>(identifier[i])));
  }
  return words;
}

std::string slotNameFor(std::string_view identifier, std::string_view viewName) {
  constexpr std::size_t kLongest = 40;
  std::vector<std::string> words = wordsOfIdentifier(identifier);
  const auto remove = [&words](const auto& isSuperfluous) {
    std::vector<std::string> rest;
    std::remove_copy_if(words.begin(), words.end(), std::back_inserter(rest), isSuperfluous);
    if (!rest.empty()) words = std::move(rest);
  };
  remove([](const std::string& word) { return wordsForKinds().contains(word); });
  const std::vector<std::string> ofScreen = wordsOfIdentifier(viewName);
  remove([&](const std::string& word) { return std::find(ofScreen.begin(), ofScreen.end(), word) != ofScreen.end(); });
  std::string name;
  for (const std::string& word : words) name += (name.empty() ? "" : "_") + word;
  if (name.empty() || std::isdigit(static_cast<unsigned char>(name.front())) != 0) name = "value" + name;
  return name.substr(0, kLongest);
}

std::string_view sharedBeginning(std::string_view a, std::string_view b) {
  std::size_t same = 0;
  while (same < a.size() && same < b.size() && a[same] == b[same]) ++same;
  const auto isBoundary = [](std::string_view text, std::size_t i) { return i == text.size() || beginsWord(text, i); };
  while (same > 0 && !(isBoundary(a, same) && isBoundary(b, same))) --same;
  return a.substr(0, same);
}

std::string_view ownEnding(std::string_view identifier) {
  const std::size_t mark = identifier.find_last_of("-_.:");
  if (mark != std::string_view::npos && mark + 1 < identifier.size()) return identifier.substr(mark + 1);
  std::size_t first = 1;
  while (first < identifier.size() && !beginsWord(identifier, first)) ++first;
  return first < identifier.size() ? identifier.substr(first) : identifier;
}

}  // namespace service
