#pragma once

#include <string_view>

#include "platform/geometry/UIColor.h"

namespace lumicor {

using namespace platform;

/// The colour of "#aarrggbb", "#rrggbb" or "#rgb"; what surrounds the letters and digits does not count. The alpha byte
/// leads in the long form. A text of any other length is opaque black.
UIColor UIColorHex(std::string_view hex);

}  // namespace lumicor
