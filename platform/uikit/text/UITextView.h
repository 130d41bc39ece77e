#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/engine/TextLayout.h"
#include "platform/foundation/NSRange.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/touch/UITextInputTraits.h"
#include "platform/uikit/views/NSAttributedString.h"

namespace platform {

class TextViewContent;
class UndoManager;

/// Names of the notifications that editing posts; their object is the one edited.
inline const std::string UITextViewTextDidBeginEditingNotification = "UITextViewTextDidBeginEditingNotification";
inline const std::string UITextViewTextDidChangeNotification = "UITextViewTextDidChangeNotification";
inline const std::string UITextViewTextDidEndEditingNotification = "UITextViewTextDidEndEditingNotification";

/// Many lines of text that scroll and that a person may edit. Ranges are bytes of the UTF-8 text and fall between whole
/// characters. Setting the text by program tells neither delegate nor observers. The delegate (one with the scroll
/// view's) is asked and told by selector: textViewShouldBeginEditing:, textViewDidBeginEditing:,
/// textViewShouldEndEditing:, textViewDidEndEditing:, textView:shouldChangeTextInRange:replacementText:,
/// textViewDidChange:, textViewDidChangeSelection:. Main thread.
class UITextView : public Object<UITextView, UIScrollView> {
 public:
  UITextView();
  ~UITextView() override;
  void initWithFrame(CGRect frame) override;
  static void exportMethods(MethodTable<UITextView>& table);

  virtual std::optional<std::string> text() const;
  virtual void setText(std::optional<std::string> text);
  virtual Ref<NSAttributedString> attributedText() const;
  virtual void setAttributedText(const Ref<NSAttributedString>& text);
  const UIFont& font() const;
  void setFont(const UIFont& font);
  UIColor textColor() const;
  void setTextColor(const UIColor& color);
  NSTextAlignment textAlignment() const;
  void setTextAlignment(NSTextAlignment alignment);
  UIEdgeInsets textContainerInset() const;
  void setTextContainerInset(UIEdgeInsets insets);

  virtual bool isEditable() const;
  virtual void setEditable(bool editable);
  bool isSelectable() const;
  void setSelectable(bool selectable);
  NSRange selectedRange() const;
  void setSelectedRange(NSRange range);
  void scrollRangeToVisible(NSRange range);
  Ref<UIView> inputView() override;
  void setInputView(const Ref<UIView>& view);
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

  /// Edit commands, also by selector ("copy:").
  void cut(const Ref<NSObject>& sender);
  void copy(const Ref<NSObject>& sender);
  void paste(const Ref<NSObject>& sender);
  void selectAll(const Ref<NSObject>& sender);
  void undo(const Ref<NSObject>& sender);
  void redo(const Ref<NSObject>& sender);
  /// Of this text alone; always the same object.
  Ref<UndoManager> undoManager();

  CGSize sizeThatFits(CGSize size) const override;
  /// Without scrolling, as high as its text.
  CGSize intrinsicContentSize() const override;
  std::optional<double> intrinsicHeightForWidth(double width) const override;
  void setScrollEnabled(bool enabled) override;
  void layoutSubviews() override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void tintColorDidChange() override;
  void didMoveToWindow() override;
  bool canBecomeFirstResponder() override;
  bool canResignFirstResponder() override;
  bool becomeFirstResponder() override;
  bool claimsTaps() const override { return isEditable(); }
  bool resignFirstResponder() override;
  bool keyPressed(const UIKey& key) override;
  UITextInputTraits textInputTraits() override;
  bool wantsKeyboard() override;
  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) override;

 protected:
  void contentOffsetDidChange() override;

 private:
  friend class TextViewContent;
  std::unique_ptr<TextViewContent> content_;
};

}  // namespace platform
