#include "platform/engine/qt/QtTextSource.h"

#include <algorithm>

namespace platform {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t invisible = 0x200B;
constexpr char32_t ellipsis = 0x2026;

/// The letter that starts at a byte, and how many bytes it takes; a byte that starts none is one bad letter.
struct Letter {
  char32_t value;
  std::size_t length;
};
Letter decode(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) -> unsigned { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(at);
  if (first < 0x80) return {first, 1};
  const std::size_t length = first >= 0xF0 && first < 0xF5   ? 4
                             : first >= 0xE0 && first < 0xF0 ? 3
                             : first >= 0xC2                 ? 2
                                                             : 0;
  if (length == 0 || first >= 0xF5 || at + length > text.size()) return {replacement, 1};
  char32_t value = first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return {replacement, 1};
    value = value << 6 | (byte(at + i) & 0x3F);
  }
  const bool isShortest = value >= (length == 4 ? 0x10000u : length == 3 ? 0x800u : 0x80u);
  const bool isLetter = value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
  return isShortest && isLetter ? Letter{value, length} : Letter{replacement, 1};
}

bool isControl(char32_t letter) {
  const bool isBreakOrTab = letter == U'\n' || letter == U'\r' || letter == U'\t';
  return (letter < 0x20 && !isBreakOrTab) || (letter >= 0x7F && letter < 0xA0);
}

}  // namespace

QtTextSource::QtTextSource(std::string_view utf8, std::size_t maximumUnits) {
  text_.reserve(static_cast<qsizetype>(std::min(utf8.size(), maximumUnits)));
  std::size_t at = 0;
  while (at < utf8.size()) {
    if (static_cast<std::size_t>(text_.size()) >= maximumUnits) {
      append(ellipsis, at);
      cut_ = true;
      break;
    }
    const Letter letter = decode(utf8, at);
    append(isControl(letter.value) ? invisible : letter.value, at);
    at += letter.length;
  }
  bytes_.push_back(static_cast<std::uint32_t>(at));
}

void QtTextSource::append(char32_t letter, std::size_t byte) {
  if (QChar::requiresSurrogates(letter)) {
    text_.append(QChar(QChar::highSurrogate(letter)));
    text_.append(QChar(QChar::lowSurrogate(letter)));
    bytes_.push_back(static_cast<std::uint32_t>(byte));
  } else {
    text_.append(QChar(static_cast<char16_t>(letter)));
  }
  bytes_.push_back(static_cast<std::uint32_t>(byte));
}

qsizetype QtTextSource::unitAt(std::size_t byte) const {
  const auto after = std::upper_bound(bytes_.begin(), bytes_.end(), byte);
  if (after == bytes_.begin()) return 0;
  // Both halves of a pair have the same byte; the first is the letter's beginning.
  const auto unit = std::lower_bound(bytes_.begin(), after, *(after - 1));
  return static_cast<qsizetype>(unit - bytes_.begin());
}

bool QtTextSource::isBoundary(std::unique_ptr<QTextBoundaryFinder>& finder, QTextBoundaryFinder::BoundaryType type,
                              std::size_t byte) const {
  const qsizetype unit = unitAt(byte);
  if (byteAt(unit) != byte) return false;
  if (!finder) finder = std::make_unique<QTextBoundaryFinder>(type, text_);
  finder->setPosition(unit);
  return finder->isAtBoundary();
}

bool QtTextSource::isLetterBoundary(std::size_t byte) const {
  return isBoundary(letters_, QTextBoundaryFinder::Grapheme, byte);
}

bool QtTextSource::isWordBoundary(std::size_t byte) const {
  return isBoundary(words_, QTextBoundaryFinder::Word, byte);
}

}  // namespace platform
