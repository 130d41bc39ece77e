#pragma once

#include "platform/uikit/views/UIView.h"

namespace lumicor {

using namespace platform;

/// A dark veil over the whole key window, on top of everything in it; no touch gets through. Owned by the window: take
/// it away with removeFromSuperview. None without a key window. Main thread.
Ref<UIView> addDimmingOverlay();

}  // namespace lumicor
