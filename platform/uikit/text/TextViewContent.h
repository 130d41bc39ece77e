#pragma once

#include <optional>

#include "platform/uikit/text/CaretBlink.h"
#include "platform/uikit/text/EditableText.h"
#include "platform/uikit/text/ParagraphStack.h"
#include "platform/uikit/text/TextLongPress.h"
#include "platform/uikit/text/UITextView.h"

namespace platform {

/// What a UITextView holds. Shared by UITextView*.cpp alone.
class TextViewContent {
 public:
  explicit TextViewContent(UITextView& owner) : view(owner) {}

  UITextView& view;
  EditableText edit;
  bool hasText = true;  ///< false once a program set no text
  std::optional<NSTextAttributes> attributes;
  UIFont font;
  UIColor textColor;
  NSTextAlignment alignment = NSTextAlignment::natural;
  UIEdgeInsets inset{8, 0, 8, 0};
  UITextInputTraits traits;
  Ref<UIView> inputView;
  bool editable = true;
  bool selectable = true;
  bool editing = false;
  CaretBlink blink;
  ParagraphStack paragraphs;
  bool stale = true;              ///< the paragraphs are those of another text, style or width
  std::optional<double> columnX;  ///< where the caret wants to be while it goes up and down

  TextStyle style() const;
  /// Of the text in the content: the insets and a little room at the sides left out.
  CGPoint textOrigin() const;
  double textWidth(double viewWidth) const;
  ParagraphStack& laidOut();
  void updateContentSize();
  CGRect caretRect();
  std::size_t positionAt(CGPoint point);
  void showCaret();
  void textDidChange();

  bool replaceByUser(NSRange range, const std::string& replacement);
  void selectionDidChange();
  void begin();
  void finish();
  bool ask(SEL selector) const;
  void tell(SEL selector) const;
  bool moveVertically(bool down, bool extend);

  TextLongPress longPress;
  void showMenu(CGPoint at);
};

}  // namespace platform
