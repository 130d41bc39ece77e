#pragma once

#include <optional>
#include <string>

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// What a person's choice of a cell with a segue does: the nearest screen around the list that has a segue of that name
/// is asked with shouldPerformSegue and then performs it, with the cell as sender. Nothing happens without a name or
/// such a screen. Main thread.
void performSelectionSegue(const Ref<UIView>& list, const std::optional<std::string>& identifier,
                           const Ref<UIView>& cell);

}  // namespace platform
