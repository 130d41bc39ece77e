#include "platform/engine/qt/QtTextLayout.h"

#include <QPainter>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr double endless = 1e6;
constexpr QChar ellipsis(0x2026);

/// Sets all of a layout as one line.
QTextLine setAsOneLine(QTextLayout& layout) {
  layout.setCacheEnabled(true);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLineWidth(endless);
  layout.endLayout();
  return line;
}

/// From Hebrew to the scripts of India and its neighbours. Plain letters of Europe, Chinese and the like fit every line.
bool mayHaveMarks(QChar c) { return c.unicode() >= 0x0590 && c.unicode() < 0x1E00; }

/// The width of a part of a line, whichever way it is written.
double widthOf(const QTextLine& line, qsizetype from, qsizetype to) {
  return std::abs(line.cursorToX(static_cast<int>(to)) - line.cursorToX(static_cast<int>(from)));
}

/// What the painter can show at all, in its own coordinates.
QRectF visiblePart(const QPainter& painter) {
  const QRectF device(0, 0, painter.device()->width(), painter.device()->height());
  const QRectF all = painter.deviceTransform().inverted().mapRect(device);
  return painter.hasClipping() ? all.intersected(painter.clipBoundingRect()) : all;
}

}  // namespace

QtTextLayout::QtTextLayout(std::shared_ptr<QtShapedText> shaped, const TextStyle& style, double width)
    : TextLayout(shaped, style, width), qtShaped_(std::move(shaped)) {
  truncated_ = source().isCut();
  setAll();
  place();
}

QtTextLayout::~QtTextLayout() { qtShaped_->forget(*this); }

QTextOption::WrapMode QtTextLayout::wrapMode() const {
  if (!isWrapping()) return QTextOption::ManualWrap;
  return style_.lineBreakMode == NSLineBreakMode::byCharWrapping ? QTextOption::WrapAnywhere
                                                                 : QTextOption::WrapAtWordBoundaryOrAnywhere;
}

void QtTextLayout::setAll() {
  for (std::size_t paragraph = 0; paragraph < qtShaped_->count(); ++paragraph) {
    if (setParagraph(paragraph, paragraph + 1 == qtShaped_->count())) return;
  }
}

bool QtTextLayout::setParagraph(std::size_t paragraph, bool isLast) {
  const auto [start, end] = qtShaped_->span(paragraph);
  QTextLayout& layout = qtShaped_->beginLines(paragraph, *this, wrapMode());
  const qsizetype size = layout.text().size();
  bool isFull = false;
  do {
    const QTextLine line = qtShaped_->nextLine(paragraph, isWrapping() ? width_ : endless);
    if (!line.isValid()) break;
    const qsizetype lineEnd = line.textStart() + line.textLength();
    const bool isWrapped = lineEnd < size;
    addLine(line, {paragraph, line.lineNumber(), start, {}}, {start + line.textStart(), start + lineEnd}, isWrapped);
    isFull = style_.numberOfLines > 0 && set_.size() >= static_cast<std::size_t>(style_.numberOfLines);
  } while (!isFull);
  if (!isFull) return false;
  const QTextLine last = layout.lineAt(layout.lineCount() - 1);
  const bool restOfParagraph = last.textStart() + last.textLength() < size;
  const bool tooWide = width_ < CGFloatMax && last.naturalTextWidth() > width_ + 0.5;
  const bool moreFollows = restOfParagraph || !isLast;
  if (!isTruncating()) {
    truncated_ = truncated_ || moreFollows;
  } else if (moreFollows || tooWide) {
    shorten(start + last.textStart(), end, !isLast);
  }
  return true;
}

void QtTextLayout::shorten(qsizetype start, qsizetype end, bool moreFollows) {
  // Enough of the rest to fill any line; the letters behind it cannot show.
  const qsizetype most = static_cast<qsizetype>(std::min(width_, endless) / std::max(style_.font.pointSize() / 8, 0.1));
  QString text = source().text().mid(start, std::min(end - start, std::max<qsizetype>(most, 256)));
  const bool isCut = text.size() < end - start;
  for (QChar& c : text) {
    if (QtShapedText::isLineBreak(c)) c = QLatin1Char(' ');
  }
  qsizetype kept = 0;
  text = shortened(text, moreFollows || isCut, kept);
  set_.pop_back();
  lines_.pop_back();
  shortened_ = qtShaped_->newLayout(text);
  const QTextLine line = setAsOneLine(*shortened_);
  addLine(line, {shortenedLine, 0, start, {}}, {start, start + kept}, false);
  truncated_ = true;
}

