#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/text/KeyboardHost.h"
#include "platform/uikit/touch/ApplicationHost.h"

namespace platform {

/// The running application: its windows, its first responder, its events. One, made on first use. Main thread.
class UIApplication : public Object<UIApplication, UIResponder>, public ApplicationHost, private KeyboardHost {
 public:
  static UIApplication& shared();
  UIApplication();
  ~UIApplication() override;

  /// In the order they were made visible. The application holds them weakly; the host owns them.
  std::vector<Ref<UIWindow>> windows() const;
  Ref<UIWindow> keyWindow() const;

  /// Sends an action: to the target, or up the responder chain from the sender (or the first responder) when there is
  /// no target. The action takes nothing, the sender, or the sender and the event, as many as its name has colons.
  /// False when nobody answers it.
  bool sendAction(SEL action, const Ref<NSObject>& target, const Ref<NSObject>& sender,
                  const Ref<UIEvent>& event) override;

  /// While ignored (calls nest), touches are dropped; those under way are cancelled when their finger lifts.
  void beginIgnoringInteractionEvents();
  void endIgnoringInteractionEvents();
  bool isIgnoringInteractionEvents() const override { return ignoring_ > 0; }

  /// One finger at one instant, in screen coordinates: what the window system and TouchDriver send. A touch belongs to
  /// the front-most window that takes it, until it ends.
  void deliverTouch(std::int64_t identifier, UITouchPhase phase, CGPoint screenPoint, double timestamp);
  /// A wheel or a touch pad over a point of the screen: the nearest scroll view there that can move that way follows.
  void deliverScroll(CGPoint screenPoint, CGVector delta);
  /// A key from the window system or a driver: first responder, then up its chain.
  void deliverKey(const UIKey& key) override;

  /// Brings layout and drawing of every window up to date now; the run loop does it by itself after each turn.
  void layoutAndDisplayIfNeeded();
  /// The picture of what the screen shows: all windows, software keyboard included, at the screen's scale. Views hidden
  /// from captures are black.
  Ref<UIImage> screenshot();
  /// The same of one window alone, of the size of its bounds; none for no window.
  Ref<UIImage> captureImage(const Ref<UIWindow>& window);
  /// What the screen shows: the layers of all visible windows, back to front.
  const Ref<CALayer>& screenLayer() const { return screenLayer_; }

  /// For programs that nobody looks at: nothing of the desktop is used, the pasteboard is the program's own. First of
  /// all calls.
  static void goWithoutDisplay();
  /// Opens the desktop window (or the headless screen) and turns the run loop until terminate(). The exit code: 1, with
  /// a line on standard error, when there is no display and nobody asked to go without.
  int run(const std::string& title);
  void terminate();

 private:
  friend class UIWindow;
  friend class ApplicationHost;
  friend class KeyboardHost;
  void addWindow(const Ref<UIWindow>& window);
  void removeWindow(const UIWindow& window);
  void arrangeWindows();
  std::vector<Ref<UIWindow>> windowsBackToFront() const;
  void firstResponderDidChange() override;
  CGRect keyboardFrame() const override;
  Ref<UIView> makeKeyboardWindow() override;
  void afterTurn();

  std::vector<Weak<UIWindow>> windows_;
  Weak<UIWindow> keyWindow_;
  std::map<std::int64_t, Weak<UIWindow>> touchedWindows_;
  Ref<CALayer> screenLayer_;
  int ignoring_ = 0;
};

}  // namespace platform
