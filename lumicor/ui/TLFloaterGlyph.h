#pragma once

#include "platform/graphics/UIImage.h"

namespace lumicor {

using namespace platform;

/// A speech bubble with three dots, `side` points wide and high: what the floating button shows until its own picture
/// has come, or when there is none. Main thread.
Ref<UIImage> floaterGlyph(double side, const UIColor& color);

}  // namespace lumicor
