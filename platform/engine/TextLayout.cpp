#include "platform/engine/TextLayout.h"

#include <algorithm>
#include <list>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/Engine.h"

namespace platform {

namespace {

/// The texts shaped last, each with the layouts made of it; the least recently used let go first.
class LayoutCache {
 public:
  static LayoutCache& shared() {
    static LayoutCache* const cache = new LayoutCache;  // texts must outlive static destructors that still draw
    return *cache;
  }

  std::shared_ptr<const TextLayout> layout(std::string_view text, const TextStyle& style, double width) {
    Entry& entry = shaped(text, style);
    for (auto it = entry.layouts.begin(); it != entry.layouts.end(); ++it) {
      if ((*it)->width() != width || !((*it)->style() == style)) continue;
      std::rotate(it, it + 1, entry.layouts.end());
      return entry.layouts.back();
    }
    if (entry.layouts.size() == mostWidths) {
      entry.layouts.erase(entry.layouts.begin());
    } else {
      bytes_ += perLayout;
    }
    entry.layouts.push_back(entry.shaped->layOut(style, width));
    const std::shared_ptr<const TextLayout> made = entry.layouts.back();
    while (recent_.size() > 1 && bytes_ > maximumBytes) dropLast();
    return made;
  }

 private:
  static constexpr std::size_t mostWidths = 8;
  static constexpr std::size_t perLayout = 256;
  static constexpr std::size_t perText = 4096;  // a cache of a thousand texts
  static constexpr std::size_t maximumBytes = 4u << 20;
  struct Entry {
    std::shared_ptr<ShapedText> shaped;
    std::vector<std::shared_ptr<const TextLayout>> layouts;  ///< the last used one last
    std::size_t cost() const { return perText + shaped->text().size() + layouts.size() * perLayout; }
  };
  using List = std::list<Entry>;

  static std::size_t hash(std::string_view text, const FontAtSize& font, bool underlined) {
    std::size_t value = std::hash<std::string_view>{}(text);
    const auto add = [&value](std::size_t part) { value ^= part + 0x9e3779b97f4a7c15u + (value << 6) + (value >> 2); };
    add(std::hash<const void*>{}(&font.face()));
    add(std::hash<double>{}(font.pointSize()) * 2 + (underlined ? 1 : 0));
    return value;
  }

  Entry& shaped(std::string_view text, const TextStyle& style) {
    const std::size_t key = hash(text, style.font, style.underline);
    const auto [from, to] = index_.equal_range(key);
    for (auto it = from; it != to; ++it) {
      const ShapedText& known = *it->second->shaped;
      if (known.isUnderlined() != style.underline || !(known.font() == style.font) || known.text() != text) continue;
      recent_.splice(recent_.begin(), recent_, it->second);
      return recent_.front();
    }
    recent_.push_front({Engine::shared().shape(text, style.font, style.underline), {}});
    index_.emplace(key, recent_.begin());
    bytes_ += recent_.front().cost();
    return recent_.front();
  }

  void dropLast() {
    const auto last = std::prev(recent_.end());
    const ShapedText& text = *last->shaped;
    const auto [from, to] = index_.equal_range(hash(text.text(), text.font(), text.isUnderlined()));
    for (auto it = from; it != to; ++it) {
      if (it->second != last) continue;
      index_.erase(it);
      break;
    }
    bytes_ -= last->cost();
    recent_.pop_back();
  }

  List recent_;
  std::unordered_multimap<std::size_t, List::iterator> index_;
  std::size_t bytes_ = 0;
};

constexpr double caretWidth = 2;

}  // namespace

TextLayout::TextLayout(std::shared_ptr<const ShapedText> shaped, const TextStyle& style, double width)
    : style_(style), width_(width), shaped_(std::move(shaped)) {}

std::shared_ptr<const TextLayout> TextLayout::make(std::string_view text, const TextStyle& style, double width) {
  assertMainThread("TextLayout::make");
  if (!std::isfinite(width) || width > 1e6) width = CGFloatMax;
  if (width < 0) width = 0;
  return LayoutCache::shared().layout(text, style, width);
}

std::size_t TextLayout::lineOf(std::size_t index) const {
  // The last line that starts at or before the place: a caret at a soft break stands at the new line's beginning.
  const auto after = std::upper_bound(lines_.begin(), lines_.end(), index,
                                      [](std::size_t i, const TextLine& line) { return i < line.range.start; });
  return after == lines_.begin() ? 0 : static_cast<std::size_t>(after - lines_.begin() - 1);
}

CGRect TextLayout::caretRect(std::size_t index) const {
  index = std::min(index, text().size());
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
  if (index >= text().size()) return text().size();
  do ++index;
  while (index < text().size() && !isCaretPlace(index));
  return index;
}

std::size_t TextLayout::previousIndex(std::size_t index) const {
  index = std::min(index, text().size());
  if (index == 0) return 0;
  do --index;
  while (index > 0 && !isCaretPlace(index));
  return index;
}

TextRange TextLayout::wordAt(std::size_t index) const {
  index = std::min(index, text().size());
  // Behind a word, at its blank or at the end, the word is meant.
  const auto isBlank = [this](std::size_t at) {
    return at >= text().size() || text()[at] == ' ' || text()[at] == '\n';
  };
  if (index > 0 && isBlank(index) && !isBlank(index - 1)) index = previousIndex(index);
  TextRange word{index, index};
  while (word.start > 0 && !isWordBoundary(word.start)) word.start = previousIndex(word.start);
  while (word.end < text().size() && (word.end == index || !isWordBoundary(word.end))) word.end = nextIndex(word.end);
  return word;
}

}  // namespace platform
