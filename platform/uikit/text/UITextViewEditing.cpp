#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/text/TextInputOrder.h"
#include "platform/uikit/text/TextViewContent.h"
#include "platform/uikit/touch/UITouch.h"

// What is a text view's own in being edited: lines to move by, paragraphs that an edit touches, a view that scrolls.

namespace platform {

namespace {

const TextEditing::Protocol& viewProtocol() {
  static const TextEditing::Protocol protocol{sel("textViewShouldBeginEditing:"),
                                              sel("textViewDidBeginEditing:"),
                                              sel("textViewShouldEndEditing:"),
                                              sel("textViewDidEndEditing:"),
                                              sel("textView:shouldChangeTextInRange:replacementText:"),
                                              sel("textViewDidChangeSelection:"),
                                              UITextViewTextDidBeginEditingNotification,
                                              UITextViewTextDidChangeNotification,
                                              UITextViewTextDidEndEditingNotification};
  return protocol;
}

}  // namespace

TextViewContent::TextViewContent(UITextView& owner) : TextEditing(owner, viewProtocol()), textView(owner) {}

// ---- Edits

void TextViewContent::replace(NSRange range, const std::string& replacement) {
  laidOut();
  edit.replace(range, replacement);
  const auto start = static_cast<std::size_t>(range.location);
  paragraphs.replaced(edit, start, static_cast<std::size_t>(range.end()), start + replacement.size());
}

void TextViewContent::textWasEdited() {
  showCaret();
  textView.setNeedsDisplay();
  textView.invalidateIntrinsicContentSize();
}

void TextViewContent::tellOfEdit() {
  static const SEL didChange = sel("textViewDidChange:");
  tell(didChange);
}

// ---- Keys

bool TextViewContent::tabPressed(bool backwards) {
  if (backwards || !isEditable()) return goToNextTextInput(textView, backwards);
  insert("\t");
  return true;
}

NSRange TextViewContent::lineAround(std::size_t position) {
  const TextRange line = laidOut().lineAt(position);
  return {static_cast<std::int64_t>(line.start), static_cast<std::int64_t>(line.end - line.start)};
}

void TextViewContent::moveVertically(bool down, bool extend) {
  const CGRect caret = caretRect();
  const double x = columnX.value_or(caret.minX());
  const double y = down ? caret.maxY() + caret.size.height / 2 : caret.minY() - caret.size.height / 2;
  std::size_t target = positionAt({x, y});
  if (y < textOrigin().y) target = 0;
  if (y > textOrigin().y + laidOut().height()) target = edit.text().size();
  moveCaret(target, extend);
  columnX = x;
}

CGRect TextViewContent::menuRect(CGPoint at) {
  const double line = caretRect().size.height;
  return {at.x, at.y - line, 0, 2 * line};
}

// ---- The view passes on

bool UITextView::canBecomeFirstResponder() { return (isEditable() || isSelectable()) && window() != nullptr; }
bool UITextView::canResignFirstResponder() { return true; }
bool UITextView::wantsKeyboard() { return isEditable(); }
bool UITextView::becomeFirstResponder() {
  return content_->become([this] { return Super::becomeFirstResponder(); });
}
bool UITextView::resignFirstResponder() {
  return content_->resign([this] { return Super::resignFirstResponder(); });
}
void UITextView::didMoveToWindow() {
  Super::didMoveToWindow();
  content_->windowDidChange();
}
NSRange UITextView::selectedRange() const { return content_->edit.selection(); }
void UITextView::setSelectedRange(NSRange range) { content_->select(range); }
void UITextView::insertText(const std::string& text) { content_->insert(text); }
void UITextView::deleteBackward() { content_->deleteBackward(); }
bool UITextView::keyPressed(const UIKey& key) { return content_->keyPressed(key); }
void UITextView::copy(const Ref<NSObject>&) { content_->copy(); }
void UITextView::cut(const Ref<NSObject>&) { content_->cut(); }
void UITextView::paste(const Ref<NSObject>&) { content_->paste(); }
void UITextView::selectAll(const Ref<NSObject>&) { content_->selectAll(); }
void UITextView::undo(const Ref<NSObject>&) { content_->undo(); }
void UITextView::redo(const Ref<NSObject>&) { content_->redo(); }
Ref<UndoManager> UITextView::undoManager() { return content_->undoManager(); }

// ---- Touches. A drag scrolls; the pan recogniser then cancels the touch.

void UITextView::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  if (isDecelerating()) return Super::touchesBegan(touches, event);
  if (touches.empty() || !isSelectable()) return;
  content_->touchBegan(touches.front()->locationInView(this));
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
  const bool placesCaret = !isSelectable() && touch->tapCount() < 3;
  content_->tapped(position, placesCaret ? 1 : touch->tapCount(), true);
}

void UITextView::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  content_->longPress.cancel();
  if (isHeld()) Super::touchesCancelled(touches, event);
}

}  // namespace platform
