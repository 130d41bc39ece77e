#include "platform/uikit/device/UIAccessibility.h"

#include <utility>

#include "platform/foundation/NotificationCenter.h"

namespace platform {

namespace {
bool reducesMotion = false;
}

bool UIAccessibility::isReduceMotionEnabled() { return reducesMotion; }

void UIAccessibility::setReduceMotionEnabled(bool enabled) {
  if (std::exchange(reducesMotion, enabled) == enabled) return;
  NotificationCenter::defaultCenter().post(UIAccessibilityReduceMotionStatusDidChangeNotification);
}

}  // namespace platform
