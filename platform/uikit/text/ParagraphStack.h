#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/engine/TextLayout.h"
#include "platform/uikit/lists/RowHeights.h"
#include "platform/uikit/text/EditableText.h"

namespace platform {

/// A long text laid out paragraph by paragraph, one under the other, each only when somebody looks at it: until then
/// its height is an estimate. An edit lays out again what it touched. Coordinates begin at the top left of the first
/// line. Indices are bytes. Main thread.
class ParagraphStack {
 public:
  /// Everything is laid out anew, for another text, style or width.
  void reset(const EditableText& text, const TextStyle& style, double width);
  /// The bytes [start, oldEnd) of the former text have become [start, newEnd).
  void replaced(const EditableText& text, std::size_t start, std::size_t oldEnd, std::size_t newEnd);

  double width() const { return width_; }
  const TextStyle& style() const { return style_; }
  double height() const { return heights_.total(); }
  std::size_t count() const { return paragraphs_.size(); }

  CGRect caretRect(std::size_t position);
  std::size_t positionAt(CGPoint point);
  std::vector<CGRect> selectionRects(TextRange range, double top, double bottom);
  /// The line that a position stands on, without its break.
  TextRange lineAt(std::size_t position);

  struct Piece {
    std::shared_ptr<const TextLayout> layout;
    double top;
  };
  /// What stands between two heights.
  std::vector<Piece> pieces(double top, double bottom);

 private:
  struct Paragraph {
    std::size_t start = 0;
    std::size_t length = 0;  ///< without the line break
    std::shared_ptr<const TextLayout> layout;
  };
  static std::vector<Paragraph> split(const EditableText& text);
  double estimate(const Paragraph& paragraph) const;
  void rebuildHeights();
  void measureAllIfFew();
  const TextLayout& layoutOf(std::size_t index);
  std::size_t indexOf(std::size_t position) const;

  std::string text_;
  TextStyle style_;
  double width_ = 0;
  std::vector<Paragraph> paragraphs_;
  RowHeights heights_;
};

}  // namespace platform
