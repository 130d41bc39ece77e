#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/engine/FontFace.h"
#include "platform/engine/ShapedText.h"
#include "platform/geometry/CGGeometry.h"

namespace platform {

/// `natural` follows the first strong letter: left for Latin, right for Arabic or Hebrew.
enum class NSTextAlignment : std::uint8_t { left, center, right, natural };
enum class NSLineBreakMode : std::uint8_t {
  byWordWrapping,
  byCharWrapping,
  byClipping,  ///< lines run on; nothing wraps but line breaks in the text
  byTruncatingHead,
  byTruncatingTail,
  byTruncatingMiddle
};

/// How a paragraph is set.
struct TextStyle {
  FontAtSize font;
  NSTextAlignment alignment = NSTextAlignment::natural;
  /// The truncating modes wrap by words and shorten the last line that fits `numberOfLines`.
  NSLineBreakMode lineBreakMode = NSLineBreakMode::byWordWrapping;
  /// 0 for as many as there are.
  int numberOfLines = 0;
  /// Extra points between lines.
  double lineSpacing = 0;
  bool underline = false;
  friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// Part of a text: bytes [start, end) of its UTF-8.
struct TextRange {
  std::size_t start = 0;
  std::size_t end = 0;
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

struct TextLine {
  TextRange range;  ///< without the line break that ends it
  /// Where the letters stand inside the layout; the height is the line's.
  CGRect frame;
  double baseline = 0;  ///< from the layout's top
};

/// A text shaped, broken into lines and measured; what labels, fields and cells draw and ask for carets. Never changes,
/// shared, kept in a cache of the recent ones, so that making the same one again costs a look-up; the same text at
/// another width is broken into lines again, but not shaped again. Main thread.
///
/// Indices are byte offsets into the UTF-8 text as it was given. Bytes that are not UTF-8 show as the replacement
/// character, control characters show as nothing. Text beyond `maximumLength` is not shown (the last line ends in "…").
class TextLayout {
 public:
  static constexpr std::size_t maximumLength = 65536;

  /// `width` in points; CGFloatMax (or anything not finite) for text that is never wrapped.
  static std::shared_ptr<const TextLayout> make(std::string_view text, const TextStyle& style,
                                                double width = CGFloatMax);
  /// The size that the text takes, without making callers keep the layout.
  static CGSize measure(std::string_view text, const TextStyle& style, double width = CGFloatMax) {
    return make(text, style, width)->size();
  }
  virtual ~TextLayout() = default;
  TextLayout(const TextLayout&) = delete;
  TextLayout& operator=(const TextLayout&) = delete;

  const std::string& text() const { return shaped_->text(); }
  const TextStyle& style() const { return style_; }
  /// The width given to `make`.
  double width() const { return width_; }
  /// As wide as the longest line, as high as all lines; an empty text is one line high and 0 wide. Laying out again at
  /// this width gives the same lines.
  CGSize size() const { return size_; }
  /// Never empty.
  const std::vector<TextLine>& lines() const { return lines_; }
  /// True when a mark stands for text that was left out, or lines were.
  bool isTruncated() const { return truncated_; }
  /// Letters of the lines that no font on this machine has: they show as boxes.
  virtual std::size_t missingGlyphs() const = 0;
  double firstBaseline() const { return lines_.front().baseline; }
  double lastBaseline() const { return lines_.back().baseline; }

  /// Where a caret before that byte stands, 2 points wide.
  CGRect caretRect(std::size_t index) const;
  /// The place between two letters that is nearest to the point.
  std::size_t indexAt(CGPoint point) const;
  /// One rectangle a line (more where writing directions mix).
  std::vector<CGRect> selectionRects(TextRange range) const;
  /// The next and previous place where a caret may stand: whole letters with their marks, whole emoji.
  std::size_t nextIndex(std::size_t index) const;
  std::size_t previousIndex(std::size_t index) const;
  /// The word around or next to that place.
  TextRange wordAt(std::size_t index) const;

 protected:
  TextLayout(std::shared_ptr<const ShapedText> shaped, const TextStyle& style, double width);
  std::size_t lineOf(std::size_t index) const;
  /// Horizontal place of a caret in a line, from the layout's left.
  virtual double caretX(std::size_t line, std::size_t index) const = 0;
  virtual std::size_t indexAtX(std::size_t line, double x) const = 0;
  virtual std::vector<CGRect> selectionInLine(std::size_t line, TextRange range) const = 0;
  virtual bool isCaretPlace(std::size_t index) const = 0;
  virtual bool isWordBoundary(std::size_t index) const = 0;

  TextStyle style_;
  double width_;
  CGSize size_;
  std::vector<TextLine> lines_;
  bool truncated_ = false;

 private:
  std::shared_ptr<const ShapedText> shaped_;
};

}  // namespace platform
