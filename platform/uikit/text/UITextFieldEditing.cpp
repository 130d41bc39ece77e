#include <algorithm>

#include "platform/engine/TextLayout.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/TextEditMenu.h"
#include "platform/uikit/text/TextFieldContent.h"
#include "platform/uikit/text/TextInputOrder.h"

// How a text field is edited: first responder, keys, touches, clipboard; who is asked and who is told.

namespace platform {

// ---- Asking and telling

bool TextFieldContent::ask(SEL selector) const {
  return askOptional<bool>(delegate.lock(), selector, field.shared_from_this()).value_or(true);
}

void TextFieldContent::tell(SEL selector) const { sendOptional(delegate.lock(), selector, field.shared_from_this()); }

bool TextFieldContent::replaceByUser(NSRange range, const std::string& replacement) {
  static const SEL shouldChange = sel("textField:shouldChangeCharactersInRange:replacementString:");
  const Ref<NSObject> keeper = field.shared_from_this();
  range = edit.whole(range);
  if (range.length == 0 && replacement.empty()) return false;
  if (!askOptional<bool>(delegate.lock(), shouldChange, keeper, range, replacement).value_or(true)) return false;
  hasText = true;
  edit.replace(range, replacement);  // cut to the text again: the delegate may have set another one
  announceChange();
  return true;
}

void TextFieldContent::announceChange() {
  TextEditMenu::dismiss();
  textDidChange();
  blink.restart();
  field.sendActionsForControlEvents(UIControlEvents::editingChanged);
  NotificationCenter::defaultCenter().post(UITextFieldTextDidChangeNotification, field.shared_from_this());
  static const SEL didChangeSelection = sel("textFieldDidChangeSelection:");
  tell(didChangeSelection);
}

void TextFieldContent::selectionDidChange() {
  TextEditMenu::dismiss();
  keepCaretVisible();
  field.setNeedsDisplay();
  blink.restart();
  static const SEL didChangeSelection = sel("textFieldDidChangeSelection:");
  tell(didChangeSelection);
}

// ---- First responder

bool UITextField::isEditing() const { return content_->editing && isFirstResponder(); }
bool UITextField::canBecomeFirstResponder() { return isEnabled() && window() != nullptr; }
bool UITextField::canResignFirstResponder() { return true; }

void UITextField::setInputView(const Ref<UIView>& view) { content_->inputView = view; }

bool UITextField::becomeFirstResponder() {
  static const SEL shouldBegin = sel("textFieldShouldBeginEditing:");
  const Ref<NSObject> keeper = self();
  if (isFirstResponder()) return true;
  if (!canBecomeFirstResponder() || !content_->ask(shouldBegin)) return false;
  if (!Super::becomeFirstResponder()) return false;
  content_->begin();
  return isFirstResponder();
}

bool UITextField::resignFirstResponder() {
  static const SEL shouldEnd = sel("textFieldShouldEndEditing:");
  const Ref<NSObject> keeper = self();
  if (!isFirstResponder()) return true;
  if (!content_->ask(shouldEnd)) return false;
  if (!Super::resignFirstResponder()) return false;
  content_->finish();
  return true;
}

void TextFieldContent::begin() {
  static const SEL didBegin = sel("textFieldDidBeginEditing:");
  if (editing) return;
  editing = true;
  edit.moveTo(edit.text().size(), false);
  blink.start([weak = Weak<NSObject>(field.shared_from_this())] {
    const Ref<UITextField> owner = as<UITextField>(weak.lock());
    if (!owner) return;
    if (!owner->isFirstResponder()) return owner->content_->finish();  // it was taken away without asking
    owner->setNeedsDisplay();
  });
  if (clearsOnBegin && !edit.text().empty()) {
    replaceByUser({0, static_cast<std::int64_t>(edit.text().size())}, "");
  }
  textDidChange();
  field.sendActionsForControlEvents(UIControlEvents::editingDidBegin);
  tell(didBegin);
  NotificationCenter::defaultCenter().post(UITextFieldTextDidBeginEditingNotification, field.shared_from_this());
}

void TextFieldContent::finish() {
  static const SEL didEnd = sel("textFieldDidEndEditing:");
  if (!editing) return;
  editing = false;
  blink.stop();
  TextEditMenu::dismiss();
  edit.moveTo(edit.caret(), false);
  textDidChange();
  field.sendActionsForControlEvents(UIControlEvents::editingDidEnd);
  tell(didEnd);
  NotificationCenter::defaultCenter().post(UITextFieldTextDidEndEditingNotification, field.shared_from_this());
}

void UITextField::didMoveToWindow() {
  Super::didMoveToWindow();
  if (!window() && content_->editing && !isFirstResponder()) content_->finish();
}

// ---- Editing

NSRange UITextField::selectedRange() const { return content_->edit.selection(); }

void UITextField::setSelectedRange(NSRange range) {
  content_->edit.select(range);
  content_->selectionDidChange();
}

void UITextField::insertText(const std::string& text) {
  if (!isEnabled()) return;
  content_->replaceByUser(content_->edit.selection(), onOneLine(text));
}

void UITextField::deleteBackward() {
  if (!isEnabled()) return;
  content_->replaceByUser(content_->edit.rangeToDeleteBackward(), "");
}

void TextFieldContent::returnPressed() {
  static const SEL shouldReturn = sel("textFieldShouldReturn:");
  const Ref<NSObject> keeper = field.shared_from_this();
  if (!ask(shouldReturn)) return;
  bool endsOnExit = !field.actionsForTarget(nullptr, UIControlEvents::editingDidEndOnExit).empty();
  for (const Ref<NSObject>& target : field.allTargets()) {
    endsOnExit = endsOnExit || !field.actionsForTarget(target, UIControlEvents::editingDidEndOnExit).empty();
  }
  field.sendActionsForControlEvents(UIControlEvents::primaryActionTriggered);
  field.sendActionsForControlEvents(UIControlEvents::editingDidEndOnExit);
  if (endsOnExit) field.resignFirstResponder();
}

void UITextField::clearTapped() {
  static const SEL shouldClear = sel("textFieldShouldClear:");
  const Ref<NSObject> keeper = self();
  if (!content_->ask(shouldClear)) return;
  content_->hasText = true;
  content_->edit.setText({});
  content_->announceChange();
}

bool UITextField::keyPressed(const UIKey& key) {
  EditableText& edit = content_->edit;
  const Ref<NSObject> keeper = self();
  if (!isEnabled()) return false;
  const auto move = [&](std::size_t position) {
    edit.moveTo(position, key.shift);
    content_->selectionDidChange();
    return true;
  };
  // An arrow goes the way it points on the screen: in right to left text that is the other way through the text.
  const auto sideways = [&](bool toTheLeft) {
    const NSRange selection = edit.selection();
    if (!key.shift && edit.hasSelection()) {
      return move(static_cast<std::size_t>(toTheLeft ? selection.location : selection.end()));
    }
    if (key.control) return move(toTheLeft ? edit.previousWord(edit.caret()) : edit.nextWord(edit.caret()));
    const auto layout = content_->layout();
    const auto x = [&](std::size_t position) { return layout->caretRect(content_->toShown(position)).minX(); };
    const double here = x(edit.caret());
    const std::size_t next = edit.next(edit.caret());
    const bool reversed = next != edit.caret() ? x(next) < here : x(edit.previous(edit.caret())) > here;
    return move(toTheLeft != reversed ? edit.previous(edit.caret()) : next);
  };
  switch (key.code) {
    case UIKey::Code::character:
      if (key.control) return key.text.size() == 1 && TextEditMenu::performShortcut(*this, key.text[0]);
      if (key.text.empty()) return false;
      insertText(key.text);
      return true;
    case UIKey::Code::returnKey:
      content_->returnPressed();
      return true;
    case UIKey::Code::backspace:
      if (key.control && !edit.hasSelection()) {
        const std::size_t from = edit.previousWord(edit.caret());
        content_->replaceByUser({static_cast<std::int64_t>(from), static_cast<std::int64_t>(edit.caret() - from)}, "");
      } else {
        deleteBackward();
      }
      return true;
    case UIKey::Code::forwardDelete:
      content_->replaceByUser(edit.rangeToDeleteForward(), "");
      return true;
    case UIKey::Code::left:
      return sideways(true);
    case UIKey::Code::right:
      return sideways(false);
    case UIKey::Code::home:
    case UIKey::Code::up:
      return move(0);
    case UIKey::Code::end:
    case UIKey::Code::down:
      return move(edit.text().size());
    case UIKey::Code::tab:
      return goToNextTextInput(*this, key.shift);
    case UIKey::Code::escape:
      return false;
  }
  return false;
}

// ---- Clipboard

void UITextField::copy(const Ref<NSObject>&) {
  if (isSecureTextEntry() || !content_->edit.hasSelection()) return;
  UIPasteboard::general().setString(std::string(content_->edit.selectedText()));
}

void UITextField::cut(const Ref<NSObject>& sender) {
  if (isSecureTextEntry() || !content_->edit.hasSelection() || !isEnabled()) return;
  copy(sender);
  content_->replaceByUser(content_->edit.selection(), "");
}

void UITextField::paste(const Ref<NSObject>&) {
  const std::optional<std::string> text = UIPasteboard::general().string();
  if (text && !text->empty()) insertText(*text);
}

void UITextField::selectAll(const Ref<NSObject>&) {
  content_->edit.selectAll();
  content_->selectionDidChange();
}

// ---- Touches: a tap starts editing and places the caret, two taps select a word, three everything, a drag selects

void TextFieldContent::showMenu(CGPoint at) {
  const bool readable = !field.isSecureTextEntry();
  TextEditMenu::Commands commands;
  commands.cut = commands.copy = readable && edit.hasSelection();
  commands.paste = UIPasteboard::general().hasStrings();
  commands.selectAll = !edit.text().empty() && static_cast<std::size_t>(edit.selection().length) < edit.text().size();
  const CGRect bounds = field.bounds();
  TextEditMenu::show(as<UIView>(field.shared_from_this()), {at.x, bounds.minY(), 0, bounds.size.height}, commands);
}

bool UITextField::beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const CGPoint at = touch->locationInView(this);
  content_->longPress.begin([weak = weakSelf(), at] {
    const Ref<UITextField> field = weak.lock();
    if (!field || !field->becomeFirstResponder()) return;
    TextFieldContent& content = *field->content_;
    if (!content.edit.hasSelection()) content.edit.moveTo(content.positionAt(at), false);
    content.selectionDidChange();
    content.showMenu(at);
  });
  content_->touchSelects = isEditing();
  content_->touchAnchor = content_->positionAt(at);
  return true;
}

