#include "platform/uikit/text/ParagraphStack.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

/// A paragraph without a break in it is laid out in pieces of this many bytes at most.
constexpr std::size_t longest = 8192;
/// Up to this many paragraphs every one is measured at once, so that heights are exact.
constexpr std::size_t few = 200;

}  // namespace

std::vector<ParagraphStack::Paragraph> ParagraphStack::split(const EditableText& edit) {
  const std::string& text = edit.text();
  std::vector<Paragraph> paragraphs;
  std::size_t start = 0;
  for (;;) {
    std::size_t end = std::min(text.find('\n', start), text.size());
    if (end - start > longest) {
      std::size_t cut = text.rfind(' ', start + longest);
      cut = cut == std::string::npos || cut <= start ? edit.boundaryBefore(start + longest) : cut + 1;
      if (cut <= start) cut = start + longest;
      paragraphs.push_back({start, cut - start, nullptr});
      start = cut;
      continue;
    }
    paragraphs.push_back({start, end - start, nullptr});
    if (end >= text.size()) return paragraphs;
    start = end + 1;
  }
}

void ParagraphStack::reset(const EditableText& text, const TextStyle& style, double width) {
  text_ = text.text();
  style_ = style;
  width_ = width;
  paragraphs_ = split(text);
  rebuildHeights();
}

void ParagraphStack::replaced(const EditableText& text, std::size_t start, std::size_t oldEnd, std::size_t newEnd) {
  std::vector<Paragraph> before = std::exchange(paragraphs_, split(text));
  text_ = text.text();
  // Layouts of what lies wholly before the change, and of what lies wholly behind it, still hold.
  const std::size_t common = std::min(before.size(), paragraphs_.size());
  std::size_t head = 0;
  while (head < common && before[head].start == paragraphs_[head].start &&
         before[head].length == paragraphs_[head].length && before[head].start + before[head].length < start) {
    paragraphs_[head].layout = std::move(before[head].layout);
    ++head;
  }
  for (std::size_t tail = 1; tail <= common - head; ++tail) {
    Paragraph& old = before[before.size() - tail];
    Paragraph& now = paragraphs_[paragraphs_.size() - tail];
    if (old.start <= oldEnd || now.start <= newEnd || old.length != now.length) break;
    now.layout = std::move(old.layout);
  }
  rebuildHeights();
}

double ParagraphStack::estimate(const Paragraph& paragraph) const {
  const double line = style_.font.lineHeight();
  const double perLine = std::max(1.0, width_ / (style_.font.pointSize() * 0.5));
  return line * std::max(1.0, std::ceil(static_cast<double>(paragraph.length) / perLine));
}

void ParagraphStack::rebuildHeights() {
  std::vector<double> heights;
  heights.reserve(paragraphs_.size());
  for (const Paragraph& paragraph : paragraphs_) {
    heights.push_back(paragraph.layout ? paragraph.layout->size().height : estimate(paragraph));
  }
  heights_ = RowHeights(heights);
  measureAllIfFew();
}

void ParagraphStack::measureAllIfFew() {
  if (paragraphs_.size() > few || text_.size() > few * longest / 16) return;
  for (std::size_t i = 0; i < paragraphs_.size(); ++i) layoutOf(i);
}

const TextLayout& ParagraphStack::layoutOf(std::size_t index) {
  Paragraph& paragraph = paragraphs_[index];
  if (!paragraph.layout) {
    const std::string_view text = std::string_view(text_).substr(paragraph.start, paragraph.length);
    paragraph.layout = TextLayout::make(text, style_, width_);
    heights_.setHeight(index, paragraph.layout->size().height);
  }
  return *paragraph.layout;
}

std::size_t ParagraphStack::indexOf(std::size_t position) const {
  const auto after = std::upper_bound(paragraphs_.begin(), paragraphs_.end(), position,
                                      [](std::size_t at, const Paragraph& paragraph) { return at < paragraph.start; });
  return after == paragraphs_.begin() ? 0 : static_cast<std::size_t>(after - paragraphs_.begin()) - 1;
}

CGRect ParagraphStack::caretRect(std::size_t position) {
  if (paragraphs_.empty()) return {0, 0, 2, style_.font.lineHeight()};
  const std::size_t index = indexOf(position);
  const TextLayout& layout = layoutOf(index);
  const std::size_t local = std::min(position - paragraphs_[index].start, paragraphs_[index].length);
  return layout.caretRect(local).offsetBy(0, heights_.offset(index));
}

std::size_t ParagraphStack::positionAt(CGPoint point) {
  if (paragraphs_.empty()) return 0;
  const std::size_t index = std::min(heights_.rowAt(point.y), paragraphs_.size() - 1);
  const TextLayout& layout = layoutOf(index);
  const std::size_t local = layout.indexAt({point.x, point.y - heights_.offset(index)});
  return paragraphs_[index].start + std::min(local, paragraphs_[index].length);
}

TextRange ParagraphStack::lineAt(std::size_t position) {
  if (paragraphs_.empty()) return {};
  const std::size_t index = indexOf(position);
  const Paragraph& paragraph = paragraphs_[index];
  const TextLayout& layout = layoutOf(index);
  const std::size_t local = std::min(position - paragraph.start, paragraph.length);
  TextRange found{0, paragraph.length};
  for (const TextLine& line : layout.lines()) {
    if (line.range.start <= local) found = line.range;
  }
  // A soft line ends behind a blank where the next begins too: the caret stays before that blank.
  return {paragraph.start + found.start, paragraph.start + std::min(found.end, paragraph.length)};
}

std::vector<ParagraphStack::Piece> ParagraphStack::pieces(double top, double bottom) {
  std::vector<Piece> found;
  if (paragraphs_.empty()) return found;
  for (std::size_t i = std::min(heights_.rowAt(top), paragraphs_.size() - 1); i < paragraphs_.size(); ++i) {
    const double at = heights_.offset(i);
    if (at > bottom) break;
    layoutOf(i);
    found.push_back({paragraphs_[i].layout, at});
  }
  return found;
}

std::vector<CGRect> ParagraphStack::selectionRects(TextRange range, double top, double bottom) {
  std::vector<CGRect> rects;
  if (paragraphs_.empty()) return rects;
  for (std::size_t i = std::max(indexOf(range.start), heights_.rowAt(top)); i < paragraphs_.size(); ++i) {
    const Paragraph& paragraph = paragraphs_[i];
    const double at = heights_.offset(i);
    if (at > bottom || paragraph.start > range.end) break;
    const std::size_t from = range.start > paragraph.start ? range.start - paragraph.start : 0;
    const std::size_t to = std::min(range.end - paragraph.start, paragraph.length);
    if (from > paragraph.length) continue;
    for (const CGRect& rect : layoutOf(i).selectionRects({from, std::max(from, to)})) {
      rects.push_back(rect.offsetBy(0, at));
    }
    const bool breakSelected = range.end > paragraph.start + paragraph.length && from <= paragraph.length;
    if (breakSelected) {  // a selected line break shows as a little room behind the line
      const CGRect caret = layoutOf(i).caretRect(paragraph.length).offsetBy(0, at);
      rects.push_back({caret.minX(), caret.minY(), 5, caret.size.height});
    }
  }
  return rects;
}

}  // namespace platform
