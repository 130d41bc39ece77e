#pragma once

#include <memory>
#include <string>

#include "platform/uikit/text/TextEditing.h"
#include "platform/uikit/text/UITextField.h"

namespace platform {

class TextLayout;
class UIButton;

/// A bullet for each character of a part of the text.
std::string bullets(const EditableText& text, TextRange range);

/// What a UITextField holds. Shared by UITextField*.cpp and TextFieldContent.cpp alone.
class TextFieldContent final : public TextEditing {
 public:
  explicit TextFieldContent(UITextField& owner);

  UITextField& field;
  Ref<NSAttributedString> placeholder;
  UITextBorderStyle border = UITextBorderStyle::none;
  Ref<UIView> leftView;
  Ref<UIView> rightView;
  Ref<UIButton> clearButton;
  UITextFieldViewMode leftMode = UITextFieldViewMode::never;
  UITextFieldViewMode rightMode = UITextFieldViewMode::never;
  UITextFieldViewMode clearMode = UITextFieldViewMode::never;
  Weak<NSObject> fieldDelegate;

  bool wasSecure = false;
  bool clearsOnBegin = false;
  double scrolled = 0;  ///< how far the text is moved to the left to keep the caret in view
  bool touchSelects = false;
  std::size_t touchAnchor = 0;

  // ---- Text as it is shown: secret as dots, on one line
  TextRange shownRange() const;
  std::string shownText() const;
  std::size_t toShown(std::size_t position) const;
  std::size_t fromShown(std::size_t shown) const;
  std::shared_ptr<const TextLayout> layout() const;
  CGRect contentRect() const;
  /// Where the layout's left edge stands in the field.
  double textLeft(const TextLayout& layout, CGRect rect) const;
  void keepCaretVisible();
  bool shows(UITextFieldViewMode mode) const;
  bool showsClearButton() const;
  void clear();

  Ref<NSObject> delegate() const override { return fieldDelegate.lock(); }
  bool isEditable() const override { return field.isEnabled(); }
  bool isSecure() const override { return field.isSecureTextEntry(); }
  std::size_t positionAt(CGPoint point) override;
  CGRect caretRectAt(std::size_t position) override;
  void textDidChange() override;

 protected:
  bool takesKeys() const override { return field.isEnabled(); }
  std::string typable(const std::string& text) const override { return onOneLine(text); }
  void showCaret() override { keepCaretVisible(); }
  void editingBegan() override;
  void editingEnded() override;
  void textWasEdited() override { textDidChange(); }
  void tellOfEdit() override;
  void returnPressed() override;
  bool tabPressed(bool backwards) override;
  NSRange lineAround(std::size_t position) override;
  void moveVertically(bool down, bool extend) override;
  CGRect menuRect(CGPoint at) override;
};

}  // namespace platform
