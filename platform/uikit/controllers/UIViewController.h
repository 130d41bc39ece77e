#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/runtime/Exchangeable.h"
#include "platform/uikit/controllers/UIStoryboardSegue.h"
#include "platform/uikit/lists/SegueHost.h"
#include "platform/uikit/views/RootViewHost.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

class ModalPresentation;

enum class UIModalPresentationStyle { fullScreen, pageSheet, overFullScreen, overCurrentContext };
enum class UIModalTransitionStyle { coverVertical, crossDissolve };

/// A screen or a part of one: owns a root view, made when first asked for, and is told of its appearances. A parent
/// owns its children, a presenting controller the presented one. Thread: main.
class UIViewController : public Object<UIViewController, RootViewHost>, public SegueHost {
 public:
  UIViewController();
  ~UIViewController() override;
  void init() {}
  static void exportMethods(MethodTable<UIViewController>& table);

  // ---- View
  const Ref<UIView>& view();
  /// The view when it has been made already, else none.
  Ref<UIView> viewIfLoaded() const { return view_; }
  bool isViewLoaded() const { return view_ != nullptr; }
  void setView(const Ref<UIView>& view);
  void loadViewIfNeeded() { (void)view(); }
  /// Makes the root view; the base makes a plain one of the screen's size.
  virtual void loadView();
  virtual void viewDidLoad() {}
  virtual void viewWillAppear(bool animated);
  virtual void viewDidAppear(bool animated) {
    Exchangeable<&UIViewController::viewDidAppear, &UIViewController::platformViewDidAppear>::call(*this, animated);
  }
  virtual void viewWillDisappear(bool animated) {
    Exchangeable<&UIViewController::viewWillDisappear, &UIViewController::platformViewWillDisappear>::call(*this,
                                                                                                           animated);
  }
  virtual void viewDidDisappear(bool animated);
  void viewWillLayoutSubviews() override {}
  void viewDidLayoutSubviews() override {}
  void viewSafeAreaInsetsDidChange() override {}

  const std::string& title() const { return title_; }
  virtual void setTitle(const std::string& title);

  // ---- Containment
  ///
  /// Order of the callbacks: willAppear and willDisappear reach a parent before its children, didAppear and
  /// didDisappear reach the children first; only navigation and tab bar controllers have appeared before the screen
  /// that they show, which the base of their viewDidAppear tells. A child whose view is put into a view on a screen
  /// (or taken out) by plain addSubview and removeFromSuperview is told so as well.
  virtual const std::vector<Ref<UIViewController>>& childViewControllers() const { return children_; }
  Ref<UIViewController> parentViewController() const { return parent_.lock(); }
  /// Calls willMoveToParent on the child; the caller adds the view and then calls didMoveToParent.
  void addChildViewController(const Ref<UIViewController>& child);
  void removeFromParentViewController();
  virtual void willMoveToParent(Ref<UIViewController> parent) {
    Exchangeable<&UIViewController::willMoveToParent, &UIViewController::platformWillMoveToParent>::call(*this, parent);
  }
  virtual void didMoveToParent(const Ref<UIViewController>& parent);
  /// For containers: the appearance callbacks of a child, in pairs.
  void beginAppearanceTransition(bool appearing, bool animated);
  void endAppearanceTransition();
  bool isMovingToParentViewController() const { return movingToParent_; }
  bool isMovingFromParentViewController() const { return movingFromParent_; }
  bool isBeingPresented() const { return beingPresented_; }
  bool isBeingDismissed() const { return beingDismissed_; }

  // ---- Presentation
  void presentViewController(const Ref<UIViewController>& controller, bool animated,
                             std::function<void()> completion = nullptr);
  /// Dismisses what this controller presents, or itself when it presents nothing.
  void dismissViewController(bool animated, std::function<void()> completion = nullptr);
  virtual Ref<UIViewController> presentedViewController() const;
  /// Also of an ancestor.
  virtual Ref<UIViewController> presentingViewController() const;
  UIModalPresentationStyle modalPresentationStyle() const { return presentationStyle_; }
  void setModalPresentationStyle(UIModalPresentationStyle style) { presentationStyle_ = style; }
  UIModalTransitionStyle modalTransitionStyle() const { return transitionStyle_; }
  void setModalTransitionStyle(UIModalTransitionStyle style) { transitionStyle_ = style; }

