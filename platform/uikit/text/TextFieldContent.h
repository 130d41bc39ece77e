#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/uikit/text/CaretBlink.h"
#include "platform/uikit/text/EditableText.h"
#include "platform/uikit/text/TextLongPress.h"
#include "platform/uikit/text/UITextField.h"

namespace platform {

class TextLayout;
class UIButton;

/// What a UITextField holds. Shared by UITextField*.cpp alone.
class TextFieldContent {
 public:
  explicit TextFieldContent(UITextField& owner) : field(owner) {}

  UITextField& field;
  EditableText edit;
  bool hasText = true;  ///< false once a program set no text
  std::optional<NSTextAttributes> attributes;
  Ref<NSAttributedString> placeholder;
  bool placeholderIsPlain = true;
  UIFont font;
  UIColor textColor;
  NSTextAlignment alignment = NSTextAlignment::natural;
  UITextBorderStyle border = UITextBorderStyle::none;
  UITextInputTraits traits;
  Ref<UIView> leftView;
  Ref<UIView> rightView;
  Ref<UIButton> clearButton;
  UITextFieldViewMode leftMode = UITextFieldViewMode::never;
  UITextFieldViewMode rightMode = UITextFieldViewMode::never;
  UITextFieldViewMode clearMode = UITextFieldViewMode::never;
  Ref<UIView> inputView;
  Weak<NSObject> delegate;

  bool editing = false;
  bool clearsOnBegin = false;
  CaretBlink blink;
  double scrolled = 0;  ///< how far the text is moved to the left to keep the caret in view
  bool touchSelects = false;
  std::size_t touchAnchor = 0;
  TextLongPress longPress;

  // ---- Text as it is shown: secret as dots, on one line
  TextRange shownRange() const;
  std::string shownText() const;
  std::size_t toShown(std::size_t position) const;
  std::size_t fromShown(std::size_t shown) const;
  std::shared_ptr<const TextLayout> layout() const;
  UIFont shownFont() const { return attributes && attributes->font ? *attributes->font : font; }
  CGRect contentRect() const;
  /// Where the layout's left edge stands in the field.
  double textLeft(const TextLayout& layout, CGRect rect) const;
  std::size_t positionAt(CGPoint point) const;
  void keepCaretVisible();
  void textDidChange();
  bool shows(UITextFieldViewMode mode) const;
  bool showsClearButton() const;

  // ---- Editing as a person does it: asks the delegate, changes, tells everybody
  bool replaceByUser(NSRange range, const std::string& replacement);
  void announceChange();
  void selectionDidChange();
  void begin();
  void finish();
  bool ask(SEL selector) const;
  void tell(SEL selector) const;
  void returnPressed();
  void showMenu(CGPoint at);
};

}  // namespace platform
