#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lumicor/capture/LumicorOriginalAction.h"
#include "lumicor/screen/LumicorSnapshot.h"
#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace lumicor {

using namespace platform;

/// The recorder of a demonstration: everything that a person does while the façade's `isTracking` is set becomes one
/// snapshot of the screen. The one place that actions, and every screen that comes to the front, are told to.
/// Static state of the process. Main thread.
class LumicorTrackingTask {
 public:
  /// The demonstration under way, in the order in which its actions were registered.
  inline static std::vector<LumicorSnapshot> taskFlow;

  /// While one lives, whatever is registered is one doing of the person: what an action brings about by itself, such as
  /// the screen that leaves when "Save" was pressed, bears the `actionId` of that action.
  class Doing {
   public:
    Doing();
    ~Doing();
    Doing(const Doing&) = delete;
    Doing& operator=(const Doing&) = delete;
  };

  // ---- Actions. One without an identifier is told to the person and not registered; whatever becomes of it, the
  // application hears what it would have heard without tracking.

  /// Something was done to a view; `value` is what was chosen where the view itself cannot tell.
  static void registerUserAction(const std::string& actionName, const Ref<UIView>& view,
                                 const std::optional<std::string>& value = std::nullopt);
  /// Registers, and then sends the original action.
  static void handleControlAction(const std::string& actionName, const Ref<UIControl>& control,
                                  const LumicorOriginalAction& original);
  static void handleBarButtonAction(const std::string& actionName, const Ref<UIBarButtonItem>& item,
                                    const LumicorOriginalAction& original);
  /// The same for an item that was pressed by other means than a control.
  static void handleBarButtonPress(const std::string& actionName, const Ref<UIBarButtonItem>& item,
                                   const std::function<void()>& sendOriginal);
  /// Registers, and then tells the host's delegate.
  static void handleTabSelection(const std::string& actionName, const Ref<UITabBarController>& controller,
                                 const Ref<UIViewController>& selected, const Ref<NSObject>& originalDelegate);

  // ---- Screens
  /// A screen is about to become the façade's current one: what was entered on the one before is registered there.
  static void willShowScreen(const Ref<UIViewController>& screen);
  /// A new screen is in front: its class name becomes the façade's current view.
  static void setUpScreen(const Ref<UIViewController>& screen);
  /// Told after every appearance of a screen once the session is initialised, whatever the screen's class. During a
  /// demonstration its delegates get their proxies.
  static void handleScreenChange(const Ref<UIViewController>& screen);

  // ---- The control bar
  /// The service wants demonstrations: their control bar goes over the key window, in the place of an earlier one.
  static void showTrackingControlView(const Ref<UIView>& view);
  /// The bar's button was pressed: what it says decides.
  static void click();
  static void start();
  /// The closing snapshot is taken in a turn of its own; nothing is registered after it.
  static void stop();
  /// What the recording has to tell the bar: it goes on, or everything is over.
  static void recordingBegan();
  static void recordingReset();

 private:
  static void beginOn(const Ref<UIViewController>& screen);
  static void registerClosing();
  static void registerItem(const std::string& actionName, const UIBarButtonItem& item);
  static void registerAction(const std::string& name, const Ref<UIView>& view,
                             const std::optional<std::string>& identifier, const std::optional<std::string>& value);

  static std::int64_t nextIndex();

  inline static int doings_ = 0;          // those that live
  inline static std::int64_t doing_ = 0;  // the index of the first action of the outermost
  inline static bool isClosed_ = false;   // stopped, and on its way to the service
};

}  // namespace lumicor
