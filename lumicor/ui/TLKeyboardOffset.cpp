#include "lumicor/ui/TLKeyboardOffset.h"

namespace lumicor {

namespace {
constexpr double leastRoomAboveBar = 20;
}

std::optional<double> keyboardOffset(const KeyboardSituation& situation) {
  const auto& [viewHeight, bottomInset, bar, keyboardHeight] = situation;
  const bool sitsAtBottom = viewHeight - (bar.origin.y + bar.size.height) <= bottomInset;
  if (!sitsAtBottom) return std::nullopt;
  const bool isCramped = viewHeight - bottomInset < keyboardHeight + bar.size.height + leastRoomAboveBar;
  return isCramped ? -(keyboardHeight - bottomInset) : -keyboardHeight;
}

}  // namespace lumicor
