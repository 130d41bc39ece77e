#pragma once

#include "platform/uikit/text/ParagraphStack.h"
#include "platform/uikit/text/TextEditing.h"
#include "platform/uikit/text/UITextView.h"

namespace platform {

/// What a UITextView holds. Shared by UITextView*.cpp alone.
class TextViewContent final : public TextEditing {
 public:
  explicit TextViewContent(UITextView& owner);

  UITextView& textView;
  UIEdgeInsets inset{8, 0, 8, 0};
  bool editable = true;
  bool selectable = true;
  ParagraphStack paragraphs;
  bool stale = true;  ///< the paragraphs are those of another text, style or width

  TextStyle style() const;
  /// Of the text in the content: the insets and a little room at the sides left out.
  CGPoint textOrigin() const;
  double textWidth(double viewWidth) const;
  ParagraphStack& laidOut();
  void updateContentSize();
  CGRect caretRect() { return caretRectAt(edit.caret()); }

  Ref<NSObject> delegate() const override { return textView.delegate(); }
  bool isEditable() const override { return textView.isEditable(); }
  std::size_t positionAt(CGPoint point) override;
  CGRect caretRectAt(std::size_t position) override;
  void textDidChange() override;

 protected:
  void replace(NSRange range, const std::string& replacement) override;
  void showCaret() override;
  void textWasEdited() override;
  void tellOfEdit() override;
  void returnPressed() override { insert("\n"); }
  bool tabPressed(bool backwards) override;
  NSRange lineAround(std::size_t position) override;
  void moveVertically(bool down, bool extend) override;
  CGRect menuRect(CGPoint at) override;
};

}  // namespace platform
