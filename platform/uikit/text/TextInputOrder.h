#pragma once

#include "platform/uikit/views/UIView.h"

namespace platform {

/// What the tab key does in a field: the next (or the previous) view of its screen that takes text becomes the first
/// responder, in reading order, from the last on to the first. False when there is no other, or it does not want to. A
/// screen is what one view controller shows. Main thread.
bool goToNextTextInput(UIView& field, bool backwards);

}  // namespace platform
