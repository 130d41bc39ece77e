#pragma once

#include <string>

namespace platform {

/// Posted when the switch changes. The object is none.
inline const std::string UIAccessibilityReduceMotionStatusDidChangeNotification =
    "UIAccessibilityReduceMotionStatusDidChangeNotification";

/// What the person has asked of every application. Main thread.
class UIAccessibility {
 public:
  /// Screens that come and go fade instead of sliding and growing. Whoever moves much asks as well.
  static bool isReduceMotionEnabled();
  /// For the settings of the device, which the host stands in for.
  static void setReduceMotionEnabled(bool enabled);
};

}  // namespace platform
