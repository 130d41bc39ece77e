#include <cmath>

#include "platform/engine/TextLayout.h"
#include "platform/uikit/text/TextFieldContent.h"
#include "platform/uikit/text/TextInputOrder.h"
#include "platform/uikit/touch/UITouch.h"

// What is a field's own in being edited: one line, the events of a control, return and clear, a drag that selects.

namespace platform {

namespace {

const TextEditing::Protocol& fieldProtocol() {
  static const TextEditing::Protocol protocol{sel("textFieldShouldBeginEditing:"),
                                              sel("textFieldDidBeginEditing:"),
                                              sel("textFieldShouldEndEditing:"),
                                              sel("textFieldDidEndEditing:"),
                                              sel("textField:shouldChangeCharactersInRange:replacementString:"),
                                              sel("textFieldDidChangeSelection:"),
                                              UITextFieldTextDidBeginEditingNotification,
                                              UITextFieldTextDidChangeNotification,
                                              UITextFieldTextDidEndEditingNotification};
  return protocol;
}

}  // namespace

TextFieldContent::TextFieldContent(UITextField& owner) : TextEditing(owner, fieldProtocol()), field(owner) {}

// ---- The moments of editing

void TextFieldContent::editingBegan() {
  edit.moveTo(edit.text().size(), false);
  if (clearsOnBegin && !edit.text().empty()) {
    replaceByUser({0, static_cast<std::int64_t>(edit.text().size())}, "");
  }
  textDidChange();
  field.sendActionsForControlEvents(UIControlEvents::editingDidBegin);
}

void TextFieldContent::editingEnded() {
  textDidChange();
  field.sendActionsForControlEvents(UIControlEvents::editingDidEnd);
}

void TextFieldContent::tellOfEdit() { field.sendActionsForControlEvents(UIControlEvents::editingChanged); }

void TextFieldContent::returnPressed() {
  static const SEL shouldReturn = sel("textFieldShouldReturn:");
  if (!ask(shouldReturn)) return;
  bool endsOnExit = !field.actionsForTarget(nullptr, UIControlEvents::editingDidEndOnExit).empty();
  for (const Ref<NSObject>& target : field.allTargets()) {
    endsOnExit = endsOnExit || !field.actionsForTarget(target, UIControlEvents::editingDidEndOnExit).empty();
  }
  field.sendActionsForControlEvents(UIControlEvents::primaryActionTriggered);
  field.sendActionsForControlEvents(UIControlEvents::editingDidEndOnExit);
  if (endsOnExit) field.resignFirstResponder();
}

void TextFieldContent::clear() {
  static const SEL shouldClear = sel("textFieldShouldClear:");
  const Ref<NSObject> keeper = field.shared_from_this();
  if (!ask(shouldClear)) return;
  change({0, static_cast<std::int64_t>(edit.text().size())}, "", TextHistory::Kind::change);
}

bool TextFieldContent::tabPressed(bool backwards) { return goToNextTextInput(field, backwards); }

NSRange TextFieldContent::lineAround(std::size_t) { return {0, static_cast<std::int64_t>(edit.text().size())}; }

void TextFieldContent::moveVertically(bool down, bool extend) { moveCaret(down ? edit.text().size() : 0, extend); }

CGRect TextFieldContent::menuRect(CGPoint at) {
  const CGRect bounds = field.bounds();
  return {at.x, bounds.minY(), 0, bounds.size.height};
}

// ---- The field passes on

bool UITextField::isEditing() const { return content_->editing && isFirstResponder(); }
bool UITextField::canBecomeFirstResponder() { return isEnabled() && window() != nullptr; }
bool UITextField::canResignFirstResponder() { return true; }
void UITextField::setInputView(const Ref<UIView>& view) { content_->inputView = view; }
bool UITextField::becomeFirstResponder() {
  return content_->become([this] { return Super::becomeFirstResponder(); });
}
bool UITextField::resignFirstResponder() {
  return content_->resign([this] { return Super::resignFirstResponder(); });
}
void UITextField::didMoveToWindow() {
  Super::didMoveToWindow();
  content_->windowDidChange();
}
NSRange UITextField::selectedRange() const { return content_->edit.selection(); }
void UITextField::setSelectedRange(NSRange range) { content_->select(range); }
void UITextField::insertText(const std::string& text) { content_->insert(text); }
void UITextField::deleteBackward() { content_->deleteBackward(); }
void UITextField::clearTapped() { content_->clear(); }
bool UITextField::keyPressed(const UIKey& key) { return content_->keyPressed(key); }
void UITextField::copy(const Ref<NSObject>&) { content_->copy(); }
void UITextField::cut(const Ref<NSObject>&) { content_->cut(); }
void UITextField::paste(const Ref<NSObject>&) { content_->paste(); }
void UITextField::selectAll(const Ref<NSObject>&) { content_->selectAll(); }
void UITextField::undo(const Ref<NSObject>&) { content_->undo(); }
void UITextField::redo(const Ref<NSObject>&) { content_->redo(); }
Ref<UndoManager> UITextField::undoManager() { return content_->undoManager(); }

// ---- Touches: a tap starts editing and places the caret, two taps select a word, three everything, a drag selects

bool UITextField::beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const CGPoint at = touch->locationInView(this);
  content_->touchBegan(at);
  content_->touchSelects = isEditing();
  content_->touchAnchor = content_->positionAt(at);
  return true;
}

bool UITextField::continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  constexpr double enough = 6;  // points before a tap counts as a drag
  if (!content_->touchSelects) return true;
  const CGPoint at = touch->locationInView(this);
  const std::size_t position = content_->positionAt(at);
  const double anchorX = content_->caretRectAt(content_->touchAnchor).minX() +
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
  content_->tapped(position, touch->tapCount(), !content_->edit.hasSelection() || position == content_->touchAnchor);
}

void UITextField::cancelTracking(const Ref<UIEvent>&) {
  content_->longPress.cancel();
  content_->touchSelects = false;
}

}  // namespace platform
