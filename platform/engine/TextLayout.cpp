#include "platform/engine/TextLayout.h"

#include <list>
#include <unordered_map>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/Engine.h"

namespace platform {

namespace {

/// The layouts made last, the least recently used let go first.
class LayoutCache {
 public:
  static LayoutCache& shared() {
    static LayoutCache* const cache = new LayoutCache;  // texts must outlive static destructors that still draw
    return *cache;
  }

  std::shared_ptr<const TextLayout> find(std::string_view text, const TextStyle& style, double width) {
    const auto [from, to] = index_.equal_range(hash(text, style, width));
    for (auto it = from; it != to; ++it) {
      const TextLayout& layout = **it->second;
      if (layout.width() != width || !(layout.style() == style) || layout.text() != text) continue;
      recent_.splice(recent_.begin(), recent_, it->second);
      return recent_.front();
    }
    return nullptr;
  }

  void add(std::shared_ptr<const TextLayout> layout) {
    bytes_ += cost(*layout);
    const std::size_t key = hash(layout->text(), layout->style(), layout->width());
    recent_.push_front(std::move(layout));
    index_.emplace(key, recent_.begin());
    while (recent_.size() > 1 && (recent_.size() > maximumCount || bytes_ > maximumBytes)) dropLast();
  }

 private:
  static constexpr std::size_t maximumCount = 1024;
  static constexpr std::size_t maximumBytes = 4u << 20;
  using List = std::list<std::shared_ptr<const TextLayout>>;

  static std::size_t cost(const TextLayout& layout) { return layout.text().size() + 256; }

  static std::size_t hash(std::string_view text, const TextStyle& style, double width) {
    std::size_t value = std::hash<std::string_view>{}(text);
    const auto add = [&value](std::size_t part) { value ^= part + 0x9e3779b97f4a7c15u + (value << 6) + (value >> 2); };
    add(std::hash<double>{}(width));
    add(std::hash<const void*>{}(&style.font.face()));
    add(std::hash<double>{}(style.font.pointSize()));
    add(static_cast<std::size_t>(style.numberOfLines) * 64 + static_cast<std::size_t>(style.lineBreakMode) * 8 +
        static_cast<std::size_t>(style.alignment));
    return value;
  }

  void dropLast() {
    const auto last = std::prev(recent_.end());
    const auto [from, to] = index_.equal_range(hash((*last)->text(), (*last)->style(), (*last)->width()));
    for (auto it = from; it != to; ++it) {
      if (it->second != last) continue;
      index_.erase(it);
      break;
    }
    bytes_ -= cost(**last);
    recent_.pop_back();
  }

  List recent_;
  std::unordered_multimap<std::size_t, List::iterator> index_;
  std::size_t bytes_ = 0;
};

constexpr double caretWidth = 2;

}  // namespace

TextLayout::TextLayout(std::string_view text, const TextStyle& style, double width)
    : text_(text), style_(style), width_(width) {}

std::shared_ptr<const TextLayout> TextLayout::make(std::string_view text, const TextStyle& style, double width) {
  assertMainThread("TextLayout::make");
  if (!std::isfinite(width) || width > 1e6) width = CGFloatMax;
  if (width < 0) width = 0;
  LayoutCache& cache = LayoutCache::shared();
  if (auto found = cache.find(text, style, width)) return found;
  std::shared_ptr<const TextLayout> layout = Engine::shared().layOut(text, style, width);
  cache.add(layout);
  return layout;
}

std::size_t TextLayout::lineOf(std::size_t index) const {
  // The last line that starts at or before the place: a caret at a soft break stands at the new line's beginning.
  const auto after = std::upper_bound(lines_.begin(), lines_.end(), index,
                                      [](std::size_t i, const TextLine& line) { return i < line.range.start; });
  return after == lines_.begin() ? 0 : static_cast<std::size_t>(after - lines_.begin() - 1);
}

CGRect TextLayout::caretRect(std::size_t index) const {
  index = std::min(index, text_.size());
  const std::size_t line = lineOf(index);
  const CGRect& frame = lines_[line].frame;
  return {caretX(line, std::min(index, lines_[line].range.end)) - caretWidth / 2, frame.minY(), caretWidth,
          frame.height()};
}

std::size_t TextLayout::indexAt(CGPoint point) const {
  std::size_t line = 0;
  while (line + 1 < lines_.size() && point.y >= lines_[line].frame.maxY()) ++line;
  return indexAtX(line, point.x);
}

std::vector<CGRect> TextLayout::selectionRects(TextRange range) const {
  std::vector<CGRect> rects;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const TextLine& line = lines_[i];
    const TextRange part{std::max(range.start, line.range.start), std::min(range.end, line.range.end)};
    if (part.start >= part.end) continue;
    const std::vector<CGRect> found = selectionInLine(i, part);
    rects.insert(rects.end(), found.begin(), found.end());
  }
  return rects;
}

std::size_t TextLayout::nextIndex(std::size_t index) const {
  if (index >= text_.size()) return text_.size();
  do ++index;
  while (index < text_.size() && !isCaretPlace(index));
  return index;
}

std::size_t TextLayout::previousIndex(std::size_t index) const {
  index = std::min(index, text_.size());
  if (index == 0) return 0;
  do --index;
  while (index > 0 && !isCaretPlace(index));
  return index;
}

TextRange TextLayout::wordAt(std::size_t index) const {
  index = std::min(index, text_.size());
  // Behind a word, at its blank or at the end, the word is meant.
  const auto isBlank = [this](std::size_t at) { return at >= text_.size() || text_[at] == ' ' || text_[at] == '\n'; };
  if (index > 0 && isBlank(index) && !isBlank(index - 1)) index = previousIndex(index);
  TextRange word{index, index};
  while (word.start > 0 && !isWordBoundary(word.start)) word.start = previousIndex(word.start);
  while (word.end < text_.size() && (word.end == index || !isWordBoundary(word.end))) word.end = nextIndex(word.end);
  return word;
}

}  // namespace platform
