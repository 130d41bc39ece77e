#include "platform/engine/qt/QtEmoji.h"

#include <QFontDatabase>
#include <QRawFont>
#include <algorithm>

namespace platform {

namespace {

constexpr const char* family = "Noto Color Emoji";

// Letters that make an emoji of what stands before or around them.
constexpr char32_t asText = 0xFE0E;
constexpr char32_t asPicture = 0xFE0F;
constexpr char32_t joiner = 0x200D;
constexpr char32_t keycap = 0x20E3;

/// Below, letters that a font for text has are letters: arrows, digits, signs. Above, they are pictures.
constexpr char32_t firstPicture = 0x2600;

bool isSkinTone(char32_t c) { return c >= 0x1F3FB && c <= 0x1F3FF; }
bool isTag(char32_t c) { return c >= 0xE0020 && c <= 0xE007F; }
bool isRegional(char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; }

/// A font's letters; none when the machine lacks the font.
const QRawFont& colourFont() {
  static const QRawFont font =
      QFontDatabase::hasFamily(QLatin1String(family)) ? QRawFont::fromFont(QFont(QLatin1String(family))) : QRawFont();
  return font;
}

/// Walks over a text letter by letter.
class Letters {
 public:
  explicit Letters(const QString& text) : text_(text) {}
  bool isAtEnd() const { return at_ >= text_.size(); }
  qsizetype position() const { return at_; }
  /// 0 at the end.
  char32_t current() const { return letterAt(at_); }
  char32_t following() const { return letterAt(at_ + length(current())); }
  void advance() { at_ += length(current()); }
  bool skip(char32_t letter) {
    if (current() != letter) return false;
    advance();
    return true;
  }

 private:
  static qsizetype length(char32_t letter) { return QChar::requiresSurrogates(letter) ? 2 : 1; }
  char32_t letterAt(qsizetype at) const {
    if (at >= text_.size()) return 0;
    const QChar first = text_[at];
    if (!first.isHighSurrogate() || at + 1 >= text_.size()) return first.unicode();
    return QChar::surrogateToUcs4(first, text_[at + 1]);
  }
  const QString& text_;
  qsizetype at_ = 0;
};

class EmojiFinder {
 public:
  EmojiFinder(const QString& text, const QFont& font) : letters_(text), own_(font) {}

  QList<QTextLayout::FormatRange> find() {
    QList<QTextLayout::FormatRange> ranges;
    while (!letters_.isAtEnd()) {
      const qsizetype start = letters_.position();
      if (!skipEmoji()) {
        letters_.advance();
        continue;
      }
      const auto length = static_cast<int>(letters_.position() - start);
      if (!ranges.isEmpty() && ranges.back().start + ranges.back().length == start) {
        ranges.back().length += length;
      } else {
        ranges.append({static_cast<int>(start), length, {}});
      }
    }
    return ranges;
  }

 private:
  /// Whether an emoji begins here; stands behind it then.
  bool skipEmoji() {
    if (!isEmoji(letters_.current(), letters_.following())) return false;
    if (isRegional(letters_.current())) {
      letters_.advance();
      if (isRegional(letters_.current())) letters_.advance();
      return true;
    }
    for (;;) {
      letters_.advance();
      letters_.skip(asPicture);
      letters_.skip(keycap);
      while (isSkinTone(letters_.current()) || isTag(letters_.current())) letters_.advance();
      if (letters_.current() != joiner || !colourFont().supportsCharacter(letters_.following())) return true;
      letters_.advance();
    }
  }

  bool isEmoji(char32_t letter, char32_t next) {
    if (letter < 0x80 && next != asPicture && next != keycap) return false;
    if (next == asText || letter == joiner || !colourFont().supportsCharacter(letter)) return false;
    return next == asPicture || next == keycap || letter >= firstPicture || !ownFont().supportsCharacter(letter);
  }

  const QRawFont& ownFont() {
    if (!raw_.isValid()) raw_ = QRawFont::fromFont(own_);
    return raw_;
  }

  Letters letters_;
  QFont own_;
  QRawFont raw_;
};

}  // namespace

QList<QTextLayout::FormatRange> emojiRanges(const QString& text, const QFont& font) {
  // Most texts have no letter that could be one: they are not looked at twice.
  const bool mayHold = std::any_of(text.begin(), text.end(), [](QChar c) {
    return c.unicode() >= 0x2000 || c.unicode() == 0xA9 || c.unicode() == 0xAE;
  });
  if (!mayHold || !colourFont().isValid()) return {};
  QList<QTextLayout::FormatRange> ranges = EmojiFinder(text, font).find();
  for (QTextLayout::FormatRange& range : ranges) {
    range.format.setFontFamilies({QLatin1String(family)});
    // A line through, or a weight, would be drawn as an outline beside the picture.
    range.format.setFontWeight(QFont::Normal);
    range.format.setFontItalic(false);
  }
  return ranges;
}

}  // namespace platform
