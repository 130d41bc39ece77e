#pragma once

#include <optional>
#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

class TabBarHost;
class UITabBarButton;
class _UIBarBackground;

/// The row of tabs at a screen's bottom. Delegate selector (held weakly, optional): "tabBar:didSelectItem:", for taps
/// alone. Main thread.
class UITabBar : public Object<UITabBar, UIView> {
 public:
  UITabBar();
  ~UITabBar() override;
  static void exportMethods(MethodTable<UITabBar>& table);
  void initWithFrame(CGRect frame) override;

  static constexpr double standardHeight = 49;

  const std::vector<Ref<UITabBarItem>>& items() const { return items_; }
  void setItems(std::vector<Ref<UITabBarItem>> items, bool animated = false);
  Ref<UITabBarItem> selectedItem() const { return selected_; }
  /// An item that is not among the bar's selects nothing.
  void setSelectedItem(const Ref<UITabBarItem>& item);
  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }
  std::optional<UIColor> barTintColor() const { return barTintColor_; }
  void setBarTintColor(std::optional<UIColor> color);
  UIColor unselectedItemTintColor() const;
  void setUnselectedItemTintColor(std::optional<UIColor> color);
  /// The view of a tab, for those who want to tap it; none when the bar does not show the item.
  Ref<UIView> viewForItem(const Ref<UITabBarItem>& item) const;

  /// The standard height plus what the safe area takes at the bottom.
  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void setHidden(bool hidden) override;
  void layoutSubviews() override;
  void tintColorDidChange() override;

 private:
  friend class UITabBarButton;
  friend class UITabBarController;
  void buttonTapped(Ref<NSObject> sender);
  void update();

  std::vector<Ref<UITabBarItem>> items_;
  std::vector<Ref<UITabBarButton>> buttons_;
  Ref<UITabBarItem> selected_;
  Weak<NSObject> delegate_;
  Weak<TabBarHost> host_;
  std::optional<UIColor> barTintColor_;
  std::optional<UIColor> unselectedTint_;
  Ref<_UIBarBackground> background_;
};

}  // namespace platform
