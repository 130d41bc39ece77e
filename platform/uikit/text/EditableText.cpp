#include "platform/uikit/text/EditableText.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/engine/TextLayout.h"

namespace platform {

namespace {

bool isPlain(const std::string& text, std::size_t at) {
  if (at >= text.size()) return false;
  const auto byte = static_cast<unsigned char>(text[at]);
  return byte >= 0x20 && byte < 0x7f;
}

/// A piece of the text around a position, shaped, so that questions about characters cost the same in a long text. It
/// begins at a byte before which a character surely ends (plain ASCII), or far enough away.
class Window {
 public:
  Window(const std::string& text, std::size_t position) {
    constexpr std::size_t reach = 96;
    constexpr std::size_t farthest = 4096;
    start_ = position > reach ? position - reach : 0;
    while (start_ > 0 && !isPlain(text, start_) && position - start_ < farthest) --start_;
    std::size_t end = std::min(text.size(), position + reach);
    while (end < text.size() && !isPlain(text, end) && end - position < farthest) ++end;
    TextStyle style;
    style.lineBreakMode = NSLineBreakMode::byClipping;
    layout_ = TextLayout::make(std::string_view(text).substr(start_, end - start_), style);
  }

  std::size_t next(std::size_t position) const { return start_ + layout_->nextIndex(position - start_); }
  std::size_t previous(std::size_t position) const { return start_ + layout_->previousIndex(position - start_); }
  NSRange word(std::size_t position) const {
    const TextRange range = layout_->wordAt(position - start_);
    return {static_cast<std::int64_t>(start_ + range.start), static_cast<std::int64_t>(range.end - range.start)};
  }

 private:
  std::size_t start_;
  std::shared_ptr<const TextLayout> layout_;
};

constexpr std::size_t indicatorBytes = 4;
constexpr std::size_t flagBytes = 2 * indicatorBytes;

/// Flags are pairs of regional indicators, and which two make a pair is counted from the beginning of their row, which
/// may lie far outside of a window. This is the row that a position is in or begins, empty for none.
NSRange rowOfFlags(const std::string& text, std::size_t position) {
  const auto isIndicator = [&](std::size_t at) {
    if (at + indicatorBytes > text.size() || text.compare(at, 3, "\xF0\x9F\x87") != 0) return false;
    const auto last = static_cast<unsigned char>(text[at + 3]);
    return last >= 0xA6 && last <= 0xBF;
  };
  std::size_t start = std::min(position, text.size());
  for (std::size_t i = 1; i < indicatorBytes && start > 0 && start < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
  }
  std::size_t end = start;
  while (isIndicator(end)) end += indicatorBytes;
  while (start >= indicatorBytes && isIndicator(start - indicatorBytes)) start -= indicatorBytes;
  return {static_cast<std::int64_t>(start), static_cast<std::int64_t>(end - start)};
}

bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

}  // namespace

std::string onOneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(line.begin(), line.end(), isSpace, ' ');
  return line;
}

void EditableText::setText(std::string text) {
  text_ = std::move(text);
  anchor_ = caret_ = text_.size();
}

NSRange EditableText::selection() const {
  const std::size_t start = std::min(anchor_, caret_);
  return {static_cast<std::int64_t>(start), static_cast<std::int64_t>(std::max(anchor_, caret_) - start)};
}

std::string_view EditableText::selectedText() const {
  const NSRange range = selection();
  return std::string_view(text_).substr(static_cast<std::size_t>(range.location),
                                        static_cast<std::size_t>(range.length));
}

NSRange EditableText::whole(NSRange range) const {
  const auto size = static_cast<std::int64_t>(text_.size());
  const std::int64_t start = std::clamp<std::int64_t>(range.location, 0, size);
  const std::int64_t length = std::clamp<std::int64_t>(range.length, 0, size - start);
  const std::size_t from = boundaryBefore(static_cast<std::size_t>(start));
  const std::size_t to = length == 0 ? from : boundaryAfter(static_cast<std::size_t>(start + length));
  return {static_cast<std::int64_t>(from), static_cast<std::int64_t>(to - from)};
}

NSRange EditableText::around(std::size_t start, std::size_t end) const {
  const std::size_t from = boundaryBefore(start);
  return {static_cast<std::int64_t>(from), static_cast<std::int64_t>(boundaryAfter(end) - from)};
}

