#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/Object.h"

namespace platform {
class UINavigationController;
class UIView;
class UIViewController;
}  // namespace platform

namespace lumicor {

using namespace platform;

struct LumicorElementKind;

/// What several parts of the assistant ask for: the clock, the screen in front, orientation, the class-name filter.
/// Thread: main, except the clock, the numbers and the filter: any.
class LumicorUtils {
 public:
  /// Since 1970, truncated toward zero.
  static std::int64_t millisecondsSinceEpoch();
  /// Truncated toward zero. A number that is not finite or does not fit is a fatal programming error.
  static std::int64_t truncated(double value) {
    // The upper bound is the first double that no longer fits; the lower one fits exactly.
    if (!(value >= -9223372036854775808.0 && value < 9223372036854775808.0)) [[unlikely]]
      failTruncation(value);
    return static_cast<std::int64_t>(value);
  }
  /// A whole decimal number, with or without a sign, that fits; none for any other text.
  static std::optional<std::int64_t> decimalInteger(std::string_view text);

  /// The controller in front: from the key window's root through presented controllers and the visible children of
  /// navigation and tab bar controllers. A navigation controller that shows nothing is asked again without end.
  static Ref<UIViewController> getCurrentViewController();
  /// The navigation controller to push on, found from the key window's root controller, or none.
  static Ref<UINavigationController> getNavigationControllerFromRoot();
  /// "LANDSCAPE" when the device lies on one of its long sides, otherwise "PORTRAIT".
  static std::string getViewOrientation();
  static bool isRunningOnSimulator();
  /// False for class names of the system and its frameworks, told by what they contain.
  static bool shouldTrack(std::string_view name);

  /// What kind of element a view is and what it holds (lumicor/screen/LumicorElementKind.h).
  static LumicorElementKind getLumicorElementType(const Ref<UIView>& view);

 private:
  [[noreturn]] static void failTruncation(double value);
};

}  // namespace lumicor
