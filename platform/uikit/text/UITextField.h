#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/engine/TextLayout.h"
#include "platform/foundation/NSRange.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/touch/UITextInputTraits.h"
#include "platform/uikit/views/NSAttributedString.h"

namespace platform {

class TextFieldContent;
class UndoManager;

/// Names of the notifications that editing posts; their object is the one edited.
inline const std::string UITextFieldTextDidBeginEditingNotification = "UITextFieldTextDidBeginEditingNotification";
inline const std::string UITextFieldTextDidChangeNotification = "UITextFieldTextDidChangeNotification";
inline const std::string UITextFieldTextDidEndEditingNotification = "UITextFieldTextDidEndEditingNotification";

enum class UITextBorderStyle { none, line, bezel, roundedRect };
/// When an accessory of a field (clear button, left and right view) is shown.
enum class UITextFieldViewMode { never, whileEditing, unlessEditing, always };

/// One line of text that a person edits. Its text may be absent. Ranges are bytes of the UTF-8 text and fall between
/// whole characters as a person sees them. Setting the text by program sends no editing events. Main thread.
class UITextField : public Object<UITextField, UIControl> {
 public:
  UITextField();
  ~UITextField() override;
  void initWithFrame(CGRect frame) override;
  static void exportMethods(MethodTable<UITextField>& table);

  // ---- Text
  virtual std::optional<std::string> text() const;
  virtual void setText(std::optional<std::string> text);
  virtual Ref<NSAttributedString> attributedText() const;
  virtual void setAttributedText(const Ref<NSAttributedString>& text);
  std::optional<std::string> placeholder() const;
  void setPlaceholder(std::optional<std::string> placeholder);
  Ref<NSAttributedString> attributedPlaceholder() const;
  void setAttributedPlaceholder(const Ref<NSAttributedString>& placeholder);
  const UIFont& font() const;
  void setFont(const UIFont& font);
  UIColor textColor() const;
  void setTextColor(const UIColor& color);
  NSTextAlignment textAlignment() const;
  void setTextAlignment(NSTextAlignment alignment);
  UITextBorderStyle borderStyle() const;
  void setBorderStyle(UITextBorderStyle style);

  // ---- Rectangles, in the bounds; a subclass moves them
  virtual CGRect textRect(CGRect bounds) const;
  virtual CGRect placeholderRect(CGRect bounds) const;
  virtual CGRect editingRect(CGRect bounds) const;
  virtual CGRect borderRect(CGRect bounds) const;
  virtual CGRect clearButtonRect(CGRect bounds) const;
  virtual CGRect leftViewRect(CGRect bounds) const;
  virtual CGRect rightViewRect(CGRect bounds) const;

  // ---- Accessories
  Ref<UIView> leftView() const;
  void setLeftView(const Ref<UIView>& view);
  Ref<UIView> rightView() const;
  void setRightView(const Ref<UIView>& view);
  UITextFieldViewMode leftViewMode() const;
  void setLeftViewMode(UITextFieldViewMode mode);
  UITextFieldViewMode rightViewMode() const;
  void setRightViewMode(UITextFieldViewMode mode);
  UITextFieldViewMode clearButtonMode() const;
  void setClearButtonMode(UITextFieldViewMode mode);
  Ref<UIView> inputView() override;
  void setInputView(const Ref<UIView>& view);

  // ---- Editing
  /// Asked and told by selector: textFieldShouldBeginEditing:, textFieldDidBeginEditing:, textFieldShouldEndEditing:,
  /// textFieldDidEndEditing:, textField:shouldChangeCharactersInRange:replacementString:, textFieldDidChangeSelection:,
  /// textFieldShouldClear:, textFieldShouldReturn:.
  Ref<NSObject> delegate() const;
  void setDelegate(const Ref<NSObject>& delegate);
  bool isEditing() const;
  bool clearsOnBeginEditing() const;
  void setClearsOnBeginEditing(bool clears);
  NSRange selectedRange() const;
  /// Cut to the text and moved outwards to whole characters.
  void setSelectedRange(NSRange range);
  virtual bool isSecureTextEntry() const;
  void setSecureTextEntry(bool secure);
  /// True from the moment the field first was secure, for its life: a person may ask to see what was typed, and it
  /// stays a secret to everybody else. Captures blank such a field.
  bool wasSecure() const;
  /// What those are told of the text who read the screen: a bullet for each character where it is a secret.
  std::optional<std::string> accessibilityValue() const;
  UIReturnKeyType returnKeyType() const;
  void setReturnKeyType(UIReturnKeyType type);
  UIKeyboardType keyboardType() const;
  void setKeyboardType(UIKeyboardType type);
  UITextAutocapitalizationType autocapitalizationType() const;
  void setAutocapitalizationType(UITextAutocapitalizationType type);
  bool hasText() const;
  /// Types a text at the caret, replacing the selection; the delegate may refuse.
  void insertText(const std::string& text);
  void deleteBackward();

  /// Edit commands, also by selector ("copy:"). A secure field neither copies nor cuts, and keeps
  /// nothing to undo.
  void cut(const Ref<NSObject>& sender);
  void copy(const Ref<NSObject>& sender);
  void paste(const Ref<NSObject>& sender);
  void selectAll(const Ref<NSObject>& sender);
  void undo(const Ref<NSObject>& sender);
  void redo(const Ref<NSObject>& sender);
  /// Of this text alone; always the same object.
  Ref<UndoManager> undoManager();

  // ---- View and responder
  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  double firstBaselineOffset() const override;
  double lastBaselineOffset() const override;
  void layoutSubviews() override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void stateDidChange() override;
  void tintColorDidChange() override;
  void didMoveToWindow() override;
  bool canBecomeFirstResponder() override;
  bool canResignFirstResponder() override;
  bool becomeFirstResponder() override;
  bool resignFirstResponder() override;
  bool keyPressed(const UIKey& key) override;
  UITextInputTraits textInputTraits() override;
  bool wantsKeyboard() override { return true; }
  bool beginTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  bool continueTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  void endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;
  void cancelTracking(const Ref<UIEvent>& event) override;

 private:
  friend class TextFieldContent;
  void clearTapped();
  std::unique_ptr<TextFieldContent> content_;
};

}  // namespace platform
