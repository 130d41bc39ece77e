#include "platform/engine/qt/QtTextLayout.h"

#include <QPainter>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double endless = 1e6;
/// Paragraphs beyond this share one layout, and so one writing direction.
constexpr std::size_t maximumParagraphs = 512;
constexpr double tabDistance = 32;
constexpr QChar ellipsis(0x2026);

/// A line of enormous letters must still fit Qt's fixed-point numbers.
std::size_t maximumUnits(double pointSize) {
  const double fitting = 8e6 / std::max(pointSize, 1.0);
  return std::min(TextLayout::maximumLength, static_cast<std::size_t>(fitting));
}

bool isLineBreak(QChar c) {
  return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator ||
         c == QChar::ParagraphSeparator;
}

/// Where the paragraph that starts there ends, and where the next one starts.
struct Span {
  qsizetype end;
  qsizetype next;
};
Span paragraphAt(const QString& text, qsizetype start) {
  qsizetype end = start;
  while (end < text.size() && !isLineBreak(text[end])) ++end;
  qsizetype next = std::min(end + 1, text.size());
  if (end + 1 < text.size() && text[end] == QLatin1Char('\r') && text[end + 1] == QLatin1Char('\n')) ++next;
  return {end, next};
}

std::unique_ptr<QTextLayout> newLayout(const QString& text, const QFont& font, QTextOption::WrapMode wrap,
                                       bool underline) {
  auto layout = std::make_unique<QTextLayout>(text, font);
  QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
  option.setWrapMode(wrap);
  option.setTabStopDistance(tabDistance);
  option.setTextDirection(Qt::LayoutDirectionAuto);
  layout->setTextOption(option);
  layout->setCacheEnabled(true);
  if (underline) {
    QTextLayout::FormatRange range{0, static_cast<int>(text.size()), {}};
    range.format.setFontUnderline(true);
    layout->setFormats({range});
  }
  return layout;
}

/// Sets all of a layout as one line.
QTextLine setAsOneLine(QTextLayout& layout) {
  layout.setCacheEnabled(true);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLineWidth(endless);
  layout.endLayout();
  return line;
}

/// The width of a part of a line, whichever way it is written.
double widthOf(const QTextLine& line, qsizetype from, qsizetype to) {
  return std::abs(line.cursorToX(static_cast<int>(to)) - line.cursorToX(static_cast<int>(from)));
}

}  // namespace

QtTextLayout::QtTextLayout(std::string_view text, const TextStyle& style, double width)
    : TextLayout(text, style, width), source_(text, maximumUnits(style.font.pointSize())) {
  truncated_ = source_.isCut();
  setAll(static_cast<const QtFace&>(style.font.face()).at(style.font.pointSize()));
  place();
}

void QtTextLayout::setAll(const QFont& font) {
  const QString& all = source_.text();
  qsizetype start = 0;
  for (;;) {
    Span span = paragraphAt(all, start);
    if (paragraphs_.size() + 1 >= maximumParagraphs) span = {all.size(), all.size()};
    const bool isLast = span.end >= all.size();
    if (setParagraph(font, start, span.end, isLast) || isLast) return;
    start = span.next;
  }
}

bool QtTextLayout::setParagraph(const QFont& font, qsizetype start, qsizetype end, bool isLast) {
  const auto wrap = !isWrapping() ? QTextOption::ManualWrap
                    : style_.lineBreakMode == NSLineBreakMode::byCharWrapping
                        ? QTextOption::WrapAnywhere
                        : QTextOption::WrapAtWordBoundaryOrAnywhere;
  QString text = source_.text().mid(start, end - start);
  text.replace(QLatin1String("\r\n"), QString(QChar::LineSeparator) + QChar(0x200B));
  for (QChar& c : text) {
    if (isLineBreak(c)) c = QChar::LineSeparator;
  }
  paragraphs_.push_back({newLayout(text, font, wrap, style_.underline), start});
  QTextLayout& layout = *paragraphs_.back().layout;
  const std::size_t paragraph = paragraphs_.size() - 1;
  bool isFull = false;
  layout.beginLayout();
  do {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(isWrapping() ? width_ : endless);
    const qsizetype lineEnd = line.textStart() + line.textLength();
    const bool isWrapped = lineEnd < text.size();
    addLine(paragraph, line.lineNumber(), {start + line.textStart(), start + lineEnd}, isWrapped);
    isFull = style_.numberOfLines > 0 && set_.size() >= static_cast<std::size_t>(style_.numberOfLines);
  } while (!isFull);
  layout.endLayout();
  if (!isFull) return false;
  const QTextLine last = qtLine(set_.size() - 1);
  const bool restOfParagraph = last.textStart() + last.textLength() < text.size();
  const bool tooWide = width_ < CGFloatMax && last.naturalTextWidth() > width_ + 0.5;
  const bool moreFollows = restOfParagraph || !isLast;
  if (!isTruncating()) {
    truncated_ = truncated_ || moreFollows;
  } else if (moreFollows || tooWide) {
    shorten(font, start + last.textStart(), end, !isLast);
  }
  return true;
}