void EditableText::select(NSRange range) {
  const NSRange selected = whole(range);
  anchor_ = static_cast<std::size_t>(selected.location);
  caret_ = static_cast<std::size_t>(selected.end());
}

void EditableText::moveTo(std::size_t position, bool extend) {
  caret_ = boundaryBefore(position);
  if (!extend) anchor_ = caret_;
}

void EditableText::selectAll() {
  anchor_ = 0;
  caret_ = text_.size();
}

void EditableText::selectWordAt(std::size_t position) {
  position = boundaryBefore(position);
  if (text_.empty()) return;
  const NSRange word = Window(text_, position).word(position);
  select(word);
}

NSRange EditableText::rangeToDeleteBackward() const {
  if (hasSelection()) return selection();
  const std::size_t from = previous(caret_);
  return {static_cast<std::int64_t>(from), static_cast<std::int64_t>(caret_ - from)};
}

NSRange EditableText::rangeToDeleteForward() const {
  if (hasSelection()) return selection();
  return {static_cast<std::int64_t>(caret_), static_cast<std::int64_t>(next(caret_) - caret_)};
}

void EditableText::replace(NSRange range, std::string_view replacement) {
  range = whole(range);
  text_.replace(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length), replacement);
  // What was put in may have joined with what follows: a base letter before a mark, one half of a flag.
  anchor_ = caret_ = boundaryAfter(static_cast<std::size_t>(range.location) + replacement.size());
}

std::size_t EditableText::next(std::size_t position) const {
  if (position >= text_.size()) return text_.size();
  if (isPlain(text_, position) && isPlain(text_, position + 1)) return position + 1;  // plain letters join with nothing
  const NSRange flags = rowOfFlags(text_, position);
  if (flags.contains(static_cast<std::int64_t>(position))) {
    const std::size_t start = static_cast<std::size_t>(flags.location);
    return std::min(static_cast<std::size_t>(flags.end()), start + ((position - start) / flagBytes + 1) * flagBytes);
  }
  return std::min(text_.size(), Window(text_, position).next(position));
}

std::size_t EditableText::previous(std::size_t position) const {
  if (position == 0 || text_.empty()) return 0;
  position = std::min(position, text_.size());
  if (isPlain(text_, position - 1) && (position == 1 || isPlain(text_, position - 2))) return position - 1;
  const NSRange flags = rowOfFlags(text_, position - 1);
  if (flags.contains(static_cast<std::int64_t>(position) - 1)) {
    const std::size_t start = static_cast<std::size_t>(flags.location);
    return start + (position - 1 - start) / flagBytes * flagBytes;
  }
  return Window(text_, position).previous(position);
}

std::size_t EditableText::boundaryBefore(std::size_t position) const {
  if (position == 0) return 0;
  if (position >= text_.size()) return text_.size();
  if (isPlain(text_, position) && isPlain(text_, position - 1)) return position;
  const NSRange flags = rowOfFlags(text_, position);
  if (flags.contains(static_cast<std::int64_t>(position))) {
    const std::size_t start = static_cast<std::size_t>(flags.location);
    return start + (position - start) / flagBytes * flagBytes;
  }
  const Window window(text_, position);
  const std::size_t before = window.previous(position);
  return window.next(before) == position ? position : before;
}

std::size_t EditableText::boundaryAfter(std::size_t position) const {
  const std::size_t before = boundaryBefore(position);
  return before == std::min(position, text_.size()) ? before : next(before);
}

std::size_t EditableText::nextWord(std::size_t position) const {
  while (position < text_.size() && isSpace(text_[position])) ++position;
  if (position >= text_.size()) return text_.size();
  const NSRange word = Window(text_, position).word(position);
  return std::max(next(position), static_cast<std::size_t>(word.end()));
}

std::size_t EditableText::previousWord(std::size_t position) const {
  while (position > 0 && isSpace(text_[position - 1])) --position;
  if (position == 0) return 0;
  const std::size_t inside = previous(position);
  const NSRange word = Window(text_, inside).word(inside);
  return std::min(inside, static_cast<std::size_t>(word.location));
}

}  // namespace platform
