#include "platform/uikit/text/TextEditing.h"

#include <utility>

#include "platform/foundation/NotificationCenter.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/TextEditMenu.h"
#include "platform/uikit/text/UndoManager.h"

namespace platform {

// ---- Text by program

void TextEditing::setText(std::optional<std::string> text) {
  hasText = text.has_value();
  attributes = std::nullopt;
  edit.setText(text ? std::move(*text) : std::string());
  history.clear();
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
  history.endRun();
  view.setNeedsDisplay();
  editingEnded();
  tell(protocol_.didEnd);
  NotificationCenter::defaultCenter().post(protocol_.ended, view.shared_from_this());
}

void TextEditing::windowDidChange() {
  if (!view.window() && editing && !view.isFirstResponder()) finish();
}

// ---- Editing

bool TextEditing::mayChange(NSRange range, const std::string& replacement) const {
  const Ref<NSObject> owner = view.shared_from_this();
  return askOptional<bool>(delegate(), protocol_.shouldChange, owner, range, replacement).value_or(true);
}

bool TextEditing::replaceByUser(NSRange range, const std::string& replacement, TextHistory::Kind kind) {
  const Ref<NSObject> keeper = view.shared_from_this();
  range = edit.whole(range);
  if (range.length == 0 && replacement.empty()) return false;
  if (!mayChange(range, replacement)) return false;
  change(edit.whole(range), replacement, kind);  // cut to the text again: the delegate may have set another one
  return true;
}

void TextEditing::change(NSRange range, const std::string& replacement, TextHistory::Kind kind) {
  const bool isSecret = isSecure();
  const auto start = static_cast<std::size_t>(range.location);
  TextHistory::Step step{start, {}, replacement, selected(), {}};
  if (!isSecret) step.removed = edit.text().substr(start, static_cast<std::size_t>(range.length));
  hasText = true;
  replace(range, replacement);
  step.after = selected();
  if (isSecret) {
    history.clear();
  } else {
    history.add(std::move(step), kind);
  }
  announceChange();
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
  if (isEditable()) replaceByUser(edit.selection(), typable(text), TextHistory::Kind::typing);
}

void TextEditing::deleteBackward() {
  if (isEditable()) replaceByUser(edit.rangeToDeleteBackward(), "");
}

void TextEditing::select(NSRange range) {
  edit.select(range);
  selectionDidChange();
}

void TextEditing::selectionDidChange() {
  history.endRun();
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
      if (key.control) return key.text.size() == 1 && TextEditMenu::performShortcut(view, key.text[0], key.shift);
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
  if (text && !text->empty() && isEditable()) replaceByUser(edit.selection(), typable(*text));
}

void TextEditing::selectAll() {
  edit.selectAll();
  selectionDidChange();
}

// ---- Undo

const Ref<UndoManager>& TextEditing::undoManager() {
  if (!undoManager_) undoManager_ = make<UndoManager>(as<UIView>(view.shared_from_this()), *this);
  return undoManager_;
}

void TextEditing::undo() {
  if (canUndo()) exchange(history.toUndo()->reversed(), &TextHistory::wasUndone);
}

void TextEditing::redo() {
  if (canRedo()) exchange(*history.toRedo(), &TextHistory::wasRedone);
}

void TextEditing::exchange(const TextHistory::Step step, void (TextHistory::*done)()) {
  const Ref<NSObject> keeper = view.shared_from_this();
  // What was put in may have joined with its neighbours, or they with each other: they are exchanged with it,
  // unchanged.
  const std::size_t end = step.start + step.removed.size();
  const NSRange range = edit.around(step.start, end);
  const auto from = static_cast<std::size_t>(range.location), to = static_cast<std::size_t>(range.end());
  const std::string& text = edit.text();
  const std::string replacement = text.substr(from, step.start - from) + step.inserted + text.substr(end, to - end);
  const std::uint64_t version = history.version();
  if (!mayChange(range, replacement)) return;
  if (history.version() != version) return;  // the delegate did something to the text itself
  (history.*done)();
  hasText = true;
  replace(range, replacement);
  edit.moveTo(step.after.anchor, false);
  edit.moveTo(step.after.caret, true);
  announceChange();
}

// ---- Touches

void TextEditing::showMenu(CGPoint at) {
  TextEditMenu::Commands commands;
  commands.copy = !isSecure() && edit.hasSelection();
  commands.cut = commands.copy && isEditable();
  commands.paste = isEditable() && UIPasteboard::general().hasStrings();
  commands.undo = canUndo() && !edit.hasSelection();
  commands.redo = canRedo() && !edit.hasSelection();
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
