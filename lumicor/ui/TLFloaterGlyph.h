#pragma once

#include "platform/graphics/UIImage.h"

namespace lumicor {

using namespace platform;

/// A speech bubble with three dots, `glyph` points wide and high, in the middle of a picture of `side` points: what the
/// floating button shows until its own picture has come, or when there is none. Main thread.
Ref<UIImage> floaterGlyph(double side, double glyph, const UIColor& color);

}  // namespace lumicor
