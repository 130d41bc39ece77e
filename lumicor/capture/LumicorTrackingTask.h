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

/// The one place that everything a person does, and every screen that comes to the front, is told to.
/// Static state of the process. Main thread.
class LumicorTrackingTask {
 public:
  /// Hears of every registered action: its name and the view acted on.
  using ActionListener = std::function<void(const std::string& actionName, const Ref<UIView>& view)>;
  /// Replaces the listener; none removes it.
  static void setActionListener(ActionListener listener);

  /// Something was done to a view while a demonstration is under way.
  static void registerUserAction(const std::string& actionName, const Ref<UIView>& view);

  /// A new screen is in front: its class name becomes the façade's current view.
  static void setUpScreen(const Ref<UIViewController>& screen);
  /// Told after every appearance of a screen once the session is initialised, whatever the screen's class.
  static void handleScreenChange(const Ref<UIViewController>& screen);

  /// Lays the control that starts and stops demonstrations over the host's window.
  static void showTrackingControlView(const Ref<UIView>& view);
};

}  // namespace lumicor
