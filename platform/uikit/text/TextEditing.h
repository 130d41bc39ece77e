#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/text/CaretBlink.h"
#include "platform/uikit/text/EditableText.h"
#include "platform/uikit/text/TextHistory.h"
#include "platform/uikit/text/TextLongPress.h"
#include "platform/uikit/touch/UITextInputTraits.h"
#include "platform/uikit/views/NSAttributedString.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

class UndoManager;

/// How a text is edited by hand, which is the same in a field and in a text view: the first responder and whom it asks,
/// keys, clipboard, edit menu, long press, caret. What a field or a text view holds derives from it and says where
/// things stand and what differs. Owned by the view, whose members pass on to it. Main thread.
class TextEditing {
 public:
  /// The names under which a kind of text asks its delegate and tells its observers.
  struct Protocol {
    SEL shouldBegin, didBegin, shouldEnd, didEnd, shouldChange, didChangeSelection;
    const std::string& begun;
    const std::string& changed;
    const std::string& ended;
  };
  TextEditing(UIView& owner, const Protocol& protocol) : view(owner), protocol_(protocol) {}
  virtual ~TextEditing() = default;

  UIView& view;
  EditableText edit;
  TextHistory history;
  bool hasText = true;  ///< false once a program set no text
  std::optional<NSTextAttributes> attributes;
  UIFont font;
  UIColor textColor;
  NSTextAlignment alignment = NSTextAlignment::natural;
  UITextInputTraits traits;
  Ref<UIView> inputView;
  bool editing = false;
  CaretBlink blink;
  TextLongPress longPress;
  std::optional<double> columnX;  ///< where the caret wants to be while it goes up and down

  // ---- Text by program
  std::optional<std::string> text() const { return hasText ? std::optional(edit.text()) : std::nullopt; }
  void setText(std::optional<std::string> text);
  Ref<NSAttributedString> attributedText() const;
  UIFont shownFont() const { return attributes && attributes->font ? *attributes->font : font; }
  UIColor shownColor() const;

  // ---- First responder. `super` is what the view's base does.
  bool become(const std::function<bool()>& super);
  bool resign(const std::function<bool()>& super);
  void finish();
  /// The view may have left the window without resigning.
  void windowDidChange();

  // ---- Editing: asks the delegate, changes, tells everybody
  bool replaceByUser(NSRange range, const std::string& replacement, TextHistory::Kind kind = TextHistory::Kind::change);
  void insert(const std::string& text);
  void deleteBackward();
  void select(NSRange range);
  void selectionDidChange();
  bool keyPressed(const UIKey& key);
  void copy();
  void cut();
  void paste();
  void selectAll();

  // ---- Undo. A secure text has no history; what was kept before it became one goes.
  bool canUndo() const { return isEditable() && !isSecure() && history.toUndo(); }
  bool canRedo() const { return isEditable() && !isSecure() && history.toRedo(); }
  void undo();
  void redo();
  const Ref<UndoManager>& undoManager();

  // ---- Touches
  void touchBegan(CGPoint at);
  /// One tap places the caret where it may, two select a word, three everything.
  void tapped(std::size_t position, std::int64_t count, bool placesCaret);

  bool ask(SEL selector) const;
  void tell(SEL selector) const;

  // ---- What differs
  virtual Ref<NSObject> delegate() const = 0;
  virtual bool isEditable() const = 0;
  virtual bool isSecure() const { return false; }
  virtual std::size_t positionAt(CGPoint point) = 0;
  /// Two carets compare by it; where its origin lies is the content's own affair.
  virtual CGRect caretRectAt(std::size_t position) = 0;
  virtual void textDidChange() = 0;

 protected:
  virtual bool takesKeys() const { return true; }
  /// What of a text can be typed here.
  virtual std::string typable(const std::string& text) const { return text; }
  virtual void replace(NSRange range, const std::string& replacement) { edit.replace(range, replacement); }
  virtual void showCaret() = 0;
  virtual void editingBegan() {}
  virtual void editingEnded() {}
  virtual void textWasEdited() = 0;
  /// Those who hear of an edit before the observers.
  virtual void tellOfEdit() = 0;
  virtual void returnPressed() = 0;
  virtual bool tabPressed(bool backwards) = 0;
  /// Where home and end lead.
  virtual NSRange lineAround(std::size_t position) = 0;
  virtual void moveVertically(bool down, bool extend) = 0;
  virtual CGRect menuRect(CGPoint at) = 0;

  void moveCaret(std::size_t position, bool extend);
  /// Changes what nobody is asked about (any more), remembers it and tells everybody.
  void change(NSRange range, const std::string& replacement, TextHistory::Kind kind);

 private:
  void begin();
  void announceChange();
  TextHistory::Selection selected() const { return {edit.anchor(), edit.caret()}; }
  bool mayChange(NSRange range, const std::string& replacement) const;
  /// Does a step once more, by value since it changes the history, and tells it so.
  void exchange(TextHistory::Step step, void (TextHistory::*done)());
  void moveSideways(bool toTheLeft, const UIKey& key);
  /// In text written from the right a step on goes to the left.
  bool isReversedAtCaret();
  void showMenu(CGPoint at);

  const Protocol& protocol_;
  Ref<UndoManager> undoManager_;
};

}  // namespace platform
