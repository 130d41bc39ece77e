#include "platform/engine/qt/QtShapedText.h"

#include <QTextBoundaryFinder>
#include <algorithm>

#include "platform/engine/TextLayout.h"
#include "platform/engine/qt/QtEmoji.h"
#include "platform/engine/qt/QtFonts.h"
#include "platform/engine/qt/QtTextLayout.h"

namespace platform {

namespace {

/// Paragraphs beyond this share one layout, and so one writing direction.
constexpr std::size_t maximumParagraphs = 512;
constexpr double tabDistance = 32;

/// A line of enormous letters must still fit Qt's fixed-point numbers.
std::size_t maximumUnits(double pointSize) {
  const double fitting = 8e6 / std::max(pointSize, 1.0);
  return std::min(TextLayout::maximumLength, static_cast<std::size_t>(fitting));
}

/// Units from which on a word is wrapped at any letter straight away. Qt looks for the end of a word that does not fit,
/// in every line of it: a text without a single break would take seconds.
constexpr qsizetype longWord = 512;

std::vector<QtShapedText::Span> longWordsOf(const QString& text) {
  std::vector<QtShapedText::Span> words;
  if (text.size() <= longWord) return words;
  QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
  qsizetype start = 0;
  for (qsizetype end = breaks.toNextBoundary(); end > start; end = breaks.toNextBoundary()) {
    if (end - start > longWord) words.push_back({start, end});
    start = end;
  }
  return words;
}

/// Where the paragraph that begins there ends.
qsizetype endOfParagraph(const QString& text, qsizetype start) {
  while (start < text.size() && !QtShapedText::isLineBreak(text[start])) ++start;
  return start;
}

/// Behind a line break.
qsizetype behindBreak(const QString& text, qsizetype end) {
  const bool isPair = end + 1 < text.size() && text[end] == QLatin1Char('\r') && text[end + 1] == QLatin1Char('\n');
  return end + (isPair ? 2 : 1);
}

}  // namespace

bool QtShapedText::isLineBreak(QChar c) {
  return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator ||
         c == QChar::ParagraphSeparator;
}

QtShapedText::QtShapedText(std::string_view text, const FontAtSize& font, bool underlined)
    : ShapedText(text, font, underlined), source_(text, maximumUnits(font.pointSize())) {
  const QString& all = source_.text();
  qsizetype start = 0;
  for (;;) {
    const bool isLast = paragraphs_.size() + 1 >= maximumParagraphs;
    const qsizetype end = isLast ? all.size() : endOfParagraph(all, start);
    paragraphs_.push_back({{start, end}, nullptr});
    if (end >= all.size()) return;
    start = behindBreak(all, end);
  }
}

std::shared_ptr<const TextLayout> QtShapedText::layOut(const TextStyle& style, double width) {
  return std::make_shared<QtTextLayout>(std::static_pointer_cast<QtShapedText>(shared_from_this()), style, width);
}

QFont QtShapedText::qtFont() const { return static_cast<const QtFace&>(font().face()).at(font().pointSize()); }

std::unique_ptr<QTextLayout> QtShapedText::newLayout(const QString& text) const {
  auto layout = std::make_unique<QTextLayout>(text, qtFont());
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setWrapMode(QTextOption::ManualWrap);
  option.setTabStopDistance(tabDistance);
  // Told once: Qt would look through a text without letters for its direction, again for every line.
  option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  layout->setTextOption(option);
  layout->setCacheEnabled(true);
  QList<QTextLayout::FormatRange> formats = emojiRanges(text, layout->font());
  if (isUnderlined()) {
    QTextLayout::FormatRange range{0, static_cast<int>(text.size()), {}};
    range.format.setFontUnderline(true);
    formats.append(range);
  }
  if (!formats.isEmpty()) layout->setFormats(formats);
  return layout;
}

QTextLayout& QtShapedText::beginLines(std::size_t index, const QtTextLayout& owner, QTextOption::WrapMode wrap) {
  Paragraph& paragraph = paragraphs_[index];
  if (!paragraph.layout) {
    QString text = source_.text().mid(paragraph.span.start, paragraph.span.end - paragraph.span.start);
    text.replace(QLatin1String("\r\n"), QString(QChar::LineSeparator) + QChar(0x200B));
    for (QChar& c : text) {
      if (isLineBreak(c)) c = QChar::LineSeparator;
    }
    paragraph.layout = newLayout(text);
    paragraph.longWords = longWordsOf(text);
    // Never ended: what a new beginning throws away are the shaped letters, clearing takes the lines alone.
    paragraph.layout->beginLayout();
  }
  QTextLayout& layout = *paragraph.layout;
  layout.clearLayout();
  QTextOption option = layout.textOption();
  option.setWrapMode(wrap);
  layout.setTextOption(option);
  paragraph.owner = &owner;
  paragraph.wrap = wrap;
  return layout;
}

bool QtShapedText::isInsideLongWord(const Paragraph& paragraph, qsizetype start, double width) {
  const auto word = std::partition_point(paragraph.longWords.begin(), paragraph.longWords.end(),
                                         [start](const Span& each) { return each.end <= start; });
  if (word == paragraph.longWords.end() || word->start > start) return false;
  // Letters of a point and more: the line ends before the word does.
  return static_cast<double>(word->end - start) > static_cast<double>(longWord) + width;
}

QTextLine QtShapedText::nextLine(std::size_t index, double width) {
  const Paragraph& paragraph = paragraphs_[index];
  QTextLayout& layout = *paragraph.layout;
  QTextLine line = layout.createLine();
  if (!line.isValid()) return line;
  QTextOption option = layout.textOption();
  const bool wrapsAnywhere = paragraph.wrap == QTextOption::WrapAtWordBoundaryOrAnywhere &&
                             isInsideLongWord(paragraph, line.textStart(), width);
  const QTextOption::WrapMode wrap = wrapsAnywhere ? QTextOption::WrapAnywhere : paragraph.wrap;
  if (option.wrapMode() != wrap) {
    option.setWrapMode(wrap);
    layout.setTextOption(option);
  }
  line.setLineWidth(width);
  return line;
}

QTextLayout* QtShapedText::brokenFor(std::size_t paragraph, const QtTextLayout& owner) const {
  return paragraphs_[paragraph].owner == &owner ? paragraphs_[paragraph].layout.get() : nullptr;
}

void QtShapedText::forget(const QtTextLayout& owner) {
  for (Paragraph& paragraph : paragraphs_) {
    if (paragraph.owner == &owner) paragraph.owner = nullptr;
  }
}

}  // namespace platform
