#pragma once

#include "platform/uikit/touch/UITouch.h"
#include "platform/uikit/views/UIView.h"
#include "platform/uikit/views/WindowHost.h"

namespace platform {

/// The root of a view tree on a screen. Made with `make<UIWindow>(frame)`, hidden until it is made visible; owned by
/// the host. Hiding it, or letting go of it, closes it: touches under way are cancelled, editing ends. Main thread.
class UIWindow : public Object<UIWindow, UIView>, private WindowHost {
 public:
  UIWindow();
  ~UIWindow() override;
  void initWithFrame(CGRect frame) override;

  virtual Ref<UIViewController> rootViewController() const;
  /// Its view fills the window, behind whatever was added to the window itself.
  void setRootViewController(const Ref<UIViewController>& controller);
  virtual bool isKeyWindow() const;
  /// False for windows of the platform's own, which stay in front of the application's without becoming key.
  virtual bool canBecomeKeyWindow() const { return true; }
  /// Adds the window to the application, shows it and makes it the key window.
  void makeKeyAndVisible();
  /// Windows of a higher level lie in front.
  double windowLevel() const;
  void setWindowLevel(double level);

  /// One finger at one instant, in window coordinates, `identifier` telling fingers apart. Everything a person touches,
  /// and everything TouchDriver does, comes in here. Dropped while interaction events are ignored.
  void deliverTouch(std::int64_t identifier, UITouchPhase phase, CGPoint location, double timestamp);

  /// Between this window's coordinates and the screen's.
  CGPoint convertPointToScreen(CGPoint point) const;
  CGPoint convertPointFromScreen(CGPoint point) const;

  bool standsOnScreen() const override { return true; }
  void setHidden(bool hidden) override;
  Ref<UIWindow> window() const override;
  Ref<UIResponder> nextResponder() override;
  void layoutSubviews() override;

 private:
  Ref<UIWindow> hostWindow() override { return UIWindow::window(); }
  Ref<UIView> hostWindowView() override { return UIWindow::window(); }
  void showRootView();
  void placeRootView();
  void close();
  Ref<UIViewController> rootViewController_;
  double windowLevel_ = 0;
};

}  // namespace platform