  // ---- Containers around
  virtual Ref<UINavigationController> navigationController() const;
  virtual Ref<UITabBarController> tabBarController() const;
  const Ref<UINavigationItem>& navigationItem();
  const Ref<UITabBarItem>& tabBarItem();
  void setTabBarItem(const Ref<UITabBarItem>& item);
  bool hidesBottomBarWhenPushed() const { return hidesBottomBarWhenPushed_; }
  void setHidesBottomBarWhenPushed(bool hides) { hidesBottomBarWhenPushed_ = hides; }
  std::vector<Ref<UIBarButtonItem>> toolbarItems() const { return toolbarItems_; }
  void setToolbarItems(std::vector<Ref<UIBarButtonItem>> items, bool animated = false);
  /// Extra room that bars of containers take from the safe area.
  UIEdgeInsets additionalSafeAreaInsets() const { return additionalSafeAreaInsets_; }
  void setAdditionalSafeAreaInsets(UIEdgeInsets insets);
  /// What the root view adds to the safe area that it inherits: the additional insets and the bars of the container.
  UIEdgeInsets safeAreaContribution() const override;

  // ---- Segues
  /// Registers a segue by identifier: what to make and how to show it ("show" pushes, "present" presents).
  using SegueKind = UIStoryboardSegue::Kind;
  void registerSegue(const std::string& identifier, SegueKind kind, std::function<Ref<UIViewController>()> destination);
  bool hasSegue(const std::string& identifier) const override { return segues_.contains(identifier); }
  /// For a view that a segue hangs on: whether to go. Not asked by performSegue.
  bool shouldPerformSegue(const std::string& identifier, const Ref<NSObject>& sender) override;
  /// An unknown identifier is a fatal programming error.
  void performSegue(const std::string& identifier, const Ref<NSObject>& sender) override;
  /// The same for an identifier that comes from elsewhere: one that this screen does not know is passed over.
  void performSegueIfKnown(const std::string& identifier, const Ref<NSObject>& sender);
  /// Exchangeable ("prepareForSegue:sender:").
  virtual void prepareForSegue(Ref<UIStoryboardSegue> segue, Ref<NSObject> sender) {
    Exchangeable<&UIViewController::prepareForSegue, &UIViewController::platformPrepareForSegue>::call(*this, segue,
                                                                                                       sender);
  }

  Ref<UIResponder> nextResponder() override;

  /// Called by the root view around its moves between windows.
  void viewWillMoveToWindow(const Ref<UIWindow>& window) override;
  void viewDidMoveToWindow(const Ref<UIWindow>& window) override;

  // The platform's own behaviour of the exchangeable operations.
  void platformViewDidAppear(bool animated);
  void platformViewWillDisappear(bool animated);
  void platformWillMoveToParent(Ref<UIViewController> parent);
  void platformPrepareForSegue(Ref<UIStoryboardSegue> segue, Ref<NSObject> sender);

 protected:
  /// Hand the begin and the end of an appearance on to the children that take part in it. The base takes those whose
  /// views are in this controller's view; containers of the platform choose their own.
  virtual void forwardAppearanceBegin(bool appearing, bool animated);
  virtual void forwardAppearanceEnd(bool appeared, bool animated);
  /// Whether the children that take part have appeared only after this controller has.
  virtual bool appearsBeforeItsChildren() const { return false; }
  /// Hands the end of an appearance on to the children, once; nothing when none is due.
  void handAppearanceOn(bool animated);

 private:
  friend class UINavigationController;
  friend class NavigationTransition;
  friend class UITabBarController;
  friend class UIWindow;
  friend class ModalPresentation;
  enum class Appearance { disappeared, appearing, appeared, disappearing };
  void setBarInsets(UIEdgeInsets insets);
  Ref<UIViewController> rootAncestor();
  struct Segue {
    SegueKind kind;
    std::function<Ref<UIViewController>()> destination;
  };
  Ref<UIView> view_;
  std::string title_;
  std::vector<Ref<UIViewController>> children_;
  Weak<UIViewController> parent_;
  Ref<UIViewController> presented_;
  Weak<UIViewController> presenting_;
  std::shared_ptr<ModalPresentation> presentation_;  // how this controller is presented
  Ref<UINavigationItem> navigationItem_;
  Ref<UITabBarItem> tabBarItem_;
  std::vector<Ref<UIBarButtonItem>> toolbarItems_;
  std::map<std::string, Segue> segues_;
  UIEdgeInsets additionalSafeAreaInsets_;
  UIEdgeInsets barInsets_;
  UIModalPresentationStyle presentationStyle_ = UIModalPresentationStyle::fullScreen;
  UIModalTransitionStyle transitionStyle_ = UIModalTransitionStyle::coverVertical;
  Appearance appearance_ = Appearance::disappeared;
  bool appearanceAnimated_ = false;
  bool appearanceByWindow_ = false;        // begun by the view's own move, so its end comes from there too
  bool childrenAwaitAppearance_ = false;   // their end of this controller's appearance is still to come
  bool unknownSegueIsPassedOver_ = false;  // while performSegueIfKnown asks
  bool loadingView_ = false;
  bool hidesBottomBarWhenPushed_ = false;
  bool movingToParent_ = false;
  bool movingFromParent_ = false;
  bool beingPresented_ = false;
  bool beingDismissed_ = false;
};

}  // namespace platform