QString QtTextLayout::shortened(const QString& text, bool moreFollows, qsizetype& kept) const {
  const auto measured = [&](const QString& part) {
    return setAsOneLine(*qtShaped_->newLayout(part)).naturalTextWidth();
  };
  const double room = std::max(0.0, std::min(width_, endless) - measured(QString(ellipsis)));
  const auto whole = qtShaped_->newLayout(text);
  const QTextLine line = setAsOneLine(*whole);
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
    while (low > 0 && !whole->isValidCursorPosition(static_cast<int>(fromFront ? low : size - low))) --low;
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

void QtTextLayout::addLine(const QTextLine& qt, SetLine line, Units units, bool isWrapped) {
  makeRoomForMarks(qt, line);
  set_.push_back(line);
  // The last line of a paragraph shows the blanks it ends in; a wrapped line lets them hang out.
  double width = qt.naturalTextWidth();
  if (!isWrapped) width = std::max(width, widthOf(qt, qt.textStart(), qt.textStart() + qt.textLength()));
  if (isWrapping()) width = std::min(width, std::max(width_, qt.naturalTextWidth()));
  TextLine placed;
  placed.range = {source().byteAt(units.start), source().byteAt(units.end)};
  placed.frame.size = {width, line.above + style_.font.lineHeight() + line.below};
  lines_.push_back(placed);
}

void QtTextLayout::makeRoomForMarks(const QTextLine& qt, SetLine& line) const {
  const QString& text = layoutOf(line).text();
  const auto begin = text.begin() + qt.textStart();
  if (std::none_of(begin, begin + qt.textLength(), mayHaveMarks)) return;
  const double baseline = qt.y() + qt.ascent();
  const double upper = style_.font.leading() / 2 + style_.font.ascender();
  const double lower = style_.font.lineHeight() - upper;
  for (const QGlyphRun& run : qt.glyphRuns(qt.textStart(), qt.textLength())) {
    const QRawFont font = run.rawFont();
    const QList<quint32> glyphs = run.glyphIndexes();
    const QList<QPointF> positions = run.positions();
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
      const QRectF ink = font.boundingRect(glyphs[i]).translated(positions[i]);
      line.above = std::max(line.above, baseline - ink.top() - upper);
      line.below = std::max(line.below, ink.bottom() - baseline - lower);
    }
  }
}

void QtTextLayout::place() {
  double top = 0, widest = 0;
  for (const TextLine& line : lines_) widest = std::max(widest, line.frame.width());
  const double room = width_ < CGFloatMax ? width_ : widest;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    TextLine& line = lines_[i];
    QTextLine qt = qtLine(i);
    const bool isRightToLeft = layoutOf(set_[i]).textOption().textDirection() == Qt::RightToLeft;
    NSTextAlignment alignment = style_.alignment;
    if (alignment == NSTextAlignment::natural) {
      alignment = isRightToLeft ? NSTextAlignment::right : NSTextAlignment::left;
    }
    const double gap = room - line.frame.width();
    const double x = alignment == NSTextAlignment::right ? gap : alignment == NSTextAlignment::center ? gap / 2 : 0;
    line.frame.origin = {x, top};
    line.baseline = top + set_[i].above + style_.font.leading() / 2 + style_.font.ascender();
    // Qt puts a line written from the right at the right end of its own room: take that room away. Carets do not tell
    // how much it is: where the line ends in letters written from the left, the last one stands inside it.
    const double indent = qt.naturalTextRect().x() - qt.x();
    set_[i].position = {x - (isRightToLeft ? std::max(0.0, indent) : 0.0), line.baseline - qt.ascent()};
    qt.setPosition(set_[i].position);
    top += line.frame.height() + (i + 1 < lines_.size() ? style_.lineSpacing : 0);
  }
  size_ = {widest, top};
}