bool UITextField::continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  constexpr double enough = 6;  // points before a tap counts as a drag
  if (!content_->touchSelects) return true;
  const CGPoint at = touch->locationInView(this);
  const std::size_t position = content_->positionAt(at);
  const double anchorX = content_->layout()->caretRect(content_->toShown(content_->touchAnchor)).minX() +
                         content_->textLeft(*content_->layout(), content_->contentRect());
  if (position == content_->touchAnchor && std::abs(at.x - anchorX) < enough) return true;
  if (!content_->longPress.happened()) content_->longPress.cancel();
  content_->edit.moveTo(content_->touchAnchor, false);
  content_->edit.moveTo(position, true);
  content_->selectionDidChange();
  return true;
}

void UITextField::endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const Ref<NSObject> keeper = self();
  const CGPoint at = touch->locationInView(this);
  const bool wasLong = content_->longPress.happened();
  content_->longPress.cancel();
  if (wasLong) return;
  if (!isEditing()) {
    if (!bounds().contains(at) || !becomeFirstResponder()) return;
  }
  const std::size_t position = content_->positionAt(at);
  if (touch->tapCount() >= 3) {
    content_->edit.selectAll();
  } else if (touch->tapCount() == 2) {
    content_->edit.selectWordAt(position);
  } else if (!content_->edit.hasSelection() || position == content_->touchAnchor) {
    content_->edit.moveTo(position, false);
  }
  content_->selectionDidChange();
}

void UITextField::cancelTracking(const Ref<UIEvent>&) {
  content_->longPress.cancel();
  content_->touchSelects = false;
}

}  // namespace platform
