#include "service/assistant/WordForms.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <set>

namespace service {
namespace {

/// U+00C0 to U+00DF; the lower half of the block, 0x20 further, folds alike but for the last.
constexpr std::array<std::string_view, 32> kLatin1{"a", "a", "a", "a", "a", "a", "ae", "c", "e",  "e", "e",
                                                   "e", "i", "i", "i", "i", "d", "n",  "o", "o",  "o", "o",
                                                   "o", "",  "o", "u", "u", "u", "u",  "y", "th", "ss"};

/// U+0100 to U+017F.
constexpr std::string_view kLatinExtended =
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiijjjjkkkllllllllllnnnnnnnnn"
    "oooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(kLatinExtended.size() == 128);

std::string encode(char32_t character) {
  std::string text;
  const auto add = [&](char32_t bits) { text += static_cast<char>(bits); };
  if (character < 0x800) {
    add(0xC0 | (character >> 6));
  } else if (character < 0x10000) {
    add(0xE0 | (character >> 12));
    add(0x80 | ((character >> 6) & 0x3F));
  } else {
    add(0xF0 | (character >> 18));
    add(0x80 | ((character >> 12) & 0x3F));
    add(0x80 | ((character >> 6) & 0x3F));
  }
  add(0x80 | (character & 0x3F));
  return text;
}

char32_t lowerGreekOrCyrillic(char32_t c) {
  if ((c >= 0x391 && c <= 0x3A9) || (c >= 0x410 && c <= 0x42F)) return c + 0x20;
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;
  return c;
}

bool isSymbol(char32_t c) {
  return c < 0xC0 || c == 0xD7 || c == 0xF7 || (c >= 0x2000 && c <= 0x2BFF) || (c >= 0x3000 && c <= 0x303F) ||
         c == 0xFFFD || c >= 0x1F000;
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.size() <= 9 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

FoldedCharacter foldCharacter(char32_t character) {
  const char32_t c = character;
  if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z')) return {std::string(1, static_cast<char>(c)), false};
  if (c >= 'A' && c <= 'Z') return {std::string(1, static_cast<char>(c - 'A' + 'a')), false};
  if (isSymbol(c)) return {"", true};
  if (c == 0xFF) return {"y", false};
  if (c <= 0xFF) return {std::string(kLatin1[(c - 0xC0) & 0x1F]), false};
  if (c <= 0x17F) return {std::string(1, kLatinExtended[c - 0x100]), false};
  if (c >= 0x300 && c <= 0x36F) return {"", false};
  return {encode(lowerGreekOrCyrillic(c)), false};
}

std::string wordKey(std::string_view foldedWord) {
  std::string_view stem = foldedWord;
  if (stem.size() <= 2) return std::string(stem);
  const bool keepsLastS = stem.ends_with("ss") || stem.ends_with("us") || stem.ends_with("is");
  if (stem.size() > 3 && stem.ends_with('s') && !keepsLastS) stem.remove_suffix(1);
  // Dropping the last "e" as well is what makes "boxes" and "box", and "cookies" and "cookie", meet.
  if (stem.size() > 3 && stem.ends_with('e')) stem.remove_suffix(1);
  std::string key(stem);
  if (key.size() > 3 && key.back() == 'y') key.back() = 'i';
  return key;
}

std::optional<std::int64_t> numberWord(std::string_view foldedWord) {
  static const std::map<std::string_view, std::int64_t> kWords{
      {"one", 1},       {"two", 2},       {"three", 3},    {"four", 4},     {"five", 5},       {"six", 6},
      {"seven", 7},     {"eight", 8},     {"nine", 9},     {"ten", 10},     {"eleven", 11},    {"twelve", 12},
      {"thirteen", 13}, {"fourteen", 14}, {"fifteen", 15}, {"sixteen", 16}, {"seventeen", 17}, {"eighteen", 18},
      {"nineteen", 19}, {"twenty", 20},   {"couple", 2},   {"pair", 2},     {"dozen", 12}};
  if (const auto word = kWords.find(foldedWord); word != kWords.end()) return word->second;
  std::string_view digits = foldedWord;
  if (digits.size() > 1 && digits.starts_with('x'))
    digits.remove_prefix(1);
  else if (digits.size() > 1 && digits.ends_with('x'))
    digits.remove_suffix(1);
  if (!isDigits(digits)) return std::nullopt;
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

double wordWeight(std::string_view foldedWord) {
  static const std::set<std::string_view> kSilent{
      "a",     "am",    "an",     "and",  "any",   "are", "at",    "be",     "but",    "by",     "can",
      "could", "d",     "did",    "do",   "does",  "for", "from",  "hello",  "hey",    "hi",     "how",
      "i",     "if",    "in",     "into", "is",    "it",  "its",   "just",   "kindly", "ll",     "m",
      "may",   "me",    "might",  "my",   "now",   "of",  "on",    "or",     "our",    "please", "re",
      "s",     "shall", "should", "so",   "some",  "t",   "thank", "thanks", "that",   "the",    "then",
      "these", "this",  "those",  "to",   "us",    "ve",  "was",   "we",     "what",   "when",   "where",
      "which", "who",   "will",   "with", "would", "you", "your"};
  static const std::set<std::string_view> kFaint{"get", "give", "go", "have", "let", "like", "make", "need", "want"};
  if (kSilent.contains(foldedWord)) return 0.2;
  if (kFaint.contains(foldedWord)) return kTellingWeight;
  return 1;
}

}  // namespace service