void QtTextLayout::shorten(const QFont& font, qsizetype start, qsizetype end, bool moreFollows) {
  // Enough of the rest to fill any line; the letters behind it cannot show.
  const qsizetype most = static_cast<qsizetype>(std::min(width_, endless) / std::max(style_.font.pointSize() / 8, 0.1));
  QString text = source_.text().mid(start, std::min(end - start, std::max<qsizetype>(most, 256)));
  const bool isCut = text.size() < end - start;
  for (QChar& c : text) {
    if (isLineBreak(c)) c = QLatin1Char(' ');
  }
  qsizetype kept = 0;
  text = shortened(font, text, moreFollows || isCut, kept);
  set_.pop_back();
  lines_.pop_back();
  paragraphs_.push_back({newLayout(text, font, QTextOption::ManualWrap, style_.underline), start});
  setAsOneLine(*paragraphs_.back().layout);
  addLine(paragraphs_.size() - 1, 0, {start, start + kept}, false);
  truncated_ = true;
}

QString QtTextLayout::shortened(const QFont& font, const QString& text, bool moreFollows, qsizetype& kept) const {
  const auto measured = [&](const QString& part) {
    QTextLayout layout(part, font);
    return setAsOneLine(layout).naturalTextWidth();
  };
  const double room = std::max(0.0, std::min(width_, endless) - measured(QString(ellipsis)));
  QTextLayout whole(text, font);
  const QTextLine line = setAsOneLine(whole);
  const qsizetype size = text.size();
  kept = size;
  if (moreFollows && widthOf(line, 0, size) <= room) return text + ellipsis;

  // How many units from the front, and from the back, fit a width.
  const auto fitting = [&](double limit, bool fromFront) {
    qsizetype low = 0, high = size;
    while (low < high) {
      const qsizetype middle = (low + high + 1) / 2;
      const bool fits = (fromFront ? widthOf(line, 0, middle) : widthOf(line, size - middle, size)) <= limit;
      fits ? low = middle : high = middle - 1;
    }
    // Not inside a letter of several units.
    while (low > 0 && !whole.isValidCursorPosition(static_cast<int>(fromFront ? low : size - low))) --low;
    return low;
  };
  const auto trimmedEnd = [](QString part) {
    while (part.endsWith(QLatin1Char(' '))) part.chop(1);
    return part;
  };
  switch (style_.lineBreakMode) {
    case NSLineBreakMode::byTruncatingHead:
      return ellipsis + text.right(fitting(room, false));
    case NSLineBreakMode::byTruncatingMiddle:
      kept = fitting(room / 2, true);
      return text.left(kept) + ellipsis + text.right(fitting(room / 2, false));
    default:
      kept = fitting(room, true);
      return trimmedEnd(text.left(kept)) + ellipsis;
  }
}

void QtTextLayout::addLine(std::size_t paragraph, int line, Units units, bool isWrapped) {
  set_.push_back({paragraph, line});
  const QTextLine qt = qtLine(set_.size() - 1);
  // The last line of a paragraph shows the blanks it ends in; a wrapped line lets them hang out.
  double width = qt.naturalTextWidth();
  if (!isWrapped) width = std::max(width, widthOf(qt, qt.textStart(), qt.textStart() + qt.textLength()));
  if (isWrapping()) width = std::min(width, std::max(width_, qt.naturalTextWidth()));
  TextLine placed;
  placed.range = {source_.byteAt(units.start), source_.byteAt(units.end)};
  placed.frame.size = {width, style_.font.lineHeight()};
  lines_.push_back(placed);
}

