#pragma once

#include <utility>

#include "lumicor/core/TLLayout.h"
#include "lumicor/ui/TLFloaterView.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace lumicor {

using namespace platform;

class TLBottomCloseView;
class TLChatViewController;

/// Owns the floating button, its close target and the chat screen; the delegate of the host's navigation controller, so
/// that the chat opens and closes with transitions of its own. One, made on first use. Main thread.
class TLFloaterManager : public Object<TLFloaterManager, NSObject>, public TLFloaterViewDelegate {
 public:
  static TLFloaterManager& shared();
  TLFloaterManager();
  ~TLFloaterManager() override;
  static void exportMethods(MethodTable<TLFloaterManager>& table);
  void init();

  const Ref<TLFloaterView>& floaterView() const { return floaterView_; }
  const Ref<TLBottomCloseView>& bottomCloseView() const { return bottomCloseView_; }
  const TLLayout& layoutData() const { return layoutData_; }
  void setLayoutData(TLLayout layoutData) { layoutData_ = std::move(layoutData); }
  const Ref<TLChatViewController>& chatViewController() const { return chatViewController_; }
  /// It is the chat that requests are answered in from here on.
  void setChatViewController(Ref<TLChatViewController> chat);

  /// Makes a new button, still invisible (see TLFloaterView::setShow), and a new chat screen.
  void show();
  void floaterMoveEvents();
  /// Becomes the delegate of the navigation controller that the chat is pushed on, and passes on to the host's own
  /// delegate whatever it asks or is told. That one comes back when the chat has gone, and when another navigation
  /// controller takes its place. Nothing happens without a key window, a root controller or a navigation controller.
  void overrideNavigationDelegate();
  /// The transition between two screens: the chat's own ones, or what the host's delegate says.
  Ref<NSObject> animationControllerFor(const Ref<UINavigationController>& navigation,
                                       UINavigationControllerOperation operation, const Ref<UIViewController>& from,
                                       const Ref<UIViewController>& to);
  /// A screen has come: told to the host's delegate too, which is back in its place once the chat has gone.
  void didShow(const Ref<UINavigationController>& navigation, const Ref<UIViewController>& screen, bool animated);
  /// Safe distances of the key window; none without one.
  static UIEdgeInsets screenInsets();

  bool respondsToSelector(SEL selector) const override;
  Ref<NSObject> forwardingTargetForSelector(SEL selector) const override;

  /// Puts the chat on top of that stack, out of the one that holds it now.
  void pushChat(const Ref<UINavigationController>& navigation);
  /// A picture of the host as it stood before the chat was pushed, bars and all, as a view of the window's size, once;
  /// none when there is none.
  Ref<UIView> takeCover() { return std::exchange(cover_, nullptr); }
  /// Lets the button fade in again, unless the person has dismissed it or the chat is open.
  void bringButtonBack();
  /// The chat has gone out of sight, in whatever way: the button comes back unless the chat will by itself.
  void chatDidDisappear();
  /// A chat that was left behind elsewhere is in sight again: the button that stood in for it goes.
  void chatDidAppear();
  /// The close target slides out of the screen.
  void parkCloseTarget();

  void floatViewBeginMove(TLFloaterView& floatView, CGPoint point) override;
  void floatViewMoved(TLFloaterView& floatView, CGPoint point) override;
  void floatViewCancelMove(TLFloaterView& floatView) override;

 private:
  void openChat();
  void prepareCover();
  void leaveStack();
  void giveDelegateBack();

  Ref<TLFloaterView> floaterView_;
  Ref<TLBottomCloseView> bottomCloseView_;
  TLLayout layoutData_;
  Ref<TLChatViewController> chatViewController_;
  Ref<UIView> cover_;
  Weak<UINavigationController> overridden_;
  Weak<NSObject> hostDelegate_;  // that of the overridden navigation controller
  bool wasDismissed_ = false;    // the button, over the close target
  bool chatWasShown_ = false;    // there, since it was overridden
  bool standsIn_ = false;        // the button, for a chat on a stack out of sight
};

}  // namespace lumicor
