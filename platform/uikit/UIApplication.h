#pragma once

#include <functional>
#include <vector>

#include "platform/uikit/UIWindow.h"

namespace platform {

/// The running application: its windows, its first responder, its events. One, made on first use. Main thread.
class UIApplication : public Object<UIApplication, UIResponder> {
 public:
  static UIApplication& shared();

  /// In the order they were made visible. The application holds them weakly; the host owns them.
  std::vector<Ref<UIWindow>> windows() const;
  Ref<UIWindow> keyWindow() const;

  /// Sends an action: to the target, or up the responder chain from the sender (or the first responder) when there is
  /// no target. False when nobody answers it.
  bool sendAction(SEL action, const Ref<NSObject>& target, const Ref<NSObject>& sender, const Ref<UIEvent>& event);

  /// While ignored (calls nest), touches are dropped.
  void beginIgnoringInteractionEvents();
  void endIgnoringInteractionEvents();
  bool isIgnoringInteractionEvents() const { return ignoring_ > 0; }

  /// A key from the window system or a driver: first responder, then up its chain.
  void deliverKey(const UIKey& key);

  /// Brings layout and drawing of every window up to date now; the frame clock does it by itself otherwise.
  void layoutAndDisplayIfNeeded();

  /// Opens the desktop window (or the headless screen) for the key window and turns the run loop until terminate().
  int run(const std::string& title);
  void terminate();

  /// The picture of what the screen shows: all windows, software keyboard included, at the screen's scale.
  Ref<UIImage> screenshot();

 private:
  friend class UIWindow;
  friend class UIResponder;
  void addWindow(const Ref<UIWindow>& window);
  std::vector<Weak<UIWindow>> windows_;
  Weak<UIWindow> keyWindow_;
  Weak<UIResponder> firstResponder_;
  int ignoring_ = 0;
};

}  // namespace platform
