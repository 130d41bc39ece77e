#pragma once

#include <QTextLayout>
#include <memory>
#include <vector>

#include "platform/engine/ShapedText.h"
#include "platform/engine/qt/QtTextSource.h"

namespace platform {

class QtTextLayout;

/// The paragraphs of a text as Qt shapes them, each when it is first asked for. They are broken into lines for one
/// layout at a time; the letters stay what they are.
class QtShapedText final : public ShapedText {
 public:
  QtShapedText(std::string_view text, const FontAtSize& font, bool underlined);

  std::shared_ptr<const TextLayout> layOut(const TextStyle& style, double width) override;

  const QtTextSource& source() const { return source_; }
  QFont qtFont() const;
  std::size_t count() const { return paragraphs_.size(); }
  struct Span {
    qsizetype start;  ///< its first unit in the source
    qsizetype end;    ///< without the break that ends it
  };
  Span span(std::size_t paragraph) const { return paragraphs_[paragraph].span; }
  /// Without lines at first; the next beginning of lines for another layout takes them away again. Each line is then
  /// made by nextLine().
  QTextLayout& beginLines(std::size_t paragraph, const QtTextLayout& owner, QTextOption::WrapMode wrap);
  /// The next line of a paragraph, wrapped at the width; not valid when there is none.
  QTextLine nextLine(std::size_t paragraph, double width);
  /// The paragraph when its lines are those of this layout, else none.
  QTextLayout* brokenFor(std::size_t paragraph, const QtTextLayout& owner) const;
  /// A layout goes away: nobody else may be taken for it.
  void forget(const QtTextLayout& owner);

  static bool isLineBreak(QChar c);
  std::unique_ptr<QTextLayout> newLayout(const QString& text) const;

 private:
  struct Paragraph {
    Span span;
    std::unique_ptr<QTextLayout> layout;
    const QtTextLayout* owner = nullptr;
    QTextOption::WrapMode wrap = QTextOption::ManualWrap;
    std::vector<Span> longWords{};  ///< in the layout's units, in order
  };
  /// True when the line that begins there lies within one word, far from the word's end.
  static bool isInsideLongWord(const Paragraph& paragraph, qsizetype start, double width);
  QtTextSource source_;
  std::vector<Paragraph> paragraphs_;
};

}  // namespace platform
