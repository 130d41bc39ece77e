#pragma once

#include <optional>

#include "platform/geometry/CGGeometry.h"

namespace lumicor {

using namespace platform;

/// What the rule for a keyboard that comes up looks at; points.
struct KeyboardSituation {
  double viewHeight;
  double bottomInset;
  CGRect barFrame;
  double keyboardHeight;
};

/// The new constant of the input bar's bottom constraint, or none when the bar does not sit at the bottom and stays.
/// The ordinary branch ignores the safe-area inset that the constraint already counts; that is meant.
std::optional<double> keyboardOffset(const KeyboardSituation& situation);

}  // namespace lumicor
