#pragma once

#include <QGlyphRun>
#include <QPointF>
#include <QTextLayout>
#include <memory>
#include <optional>
#include <vector>

#include "platform/engine/TextLayout.h"
#include "platform/engine/qt/QtShapedText.h"

class QPainter;

namespace platform {

/// A text set by Qt: paragraphs broken into lines, the last one shortened where the style says so. Other widths of the
/// same text have the paragraphs to themselves in between; they are then broken again for the next question.
class QtTextLayout final : public TextLayout {
 public:
  QtTextLayout(std::shared_ptr<QtShapedText> shaped, const TextStyle& style, double width);
  ~QtTextLayout() override;

  void draw(QPainter& painter, QPointF origin) const;
  std::size_t missingGlyphs() const override;

 protected:
  double caretX(std::size_t line, std::size_t index) const override;
  std::size_t indexAtX(std::size_t line, double x) const override;
  std::vector<CGRect> selectionInLine(std::size_t line, TextRange range) const override;
  bool isCaretPlace(std::size_t index) const override { return source().isLetterBoundary(index); }
  bool isWordBoundary(std::size_t index) const override { return source().isWordBoundary(index); }

 private:
  const QList<QGlyphRun>& glyphsOf(std::size_t line) const;
  /// Part of the source.
  struct Units {
    qsizetype start;
    qsizetype end;
  };
  /// What a platform line is in Qt: a line of a paragraph, or the shortened one.
  struct SetLine {
    std::size_t paragraph;
    int line;
    qsizetype start;  ///< the paragraph's first unit in the source
    QPointF position;
    double above = 0;  ///< room that letters of another font than the text's own need above its line, and below
    double below = 0;
  };
  static constexpr std::size_t shortenedLine = static_cast<std::size_t>(-1);

  const QtTextSource& source() const { return qtShaped_->source(); }
  QTextOption::WrapMode wrapMode() const;
  void setAll();
  /// Sets one paragraph; true when no more lines are wanted.
  bool setParagraph(std::size_t paragraph, bool isLast);
  /// The last line again, of all that is left of its paragraph, with a mark for what does not fit.
  void shorten(qsizetype start, qsizetype end, bool moreFollows);
  QString shortened(const QString& text, bool moreFollows, qsizetype& kept) const;
  void addLine(const QTextLine& qt, SetLine line, Units units, bool isWrapped);
  /// Letters with marks above and below stand in fonts of their own, which want more room than the text's font.
  void makeRoomForMarks(const QTextLine& qt, SetLine& line) const;
  void place();
  QTextLayout& layoutOf(const SetLine& line) const;
  QTextLine qtLine(std::size_t line) const;
  bool isWrapping() const { return style_.lineBreakMode != NSLineBreakMode::byClipping && width_ < CGFloatMax; }
  bool isTruncating() const { return style_.lineBreakMode >= NSLineBreakMode::byTruncatingHead; }

  std::shared_ptr<QtShapedText> qtShaped_;
  std::unique_ptr<QTextLayout> shortened_;
  std::vector<SetLine> set_;
  mutable std::vector<std::optional<QList<QGlyphRun>>> glyphs_;  ///< of the lines that were asked for
};

}  // namespace platform
