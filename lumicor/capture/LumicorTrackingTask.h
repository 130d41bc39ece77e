#pragma once

#include <functional>
#include <string>

#include "platform/runtime/Object.h"

namespace platform {
class UIView;
class UIViewController;
}  // namespace platform

namespace lumicor {

using namespace platform;

/// Hears what the tracking flow is told; every member may be none.
struct LumicorTrackingListener {
  std::function<void(const std::string& actionName, const Ref<UIView>& view)> onUserAction;
  std::function<void(const Ref<UIViewController>& screen)> onScreenChange;
  std::function<void(const Ref<UIView>& view)> onShowControl;
};

/// The one place that everything a person does, and every screen that comes to the front, is told to.
/// Static state of the process. Main thread.
class LumicorTrackingTask {
 public:
  /// Replaces the listener.
  static void setListener(LumicorTrackingListener listener);

  /// Something was done to a view while a demonstration is under way.
  static void registerUserAction(const std::string& actionName, const Ref<UIView>& view);

  /// A new screen is in front: its class name becomes the façade's current view.
  static void setUpScreen(const Ref<UIViewController>& screen);
  /// Told after every appearance of a screen once the session is initialised, whatever the screen's class.
  static void handleScreenChange(const Ref<UIViewController>& screen);

  /// The service wants demonstrations: their control belongs over the screen of that view.
  static void showTrackingControlView(const Ref<UIView>& view);
};

}  // namespace lumicor
