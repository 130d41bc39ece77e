#pragma once

#include "platform/uikit/controls/UIControl.h"

namespace platform {

class UIImageView;
class UILabel;

/// The button that shows one tab of a tab bar. Private to the bar. Main thread.
class UITabBarButton : public Object<UITabBarButton, UIControl> {
 public:
  using UIView::init;
  void init(const Ref<UITabBarItem>& item);
  void initWithFrame(CGRect frame) override;

  Ref<UITabBarItem> item() const { return item_.lock(); }
  /// Takes over what the item and the bar say now.
  void update();

  void layoutSubviews() override;
  void stateDidChange() override { update(); }

 private:
  Weak<UITabBarItem> item_;
  Ref<UIImageView> picture_;
  Ref<UILabel> title_;
  Ref<UIView> badge_;
  Ref<UILabel> badgeText_;
};

}  // namespace platform
