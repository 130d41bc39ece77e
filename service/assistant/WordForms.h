#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace service {

/// The letters of one character in the form words are compared in: lower case, no diacritics ("É" is "e", "ß" is "ss").
/// Empty for what separates words; nothing at all (but not separating) for a combining mark.
struct FoldedCharacter {
  std::string letters;
  bool isSeparator = false;
};
FoldedCharacter foldCharacter(char32_t character);

/// The common key of singular and plural of a folded word: "cups" and "cup", "berries" and "berry", "boxes" and "box"
/// give equal keys. A key is for comparing, not for showing.
std::string wordKey(std::string_view foldedWord);

/// 7 for "7", "7x", "x7" and "seven"; twelve for "dozen", two for "couple" and "pair".
std::optional<std::int64_t> numberWord(std::string_view foldedWord);

/// How much a word tells about what is wanted: 1 for most, 0.4 for "want" or "need", 0.2 for "the" or "please".
double wordWeight(std::string_view foldedWord);

/// From this weight on, a word says something.
inline constexpr double kTellingWeight = 0.4;

}  // namespace service
