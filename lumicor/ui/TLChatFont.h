#pragma once

#include <cstdint>

#include "platform/graphics/UIFont.h"

namespace lumicor {

/// The font of the chat at a size in points and a CSS-style weight: the chat font that was registered last, or the
/// system font of that weight while there is none. Main thread.
platform::UIFont chatFont(double size, std::int64_t weight);

}  // namespace lumicor
