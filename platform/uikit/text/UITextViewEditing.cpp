#include <algorithm>

#include "platform/foundation/NotificationCenter.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/text/TextEditMenu.h"
#include "platform/uikit/text/TextInputOrder.h"
#include "platform/uikit/text/TextViewContent.h"
#include "platform/uikit/touch/UITouch.h"

// How a text view is edited: first responder, keys, touches, clipboard; who is asked and who is told.

namespace platform {

// ---- Asking and telling

bool TextViewContent::ask(SEL selector) const {
  return askOptional<bool>(view.delegate(), selector, view.shared_from_this()).value_or(true);
}

void TextViewContent::tell(SEL selector) const { sendOptional(view.delegate(), selector, view.shared_from_this()); }

bool TextViewContent::replaceByUser(NSRange range, const std::string& replacement) {
  static const SEL shouldChange = sel("textView:shouldChangeTextInRange:replacementText:");
  static const SEL didChange = sel("textViewDidChange:");
  const Ref<NSObject> keeper = view.shared_from_this();
  range = edit.whole(range);
  if (range.length == 0 && replacement.empty()) return false;
  if (!askOptional<bool>(view.delegate(), shouldChange, keeper, range, replacement).value_or(true)) return false;
  range = edit.whole(range);  // the delegate may have set another text
  hasText = true;
  laidOut();
  edit.replace(range, replacement);
  const auto start = static_cast<std::size_t>(range.location);
  paragraphs.replaced(edit, start, static_cast<std::size_t>(range.end()), start + replacement.size());
  columnX = std::nullopt;
  TextEditMenu::dismiss();
  showCaret();
  view.setNeedsDisplay();
  view.invalidateIntrinsicContentSize();
  blink.restart();
  tell(didChange);
  NotificationCenter::defaultCenter().post(UITextViewTextDidChangeNotification, keeper);
  static const SEL didChangeSelection = sel("textViewDidChangeSelection:");
  tell(didChangeSelection);
  return true;
}

void TextViewContent::selectionDidChange() {
  TextEditMenu::dismiss();
  showCaret();
  view.setNeedsDisplay();
  blink.restart();
  static const SEL didChangeSelection = sel("textViewDidChangeSelection:");
  tell(didChangeSelection);
}

// ---- First responder

bool UITextView::canBecomeFirstResponder() { return (isEditable() || isSelectable()) && window() != nullptr; }
bool UITextView::canResignFirstResponder() { return true; }
bool UITextView::wantsKeyboard() { return isEditable(); }

bool UITextView::becomeFirstResponder() {
  static const SEL shouldBegin = sel("textViewShouldBeginEditing:");
  const Ref<NSObject> keeper = self();
  if (isFirstResponder()) return true;
  if (!canBecomeFirstResponder()) return false;
  if (isEditable() && !content_->ask(shouldBegin)) return false;
  if (!Super::becomeFirstResponder()) return false;
  if (isEditable()) content_->begin();
  setNeedsDisplay();
  return isFirstResponder();
}

bool UITextView::resignFirstResponder() {
  static const SEL shouldEnd = sel("textViewShouldEndEditing:");
  const Ref<NSObject> keeper = self();
  if (!isFirstResponder()) return true;
  if (content_->editing && !content_->ask(shouldEnd)) return false;
  if (!Super::resignFirstResponder()) return false;
  content_->finish();
  setNeedsDisplay();
  return true;
}

void TextViewContent::begin() {
  static const SEL didBegin = sel("textViewDidBeginEditing:");
  if (editing) return;
  editing = true;
  blink.start([weak = Weak<NSObject>(view.shared_from_this())] {
    const Ref<UITextView> owner = as<UITextView>(weak.lock());
    if (!owner) return;
    if (!owner->isFirstResponder()) return owner->content_->finish();  // it was taken away without asking
    owner->setNeedsDisplay();
  });
  tell(didBegin);
  NotificationCenter::defaultCenter().post(UITextViewTextDidBeginEditingNotification, view.shared_from_this());
}

void TextViewContent::finish() {
  static const SEL didEnd = sel("textViewDidEndEditing:");
  if (!editing) return;
  editing = false;
  blink.stop();
  TextEditMenu::dismiss();
  edit.moveTo(edit.caret(), false);
  view.setNeedsDisplay();
  tell(didEnd);
  NotificationCenter::defaultCenter().post(UITextViewTextDidEndEditingNotification, view.shared_from_this());
}

void UITextView::didMoveToWindow() {
  Super::didMoveToWindow();
  if (!window() && content_->editing && !isFirstResponder()) content_->finish();
}

// ---- Editing

NSRange UITextView::selectedRange() const { return content_->edit.selection(); }

void UITextView::setSelectedRange(NSRange range) {
  content_->edit.select(range);
  content_->selectionDidChange();
}

void UITextView::insertText(const std::string& text) {
  if (isEditable()) content_->replaceByUser(content_->edit.selection(), text);
}

void UITextView::deleteBackward() {
  if (isEditable()) content_->replaceByUser(content_->edit.rangeToDeleteBackward(), "");
}

bool TextViewContent::moveVertically(bool down, bool extend) {
  const CGRect caret = caretRect();
  const double x = columnX.value_or(caret.minX());
  const double y = down ? caret.maxY() + caret.size.height / 2 : caret.minY() - caret.size.height / 2;
  std::size_t target = positionAt({x, y});
  if (y < textOrigin().y) target = 0;
  if (y > textOrigin().y + laidOut().height()) target = edit.text().size();
  edit.moveTo(target, extend);
  selectionDidChange();
  columnX = x;
  return true;
}

bool UITextView::keyPressed(const UIKey& key) {
  EditableText& edit = content_->edit;
  const Ref<NSObject> keeper = self();
  const auto move = [&](std::size_t position) {
    content_->columnX = std::nullopt;
    edit.moveTo(position, key.shift);
    content_->selectionDidChange();
    return true;
  };
  const auto sideways = [&](bool toTheLeft) {
    const NSRange selection = edit.selection();
    if (!key.shift && edit.hasSelection()) {
      return move(static_cast<std::size_t>(toTheLeft ? selection.location : selection.end()));
    }
    if (key.control) return move(toTheLeft ? edit.previousWord(edit.caret()) : edit.nextWord(edit.caret()));
    ParagraphStack& text = content_->laidOut();
    const CGRect here = text.caretRect(edit.caret());
    const std::size_t next = edit.next(edit.caret());
    const CGRect there = text.caretRect(next);
    const bool reversed = there.minY() == here.minY() && there.minX() < here.minX();
    return move(toTheLeft != reversed ? edit.previous(edit.caret()) : next);
  };
  switch (key.code) {
    case UIKey::Code::character:
      if (key.control) return key.text.size() == 1 && TextEditMenu::performShortcut(*this, key.text[0]);
      if (key.text.empty() || !isEditable()) return false;
      insertText(key.text);
      return true;
    case UIKey::Code::returnKey:
      if (!isEditable()) return false;
      insertText("\n");
      return true;
    case UIKey::Code::backspace:
      deleteBackward();
      return true;
    case UIKey::Code::forwardDelete:
      if (isEditable()) content_->replaceByUser(edit.rangeToDeleteForward(), "");
      return true;
    case UIKey::Code::left:
      return sideways(true);
    case UIKey::Code::right:
      return sideways(false);
    case UIKey::Code::up:
      return content_->moveVertically(false, key.shift);
    case UIKey::Code::down:
      return content_->moveVertically(true, key.shift);
    case UIKey::Code::home:
      return move(key.control ? 0 : content_->laidOut().lineAt(edit.caret()).start);
    case UIKey::Code::end:
      return move(key.control ? edit.text().size() : content_->laidOut().lineAt(edit.caret()).end);
    case UIKey::Code::tab:
      if (key.shift || !isEditable()) return goToNextTextInput(*this, key.shift);
      insertText("\t");
      return true;
    case UIKey::Code::escape:
      return false;
  }
  return false;
}

// ---- Clipboard

void UITextView::copy(const Ref<NSObject>&) {
  if (content_->edit.hasSelection()) {
    UIPasteboard::general().setString(std::string(content_->edit.selectedText()));
  }
}

void UITextView::cut(const Ref<NSObject>& sender) {
  if (!content_->edit.hasSelection() || !isEditable()) return;
  copy(sender);
  content_->replaceByUser(content_->edit.selection(), "");
}

void UITextView::paste(const Ref<NSObject>&) {
  const std::optional<std::string> text = UIPasteboard::general().string();
  if (text && !text->empty()) insertText(*text);
}

void UITextView::selectAll(const Ref<NSObject>&) {
  content_->edit.selectAll();
  content_->selectionDidChange();
}

// ---- Touches. A drag scrolls; the pan recogniser then cancels the touch.

void TextViewContent::showMenu(CGPoint at) {
  TextEditMenu::Commands commands;
  commands.copy = edit.hasSelection();
  commands.cut = commands.copy && view.isEditable();
  commands.paste = view.isEditable() && UIPasteboard::general().hasStrings();
  commands.selectAll = !edit.text().empty() && static_cast<std::size_t>(edit.selection().length) < edit.text().size();
  const double line = caretRect().size.height;
  TextEditMenu::show(as<UIView>(view.shared_from_this()), {at.x, at.y - line, 0, 2 * line}, commands);
}

void UITextView::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isDecelerating()) return Super::touchesBegan(touches, event);
  if (touches.empty() || !isSelectable()) return;
  content_->longPress.begin([weak = weakSelf(), at = touches.front()->locationInView(this)] {
    const Ref<UITextView> view = weak.lock();
    if (!view || !view->becomeFirstResponder()) return;
    TextViewContent& content = *view->content_;
    if (!content.edit.hasSelection()) {
      if (view->isEditable()) {
        content.edit.moveTo(content.positionAt(at), false);
      } else {
        content.edit.selectWordAt(content.positionAt(at));
      }
    }
    content.selectionDidChange();
    content.showMenu(at);
  });
}

void UITextView::touchesMoved(const UITouches&, const Ref<UIEvent>&) {}

void UITextView::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  const Ref<NSObject> keeper = self();
  if (isHeld()) return Super::touchesEnded(touches, event);
  const bool wasLong = content_->longPress.happened();
  content_->longPress.cancel();
  if (touches.empty() || wasLong) return;
  const Ref<UITouch> touch = touches.front();
  const bool several = touch->tapCount() >= 2;
  if (!isEditable() && !(isSelectable() && several)) return;
  if (!isFirstResponder() && !becomeFirstResponder()) return;
  const std::size_t position = content_->positionAt(touch->locationInView(this));
  content_->columnX = std::nullopt;
  if (touch->tapCount() >= 3) {
    content_->edit.selectAll();
  } else if (several && isSelectable()) {
    content_->edit.selectWordAt(position);
  } else {
    content_->edit.moveTo(position, false);
  }
  content_->selectionDidChange();
}

void UITextView::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  content_->longPress.cancel();
  if (isHeld()) Super::touchesCancelled(touches, event);
}

}  // namespace platform
