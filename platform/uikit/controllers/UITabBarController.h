#pragma once

#include <cstdint>
#include <vector>

#include "platform/uikit/bars/TabBarHost.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace platform {

/// Several screens of equal rank, one at a time, chosen with a tab bar. The view of a screen is made when it is first
/// selected. Delegate selectors (held weakly, optional, for a person's taps alone):
///   "tabBarController:shouldSelectViewController:"  bool (controller, screen)
///   "tabBarController:didSelectViewController:"     void (controller, screen); also for the tab that is selected
///                                                   already, whose navigation controller goes back to its root.
/// Main thread.
class UITabBarController : public Object<UITabBarController, UIViewController>, public TabBarHost {
 public:
  UITabBarController();
  ~UITabBarController() override;
  static void exportMethods(MethodTable<UITabBarController>& table);

  const std::vector<Ref<UIViewController>>& viewControllers() const { return childViewControllers(); }
  /// Keeps the selected screen when it is among the new ones, else selects the first.
  void setViewControllers(std::vector<Ref<UIViewController>> controllers, bool animated = false);
  /// -1 when there is none.
  virtual std::int64_t selectedIndex() const;
  /// An index outside the screens selects nothing.
  virtual void setSelectedIndex(std::int64_t index);
  virtual Ref<UIViewController> selectedViewController() const { return selected_; }
  /// One that is not among the screens selects nothing.
  void setSelectedViewController(const Ref<UIViewController>& controller);

  virtual Ref<UITabBar> tabBar();
  virtual Ref<NSObject> delegate() const { return delegate_.lock(); }
  virtual void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }

  void loadView() override;
  void viewDidAppear(bool animated) override;

 protected:
  void forwardAppearanceBegin(bool appearing, bool animated) override;
  void forwardAppearanceEnd(bool appeared, bool animated) override;
  bool appearsBeforeItsChildren() const override { return true; }

 private:
  friend class UINavigationController;
  friend class NavigationTransition;
  friend class UIViewController;
  void itemTapped(const Ref<UITabBarItem>& item) override;
  void barVisibilityDidChange() override { layOut(); }
  void select(const Ref<UIViewController>& controller);
  void layOut();
  /// Gives the selected screen the room that the bar leaves it; the bar itself stays where it is.
  void makeRoom();
  void updateItems();
  void fit(const Ref<UIViewController>& controller);
  /// A screen pushed in the selected tab wants the bar out of the way.
  bool isTabBarPushedAway() const;

  Weak<NSObject> delegate_;
  Ref<UITabBar> tabBar_;
  Ref<UIView> content_;
  Ref<UIViewController> selected_;
  Ref<UIViewController> shown_;
  bool selecting_ = false;
};

}  // namespace platform
