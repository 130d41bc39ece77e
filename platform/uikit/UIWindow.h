#pragma once

#include "platform/uikit/UITouch.h"
#include "platform/uikit/UIView.h"

namespace platform {

/// The root of a view tree on a screen. Made with `make<UIWindow>(frame)`, hidden until it is made visible; owned by
/// the host. Hiding it, or letting go of it, closes it: touches under way are cancelled. Main thread.
class UIWindow : public Object<UIWindow, UIView> {
 public:
  UIWindow();
  ~UIWindow() override;
  void initWithFrame(CGRect frame) override;

  virtual Ref<UIViewController> rootViewController() const;
  void setRootViewController(const Ref<UIViewController>& controller);
  virtual bool isKeyWindow() const;
  /// Adds the window to the application, shows it and makes it the key window.
  void makeKeyAndVisible();
  /// Windows of a higher level lie in front.
  double windowLevel() const;
  void setWindowLevel(double level);

  /// One finger at one instant, in window coordinates, `identifier` telling fingers apart. Everything a person touches,
  /// and everything TouchDriver does, comes in here.
  void deliverTouch(std::int64_t identifier, UITouchPhase phase, CGPoint location, double timestamp);

  /// Between this window's coordinates and the screen's.
  CGPoint convertPointToScreen(CGPoint point) const;
  CGPoint convertPointFromScreen(CGPoint point) const;

  void setHidden(bool hidden) override;
  Ref<UIWindow> window() const override;
  Ref<UIResponder> nextResponder() override;
  void layoutSubviews() override;

 private:
  void showRootView(bool shown);
  Ref<UIViewController> rootViewController_;
  double windowLevel_ = 0;
};

}  // namespace platform
