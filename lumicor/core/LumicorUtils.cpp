#include "lumicor/core/LumicorUtils.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/dispatch/Clock.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

Ref<UIViewController> rootViewController() {
  const Ref<UIWindow> window = UIApplication::shared().keyWindow();
  return window ? window->rootViewController() : nullptr;
}

Ref<UINavigationController> navigationControllerFrom(const Ref<UIViewController>& controller) {
  if (!controller) return nullptr;
  if (auto navigation = as<UINavigationController>(controller)) return navigation;
  if (const auto tabs = as<UITabBarController>(controller)) {
    if (auto found = navigationControllerFrom(tabs->selectedViewController())) return found;
  }
  if (auto found = navigationControllerFrom(controller->presentedViewController())) return found;
  if (auto own = controller->navigationController()) return own;
  for (const Ref<UIViewController>& child : controller->childViewControllers()) {
    if (auto found = navigationControllerFrom(child)) return found;
  }
  return nullptr;
}

}  // namespace

std::int64_t LumicorUtils::millisecondsSinceEpoch() { return truncated(Clock::secondsSince1970() * 1000); }

void LumicorUtils::failTruncation(double value) {
  fatalError("a number cannot be made a 64-bit integer: " + std::to_string(value));
}

std::optional<std::int64_t> LumicorUtils::decimalInteger(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

Ref<UIViewController> LumicorUtils::getCurrentViewController() {
  Ref<UIViewController> current = rootViewController();
  while (current) {
    if (Ref<UIViewController> presented = current->presentedViewController()) {
      current = std::move(presented);
    } else if (const auto navigation = as<UINavigationController>(current)) {
      // Stays here for ever while the navigation controller shows nothing: the search has no guard for that case.
      if (Ref<UIViewController> visible = navigation->visibleViewController()) current = std::move(visible);
    } else if (const auto tabs = as<UITabBarController>(current)) {
      Ref<UIViewController> selected = tabs->selectedViewController();
      if (!selected) break;
      current = std::move(selected);
    } else {
      break;
    }
  }
  return current;
}

Ref<UINavigationController> LumicorUtils::getNavigationControllerFromRoot() {
  return navigationControllerFrom(rootViewController());
}

std::string LumicorUtils::getViewOrientation() {
  const UIDeviceOrientation orientation = UIDevice::current().orientation();
  const bool landscape =
      orientation == UIDeviceOrientation::landscapeLeft || orientation == UIDeviceOrientation::landscapeRight;
  return landscape ? "LANDSCAPE" : "PORTRAIT";
}

bool LumicorUtils::isRunningOnSimulator() {
  const std::string& machine = UIDevice::current().machine();
  return machine == "x86_64" || machine == "i386" || machine == "arm64";
}

bool LumicorUtils::shouldTrack(std::string_view name) {
  static constexpr std::array<std::string_view, 16> excluded = {
      "UIHosting",
      "SwiftUI.",
      "UISystem",
      "_TtGC7SwiftUI",
      "UICompatibilityInputView",
      "UISystemInputAssistantView",
      "UIPredictionView",
      "UIInputWindow",
      "UISystemKeyboardDock",
      "_UICursorAccessoryView",
      "NotifyingMulticolumnSplitView",
      "StyleContextSplitViewNavigation",
      "UINavigation",
      "UITransition",
      "UITabBar",
      "UIEditingOverlayViewController",
  };
  return std::ranges::none_of(excluded, [name](std::string_view entry) { return name.find(entry) != name.npos; });
}

}  // namespace lumicor