void QtTextLayout::place() {
  double top = 0, widest = 0;
  for (const TextLine& line : lines_) widest = std::max(widest, line.frame.width());
  const double room = width_ < CGFloatMax ? width_ : widest;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    TextLine& line = lines_[i];
    QTextLine qt = qtLine(i);
    const bool isRightToLeft = paragraphs_[set_[i].paragraph].layout->text().isRightToLeft();
    NSTextAlignment alignment = style_.alignment;
    if (alignment == NSTextAlignment::natural) {
      alignment = isRightToLeft ? NSTextAlignment::right : NSTextAlignment::left;
    }
    const double gap = room - line.frame.width();
    const double x = alignment == NSTextAlignment::right ? gap : alignment == NSTextAlignment::center ? gap / 2 : 0;
    line.frame.origin = {x, top};
    line.baseline = top + style_.font.leading() / 2 + style_.font.ascender();
    // Qt puts a line written from the right at the right end of its own room: take that room away.
    const double indent = std::min(qt.cursorToX(qt.textStart()), qt.cursorToX(qt.textStart() + qt.textLength()));
    qt.setPosition({x - (isRightToLeft ? std::max(0.0, indent) : 0.0), line.baseline - qt.ascent()});
    top += style_.font.lineHeight() + (i + 1 < lines_.size() ? style_.lineSpacing : 0);
  }
  size_ = {widest, top};
  for (std::size_t i = 0; i < set_.size(); ++i) {
    const QTextLine qt = qtLine(i);
    if (qt.textLength() > 0) glyphs_.append(qt.glyphRuns(qt.textStart(), qt.textLength()));
  }
}

QTextLine QtTextLayout::qtLine(std::size_t line) const {
  return paragraphs_[set_[line].paragraph].layout->lineAt(set_[line].line);
}

void QtTextLayout::draw(QPainter& painter, QPointF origin) const {
  for (const QGlyphRun& run : glyphs_) painter.drawGlyphRun(origin, run);
}

double QtTextLayout::caretX(std::size_t line, std::size_t index) const {
  const QTextLine qt = qtLine(line);
  const qsizetype unit = source_.unitAt(index) - paragraphs_[set_[line].paragraph].start;
  const qsizetype end = qt.textStart() + qt.textLength();
  return qt.cursorToX(static_cast<int>(std::clamp<qsizetype>(unit, qt.textStart(), end)));
}

std::size_t QtTextLayout::indexAtX(std::size_t line, double x) const {
  const QTextLine qt = qtLine(line);
  const qsizetype unit = qt.xToCursor(x) + paragraphs_[set_[line].paragraph].start;
  const std::size_t index = source_.byteAt(std::min(unit, source_.text().size()));
  std::size_t end = lines_[line].range.end;
  // The end of a wrapped line is the beginning of the next one: a tap there means the last letter's end.
  if (index >= end && line + 1 < lines_.size() && lines_[line + 1].range.start == end) end = previousIndex(end);
  return std::clamp(index, lines_[line].range.start, std::max(end, lines_[line].range.start));
}

std::vector<CGRect> QtTextLayout::selectionInLine(std::size_t line, TextRange range) const {
  const QTextLine qt = qtLine(line);
  const auto& paragraph = paragraphs_[set_[line].paragraph];
  const qsizetype from = std::max<qsizetype>(source_.unitAt(range.start) - paragraph.start, qt.textStart());
  const qsizetype to =
      std::min<qsizetype>(source_.unitAt(range.end) - paragraph.start, qt.textStart() + qt.textLength());
  std::vector<CGRect> rects;
  if (from >= to) return rects;
  // Each run of one direction stands by itself; neighbours are put together.
  const CGRect& frame = lines_[line].frame;
  qsizetype at = from;
  while (at < to) {
    qsizetype next = at + 1;
    while (next < to && !paragraph.layout->isValidCursorPosition(static_cast<int>(next))) ++next;
    // The edges of this very letter: where directions change, the next one begins elsewhere.
    const double a = qt.cursorToX(static_cast<int>(at), QTextLine::Leading);
    const double b = qt.cursorToX(static_cast<int>(at), QTextLine::Trailing);
    const CGRect letter(std::min(a, b), frame.minY(), std::abs(b - a), frame.height());
    const bool touches = !rects.empty() && (std::abs(rects.back().maxX() - letter.minX()) < 0.5 ||
                                            std::abs(letter.maxX() - rects.back().minX()) < 0.5);
    touches ? void(rects.back() = rects.back().unionWith(letter)) : rects.push_back(letter);
    at = next;
  }
  std::erase_if(rects, [](const CGRect& rect) { return rect.isEmpty(); });
  return rects;
}

}  // namespace platform
