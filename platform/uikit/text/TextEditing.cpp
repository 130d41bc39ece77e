#include "platform/uikit/text/TextEditing.h"

#include <utility>

#include "platform/foundation/NotificationCenter.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/TextEditMenu.h"

namespace platform {

// ---- Text by program

void TextEditing::setText(std::optional<std::string> text) {
  hasText = text.has_value();
  attributes = std::nullopt;
  edit.setText(text ? std::move(*text) : std::string());
  textDidChange();
}

Ref<NSAttributedString> TextEditing::attributedText() const {
  if (!hasText) return nullptr;
  return make<NSAttributedString>(edit.text(), attributes.value_or(NSTextAttributes{font, textColor}));
}

UIColor TextEditing::shownColor() const {
  return attributes ? attributes->foregroundColor.value_or(textColor) : textColor;
}

// ---- Asking and telling

bool TextEditing::ask(SEL selector) const {
  return askOptional<bool>(delegate(), selector, view.shared_from_this()).value_or(true);
}

void TextEditing::tell(SEL selector) const { sendOptional(delegate(), selector, view.shared_from_this()); }

// ---- First responder

bool TextEditing::become(const std::function<bool()>& super) {
  const Ref<NSObject> keeper = view.shared_from_this();
  if (view.isFirstResponder()) return true;
  if (!view.canBecomeFirstResponder()) return false;
  if (isEditable() && !ask(protocol_.shouldBegin)) return false;
  if (!super()) return false;
  if (isEditable()) begin();
  view.setNeedsDisplay();
  return view.isFirstResponder();
}

bool TextEditing::resign(const std::function<bool()>& super) {
  const Ref<NSObject> keeper = view.shared_from_this();
  if (!view.isFirstResponder()) return true;
  if (editing && !ask(protocol_.shouldEnd)) return false;
  if (!super()) return false;
  finish();
  view.setNeedsDisplay();
  return true;
}

void TextEditing::begin() {
  if (editing) return;
  editing = true;
  blink.start([this, weak = Weak<NSObject>(view.shared_from_this())] {
    const Ref<NSObject> keeper = weak.lock();
    if (!keeper) return;
    if (!view.isFirstResponder()) return finish();  // it was taken away without asking
    view.setNeedsDisplay();
  });
  editingBegan();
  tell(protocol_.didBegin);
  NotificationCenter::defaultCenter().post(protocol_.begun, view.shared_from_this());
}

void TextEditing::finish() {
  if (!editing) return;
  editing = false;
  blink.stop();
  TextEditMenu::dismiss();
  edit.moveTo(edit.caret(), false);
  view.setNeedsDisplay();
  editingEnded();
  tell(protocol_.didEnd);
  NotificationCenter::defaultCenter().post(protocol_.ended, view.shared_from_this());
}

void TextEditing::windowDidChange() {
  if (!view.window() && editing && !view.isFirstResponder()) finish();
}

// ---- Editing

bool TextEditing::replaceByUser(NSRange range, const std::string& replacement) {
  const Ref<NSObject> keeper = view.shared_from_this();
  range = edit.whole(range);
  if (range.length == 0 && replacement.empty()) return false;
  if (!askOptional<bool>(delegate(), protocol_.shouldChange, keeper, range, replacement).value_or(true)) return false;
  hasText = true;
  replace(edit.whole(range), replacement);  // cut to the text again: the delegate may have set another one
  announceChange();
  return true;
}

void TextEditing::announceChange() {
  columnX = std::nullopt;
  TextEditMenu::dismiss();
  textWasEdited();
  blink.restart();
  tellOfEdit();
  NotificationCenter::defaultCenter().post(protocol_.changed, view.shared_from_this());
  tell(protocol_.didChangeSelection);
}

void TextEditing::insert(const std::string& text) {
  if (isEditable()) replaceByUser(edit.selection(), typable(text));
}

void TextEditing::deleteBackward() {
  if (isEditable()) replaceByUser(edit.rangeToDeleteBackward(), "");
}

void TextEditing::select(NSRange range) {
  edit.select(range);
  selectionDidChange();
}

void TextEditing::selectionDidChange() {
  TextEditMenu::dismiss();
  showCaret();
  view.setNeedsDisplay();
  blink.restart();
  tell(protocol_.didChangeSelection);
}

void TextEditing::moveCaret(std::size_t position, bool extend) {
  columnX = std::nullopt;
  edit.moveTo(position, extend);
  selectionDidChange();
}

// ---- Keys

bool TextEditing::isReversedAtCaret() {
  const CGRect here = caretRectAt(edit.caret());
  const std::size_t next = edit.next(edit.caret());
  const bool isAtEnd = next == edit.caret();
  const CGRect there = caretRectAt(isAtEnd ? edit.previous(edit.caret()) : next);
  if (there.minY() != here.minY()) return false;
  return isAtEnd ? there.minX() > here.minX() : there.minX() < here.minX();
}

/// An arrow goes the way it points on the screen: in right to left text that is the other way through the text.
void TextEditing::moveSideways(bool toTheLeft, const UIKey& key) {
  const NSRange selection = edit.selection();
  if (!key.shift && edit.hasSelection()) {
    return moveCaret(static_cast<std::size_t>(toTheLeft ? selection.location : selection.end()), false);
  }
  if (key.control) {
    return moveCaret(toTheLeft ? edit.previousWord(edit.caret()) : edit.nextWord(edit.caret()), key.shift);
  }
  const bool isBack = toTheLeft != isReversedAtCaret();
  moveCaret(isBack ? edit.previous(edit.caret()) : edit.next(edit.caret()), key.shift);
}

bool TextEditing::keyPressed(const UIKey& key) {
  const Ref<NSObject> keeper = view.shared_from_this();
  if (!takesKeys()) return false;
  const bool isWordwise = key.control && !edit.hasSelection();
  const auto between = [](std::size_t from, std::size_t to) {
    return NSRange{static_cast<std::int64_t>(from), static_cast<std::int64_t>(to - from)};
  };
  switch (key.code) {
    case UIKey::Code::character:
      if (key.control) return key.text.size() == 1 && TextEditMenu::performShortcut(view, key.text[0]);
      if (key.text.empty() || !isEditable()) return false;
      insert(key.text);
      return true;
    case UIKey::Code::returnKey:
      if (!isEditable()) return false;
      returnPressed();
      return true;
    case UIKey::Code::backspace:
      if (isEditable() && isWordwise) {
        replaceByUser(between(edit.previousWord(edit.caret()), edit.caret()), "");
      } else {
        deleteBackward();
      }
      return true;
    case UIKey::Code::forwardDelete:
      if (!isEditable()) return true;
      replaceByUser(isWordwise ? between(edit.caret(), edit.nextWord(edit.caret())) : edit.rangeToDeleteForward(), "");
      return true;
    case UIKey::Code::left:
    case UIKey::Code::right:
      moveSideways(key.code == UIKey::Code::left, key);
      return true;
    case UIKey::Code::up:
    case UIKey::Code::down:
      moveVertically(key.code == UIKey::Code::down, key.shift);
      return true;
    case UIKey::Code::home:
      moveCaret(key.control ? 0 : static_cast<std::size_t>(lineAround(edit.caret()).location), key.shift);
      return true;
    case UIKey::Code::end:
      moveCaret(key.control ? edit.text().size() : static_cast<std::size_t>(lineAround(edit.caret()).end()), key.shift);
      return true;
    case UIKey::Code::tab:
      return tabPressed(key.shift);
    case UIKey::Code::escape:
      return false;
  }
  return false;
}

// ---- Clipboard

void TextEditing::copy() {
  if (isSecure() || !edit.hasSelection()) return;
  UIPasteboard::general().setString(std::string(edit.selectedText()));
}

void TextEditing::cut() {
  if (isSecure() || !edit.hasSelection() || !isEditable()) return;
  copy();
  replaceByUser(edit.selection(), "");
}

void TextEditing::paste() {
  const std::optional<std::string> text = UIPasteboard::general().string();
  if (text && !text->empty()) insert(*text);
}

void TextEditing::selectAll() {
  edit.selectAll();
  selectionDidChange();
}

// ---- Touches

void TextEditing::showMenu(CGPoint at) {
  TextEditMenu::Commands commands;
  commands.copy = !isSecure() && edit.hasSelection();
  commands.cut = commands.copy && isEditable();
  commands.paste = isEditable() && UIPasteboard::general().hasStrings();
  commands.selectAll = !edit.text().empty() && static_cast<std::size_t>(edit.selection().length) < edit.text().size();
  TextEditMenu::show(as<UIView>(view.shared_from_this()), menuRect(at), commands);
}

void TextEditing::touchBegan(CGPoint at) {
  longPress.begin([this, weak = Weak<NSObject>(view.shared_from_this()), at] {
    const Ref<NSObject> keeper = weak.lock();
    if (!keeper || !view.becomeFirstResponder()) return;
    if (!edit.hasSelection()) {
      if (isEditable()) {
        edit.moveTo(positionAt(at), false);
      } else {
        edit.selectWordAt(positionAt(at));
      }
    }
    selectionDidChange();
    showMenu(at);
  });
}

void TextEditing::tapped(std::size_t position, std::int64_t count, bool placesCaret) {
  columnX = std::nullopt;
  if (count >= 3) {
    edit.selectAll();
  } else if (count == 2) {
    edit.selectWordAt(position);
  } else if (placesCaret) {
    edit.moveTo(position, false);
  }
  selectionDidChange();
}

}  // namespace platform
