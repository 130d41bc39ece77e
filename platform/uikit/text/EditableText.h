#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/foundation/NSRange.h"

namespace platform {

/// A text under edit with its caret or selection: what fields and text views share. Positions are bytes of the UTF-8
/// text and always stand between whole characters as a person sees them (letters with their marks, whole emoji, flags),
/// whatever is asked for. Text that is not UTF-8 is kept as it is. Main thread.
class EditableText {
 public:
  const std::string& text() const { return text_; }
  /// The caret goes to the end.
  void setText(std::string text);

  /// Where a selection started, and its other end, which moves: the caret.
  std::size_t anchor() const { return anchor_; }
  std::size_t caret() const { return caret_; }
  bool hasSelection() const { return anchor_ != caret_; }
  NSRange selection() const;
  std::string_view selectedText() const;
  /// Cut to the text and moved outwards to whole characters.
  void select(NSRange range);
  /// Moves the caret; `extend` keeps the anchor.
  void moveTo(std::size_t position, bool extend);
  void selectAll();
  void selectWordAt(std::size_t position);

  /// The range with its ends cut to the text and moved outwards to whole characters.
  NSRange whole(NSRange range) const;
  /// Two positions moved outwards to whole characters, also where they are one.
  NSRange around(std::size_t start, std::size_t end) const;
  /// What backspace and forward delete take away: the selection, or the character beside the caret. Empty at the ends.
  NSRange rangeToDeleteBackward() const;
  NSRange rangeToDeleteForward() const;
  /// Puts a text in the place of a range; the caret stands behind it afterwards.
  void replace(NSRange range, std::string_view replacement);

  /// Neighbouring caret positions; the ends of the text are their own.
  std::size_t next(std::size_t position) const;
  std::size_t previous(std::size_t position) const;
  std::size_t nextWord(std::size_t position) const;
  std::size_t previousWord(std::size_t position) const;
  /// The caret position at or before (after) a byte.
  std::size_t boundaryBefore(std::size_t position) const;
  std::size_t boundaryAfter(std::size_t position) const;

 private:
  std::string text_;
  std::size_t anchor_ = 0;
  std::size_t caret_ = 0;
};

/// Breaks and tabs as blanks, byte for byte, for a text that stands on one line.
std::string onOneLine(std::string_view text);

}  // namespace platform
