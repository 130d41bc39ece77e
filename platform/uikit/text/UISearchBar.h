#pragma once

#include <optional>
#include <string>

#include "platform/foundation/NSRange.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

class UIButton;
class UITextField;

/// A field to search with, and a cancel button beside it when wanted. The delegate is held weakly and asked and told by
/// selector: searchBarShouldBeginEditing:, searchBarTextDidBeginEditing:, searchBarShouldEndEditing:,
/// searchBarTextDidEndEditing:, searchBar:textDidChange:, searchBar:shouldChangeTextInRange:replacementText:,
/// searchBarSearchButtonClicked:, searchBarCancelButtonClicked:. Setting the text by program tells it nothing.
/// Main thread.
class UISearchBar : public Object<UISearchBar, UIView> {
 public:
  void initWithFrame(CGRect frame) override;
  static void exportMethods(MethodTable<UISearchBar>& table);

  /// The empty string when nothing was typed.
  virtual std::optional<std::string> text() const;
  virtual void setText(std::optional<std::string> text);
  std::optional<std::string> placeholder() const;
  void setPlaceholder(std::optional<std::string> placeholder);
  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }
  bool showsCancelButton() const { return showsCancelButton_; }
  void setShowsCancelButton(bool shows) { setShowsCancelButton(shows, false); }
  void setShowsCancelButton(bool shows, bool animated);
  std::optional<UIColor> barTintColor() const { return backgroundColor(); }
  void setBarTintColor(std::optional<UIColor> color) { setBackgroundColor(color); }
  bool isEnabled() const;
  void setEnabled(bool enabled);

  const Ref<UITextField>& searchTextField() const { return field_; }
  const Ref<UIButton>& cancelButton() const { return cancel_; }

  /// The field takes and gives up the keyboard for the bar.
  bool canBecomeFirstResponder() override;
  bool becomeFirstResponder() override;
  bool resignFirstResponder() override;
  /// True while its field is.
  bool isFirstResponder() const override;
  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;

 private:
  bool ask(const char* selector, bool otherwise);
  void tell(const char* selector);
  bool shouldBegin(const Ref<NSObject>& field);
  bool shouldEnd(const Ref<NSObject>& field);
  bool shouldChange(const Ref<NSObject>& field, NSRange range, const std::string& replacement);
  void didBegin(const Ref<NSObject>& field);
  void didEnd(const Ref<NSObject>& field);
  void didChange();
  bool shouldReturn(const Ref<NSObject>& field);
  void cancelTapped();

  Ref<UITextField> field_;
  Ref<UIButton> cancel_;
  Weak<NSObject> delegate_;
  bool showsCancelButton_ = false;
};

}  // namespace platform
