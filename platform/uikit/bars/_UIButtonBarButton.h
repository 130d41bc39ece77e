#pragma once

#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/controls/UIControl.h"

namespace platform {

class UIImageView;
class UILabel;

/// The button that shows one bar button item in a bar. It sends the item's action to the item's target, in the item's
/// name. Private to the bars; owned by its item, which it knows weakly. Main thread.
class _UIButtonBarButton : public Object<_UIButtonBarButton, UIControl> {
 public:
  using UIView::init;
  void init(const Ref<UIBarButtonItem>& item);
  void initWithFrame(CGRect frame) override;

  Ref<UIBarButtonItem> item() const { return item_.lock(); }
  /// Takes over what the item says now.
  void update();
  /// A chevron before the title, at the leading edge of a navigation bar.
  void setShowsBackIndicator(bool shows);
  /// What it would take with a chevron and that title.
  double widthWithTitle(const std::string& title) const;

  /// Without a target the action looks for one from the bar upwards: the item itself stands in no chain.
  void sendAction(SEL action, Ref<NSObject> target, Ref<UIEvent> event) override;

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void layoutSubviews() override;
  void stateDidChange() override;
  void tintColorDidChange() override;

 protected:
  Ref<NSObject> actionSender() override;

 private:
  Weak<UIBarButtonItem> item_;
  Ref<UILabel> label_;
  Ref<UILabel> ruler_;  // measures titles, in no view
  Ref<UIImageView> picture_;
  bool showsBackIndicator_ = false;
};

}  // namespace platform
