#pragma once

#include <string>
#include <string_view>

#include "lumicor/core/TLAction.h"
#include "platform/runtime/Object.h"

namespace platform {
class UIBarButtonItem;
class UISearchController;
class UITabBarController;
class UIView;
class UIViewController;
}  // namespace platform

namespace lumicor {

using namespace platform;

/// The element kinds that a step is performed by; every other one leaves the choice to the class of the view found.
namespace TLActionType {
inline constexpr std::string_view systemBack = "TYPE_SYSTEM_BACK";
inline constexpr std::string_view tabBar = "TYPE_TABBAR";
inline constexpr std::string_view search = "TYPE_SEARCH";
inline constexpr std::string_view searchCancel = "TYPE_SEARCH_CANCEL";
inline constexpr std::string_view pickerView = "TYPE_PICKER_VIEW";
}  // namespace TLActionType

/// What one attempt at a step found on the current screen. It keeps what it found alive until the action is over.
/// Main thread.
struct TLStepTarget {
  Ref<UIView> view;
  Ref<UIBarButtonItem> barButtonItem;
  Ref<UITabBarController> tabBarHolder;
  Ref<UISearchController> searchController;

  /// Looks everything up for a step on the façade's current screen.
  static TLStepTarget find(const TLAction& step);
  /// The view alone: none unless the current screen's class name is `viewName`.
  static Ref<UIView> findView(const std::string& elementId, const std::string& viewName);

  /// Whether there is something that a step of that kind can be performed on.
  bool isThereFor(std::string_view actionType) const;
};

/// The first view of the tree, depth first, back to front, the root first, that has the identifier and passes the
/// test. Uses no stack for depth.
using TLViewTest = bool (*)(const UIView& view);
Ref<UIView> viewWithIdentifier(const Ref<UIView>& root, std::string_view identifier, TLViewTest test = nullptr);

}  // namespace lumicor