QTextLayout& QtTextLayout::layoutOf(const SetLine& wanted) const {
  if (wanted.paragraph == shortenedLine) return *shortened_;
  if (QTextLayout* const layout = qtShaped_->brokenFor(wanted.paragraph, *this)) return *layout;
  QTextLayout& layout = qtShaped_->beginLines(wanted.paragraph, *this, wrapMode());
  for (const SetLine& set : set_) {
    if (set.paragraph != wanted.paragraph) continue;
    qtShaped_->nextLine(wanted.paragraph, isWrapping() ? width_ : endless).setPosition(set.position);
  }
  return layout;
}

QTextLine QtTextLayout::qtLine(std::size_t line) const { return layoutOf(set_[line]).lineAt(set_[line].line); }

const QList<QGlyphRun>& QtTextLayout::glyphsOf(std::size_t line) const {
  glyphs_.resize(set_.size());
  std::optional<QList<QGlyphRun>>& runs = glyphs_[line];
  if (!runs) {
    const QTextLine qt = qtLine(line);
    runs = qt.textLength() > 0 ? qt.glyphRuns(qt.textStart(), qt.textLength()) : QList<QGlyphRun>();
  }
  return *runs;
}

void QtTextLayout::draw(QPainter& painter, QPointF origin) const {
  const QRectF visible = visiblePart(painter).translated(-origin);
  // Marks may stand far above and below their line.
  const double slack = 2 * style_.font.lineHeight();
  auto line = std::partition_point(lines_.begin(), lines_.end(),
                                   [&](const TextLine& each) { return each.frame.maxY() + slack < visible.top(); });
  for (; line != lines_.end() && line->frame.minY() - slack <= visible.bottom(); ++line) {
    for (const QGlyphRun& run : glyphsOf(static_cast<std::size_t>(line - lines_.begin()))) {
      painter.drawGlyphRun(origin, run);
    }
  }
}

std::size_t QtTextLayout::missingGlyphs() const {
  std::size_t missing = 0;
  for (std::size_t line = 0; line < set_.size(); ++line) {
    for (const QGlyphRun& run : glyphsOf(line)) {
      const QList<quint32> indexes = run.glyphIndexes();
      missing += static_cast<std::size_t>(std::count(indexes.begin(), indexes.end(), 0u));
    }
  }
  return missing;
}

double QtTextLayout::caretX(std::size_t line, std::size_t index) const {
  const QTextLine qt = qtLine(line);
  const qsizetype unit = source().unitAt(index) - set_[line].start;
  const qsizetype end = qt.textStart() + qt.textLength();
  return qt.cursorToX(static_cast<int>(std::clamp<qsizetype>(unit, qt.textStart(), end)));
}

std::size_t QtTextLayout::indexAtX(std::size_t line, double x) const {
  const QTextLine qt = qtLine(line);
  const qsizetype unit = qt.xToCursor(x) + set_[line].start;
  const std::size_t index = source().byteAt(std::min(unit, source().text().size()));
  std::size_t end = lines_[line].range.end;
  // The end of a wrapped line is the beginning of the next one: a tap there means the last letter's end.
  if (index >= end && line + 1 < lines_.size() && lines_[line + 1].range.start == end) end = previousIndex(end);
  return std::clamp(index, lines_[line].range.start, std::max(end, lines_[line].range.start));
}

std::vector<CGRect> QtTextLayout::selectionInLine(std::size_t line, TextRange range) const {
  const QTextLine qt = qtLine(line);
  const QTextLayout& layout = layoutOf(set_[line]);
  const qsizetype start = set_[line].start;
  const qsizetype from = std::max<qsizetype>(source().unitAt(range.start) - start, qt.textStart());
  const qsizetype to = std::min<qsizetype>(source().unitAt(range.end) - start, qt.textStart() + qt.textLength());
  std::vector<CGRect> rects;
  if (from >= to) return rects;
  // Each run of one direction stands by itself; neighbours are put together.
  const CGRect& frame = lines_[line].frame;
  qsizetype at = from;
  while (at < to) {
    qsizetype next = at + 1;
    while (next < to && !layout.isValidCursorPosition(static_cast<int>(next))) ++next;
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
