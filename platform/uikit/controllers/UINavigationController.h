#pragma once

#include <memory>
#include <vector>

#include "platform/uikit/bars/NavigationBarHost.h"
#include "platform/uikit/controllers/UIViewController.h"

namespace platform {

class NavigationEdgePan;
class NavigationTransition;
class UIGestureRecognizer;

enum class UINavigationControllerOperation { none, push, pop };

/// A stack of screens with a bar that leads back.
///
/// The stack changes at once, the screen follows: a change asked for while another one runs is shown when that has
/// ended (an unanimated change ends a running one at once). A custom transition that does not complete is ended by the
/// controller a second after its stated duration.
///
/// Delegate selectors (held weakly, all optional):
///   "navigationController:willShowViewController:animated:"  void (controller, screen, bool)
///   "navigationController:didShowViewController:animated:"   void (controller, screen, bool)
///   "navigationController:animationControllerForOperation:fromViewController:toViewController:"
///        Ref<NSObject> (controller, UINavigationControllerOperation, from, to); none for the platform's own slide.
/// Main thread.
class UINavigationController : public Object<UINavigationController, UIViewController>, public NavigationBarHost {
 public:
  UINavigationController();
  ~UINavigationController() override;
  static void exportMethods(MethodTable<UINavigationController>& table);
  void init();
  void init(const Ref<UIViewController>& root);

  /// Seconds of the platform's own push, pop and bar animations.
  static constexpr double transitionDuration = 0.35;
  static constexpr double hideShowBarDuration = 0.2;

  // ---- The stack, bottom first
  const std::vector<Ref<UIViewController>>& viewControllers() const { return childViewControllers(); }
  void setViewControllers(std::vector<Ref<UIViewController>> controllers, bool animated = false);
  virtual Ref<UIViewController> topViewController() const;
  /// What is presented, else the top.
  virtual Ref<UIViewController> visibleViewController() const;
  /// Pushing one that is on the stack already is a fatal programming error.
  virtual void pushViewController(const Ref<UIViewController>& controller, bool animated);
  /// The screen that went, or none when only the root is left.
  virtual Ref<UIViewController> popViewControllerAnimated(bool animated);
  /// The screens that went, bottom first; empty when it was at the root already.
  virtual std::vector<Ref<UIViewController>> popToRootViewControllerAnimated(bool animated);
  /// One that is not on the stack is a fatal programming error.
  virtual std::vector<Ref<UIViewController>> popToViewController(const Ref<UIViewController>& controller,
                                                                 bool animated);

  Ref<NSObject> delegate() const { return delegate_.lock(); }
  void setDelegate(const Ref<NSObject>& delegate) { delegate_ = delegate; }
  bool isTransitioning() const { return transition_ != nullptr; }
  /// A pan from the left edge that leads back. Disable it to forbid that.
  Ref<UIGestureRecognizer> interactivePopGestureRecognizer();

  // ---- Bars
  virtual Ref<UINavigationBar> navigationBar();
  bool isNavigationBarHidden() const { return navigationBarHidden_; }
  virtual void setNavigationBarHidden(bool hidden, bool animated = false);
  virtual Ref<UIToolbar> toolbar();
  bool isToolbarHidden() const { return toolbarHidden_; }
  void setToolbarHidden(bool hidden, bool animated = false);

  void loadView() override;
  void viewDidAppear(bool animated) override;

 protected:
  void forwardAppearanceBegin(bool appearing, bool animated) override;
  void forwardAppearanceEnd(bool appeared, bool animated) override;
  bool appearsBeforeItsChildren() const override { return true; }

 private:
  friend class NavigationTransition;
  friend class NavigationEdgePan;
  friend class UIViewController;
  friend class UITabBarController;
  using Stack = std::vector<Ref<UIViewController>>;

  // UINavigationController.cpp: the stack and what follows from it
  void change(Stack stack, bool animated);
  void adopt();
  void follow(bool animated);
  void followSilently();
  void begin(const Ref<UIViewController>& to, bool animated, bool interactive);
  void transitionEnded(bool completed);
  void goBackTo(const Ref<UIViewController>& from, const Ref<UIViewController>& to);
  Stack leaving() const;
  void announceLeaving(const Stack& leaving);
  void finishEntering(const Stack& entering);
  void finishLeaving(const Stack& leaving);
  bool canPopInteractively();
  void beginInteractivePop();
  Ref<NSObject> animationControllerFor(UINavigationControllerOperation operation, const Ref<UIViewController>& from,
                                       const Ref<UIViewController>& to);
  void tellDelegate(const char* selector, const Ref<UIViewController>& shown, bool animated);

  // UINavigationControllerBars.cpp: what stands where
  void layOut();
  void layOutBars();
  /// Moves the bars to where they belong, hides what is out of sight at the end.
  void applyBars(bool animated, double seconds);
  void settleBars();
  void updateInsets();
  void makeRoom(const Ref<UIViewController>& leaving);
  /// Puts the screen's view into place among the contents.
  void place(const Ref<UIViewController>& controller);
  void fit(const Ref<UIViewController>& controller);
  void showItems(bool animated);
  void toolbarItemsDidChange(const UIViewController& controller, bool animated);
  void barHeightDidChange(bool animated) override;
  bool shouldPopItem(Ref<NSObject> bar, Ref<NSObject> item);

  Weak<NSObject> delegate_;
  Ref<UIView> content_;  // holds the screens' views
  Ref<UINavigationBar> bar_;
  Ref<UIToolbar> toolbar_;
  Ref<NavigationEdgePan> edgePan_;
  Ref<UIViewController> shown_;     // the screen whose view is in place
  Ref<UIViewController> arriving_;  // the one that is on its way in
  Stack adopted_;                   // whose parent this is: the stack, and those on their way out
  Stack entering_;                  // not yet told didMoveToParent
  Stack settled_;                   // the stack as the last finished transition left it
  std::shared_ptr<NavigationTransition> transition_;
  bool settling_ = false;  // callbacks of a transition run: changes wait
  bool waiting_ = false;   // the stack changed meanwhile
  bool waitingAnimated_ = false;
  bool navigationBarHidden_ = false;
  bool toolbarHidden_ = true;
};

}  // namespace platform
