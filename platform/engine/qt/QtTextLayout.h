#pragma once

#include <QGlyphRun>
#include <QTextLayout>
#include <memory>
#include <vector>

#include "platform/engine/TextLayout.h"
#include "platform/engine/qt/QtFonts.h"
#include "platform/engine/qt/QtTextSource.h"

class QPainter;

namespace platform {

/// A text set by Qt: paragraphs broken into lines, the last one shortened where the style says so.
class QtTextLayout final : public TextLayout {
 public:
  QtTextLayout(std::string_view text, const TextStyle& style, double width);

  void draw(QPainter& painter, QPointF origin) const;

 protected:
  double caretX(std::size_t line, std::size_t index) const override;
  std::size_t indexAtX(std::size_t line, double x) const override;
  std::vector<CGRect> selectionInLine(std::size_t line, TextRange range) const override;
  bool isCaretPlace(std::size_t index) const override { return source_.isLetterBoundary(index); }
  bool isWordBoundary(std::size_t index) const override { return source_.isWordBoundary(index); }

 private:
  struct Paragraph {
    std::unique_ptr<QTextLayout> layout;
    qsizetype start;  // its first unit in the source
  };
  /// Part of the source.
  struct Units {
    qsizetype start;
    qsizetype end;
  };
  /// What a platform line is in Qt: a line of a paragraph.
  struct SetLine {
    std::size_t paragraph;
    int line;
  };

  void setAll(const QFont& font);
  /// Sets one paragraph; true when no more lines are wanted.
  bool setParagraph(const QFont& font, qsizetype start, qsizetype end, bool isLast);
  /// The last line again, of all that is left of its paragraph, with a mark for what does not fit.
  void shorten(const QFont& font, qsizetype start, qsizetype end, bool moreFollows);
  QString shortened(const QFont& font, const QString& text, bool moreFollows, qsizetype& kept) const;
  void addLine(std::size_t paragraph, int line, Units units, bool isWrapped);
  void place();
  QTextLine qtLine(std::size_t line) const;
  bool isWrapping() const { return style_.lineBreakMode != NSLineBreakMode::byClipping && width_ < CGFloatMax; }
  bool isTruncating() const { return style_.lineBreakMode >= NSLineBreakMode::byTruncatingHead; }

  QtTextSource source_;
  std::vector<Paragraph> paragraphs_;
  std::vector<SetLine> set_;
  QList<QGlyphRun> glyphs_;
};

}  // namespace platform
