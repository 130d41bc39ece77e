#pragma once

#include <vector>

#include "lumicor/core/TLAction.h"

namespace lumicor {

/// Steps as a run takes them: every scroll target cut to what follows its first "-" (whole when there is none), then
/// sorted by index, equal ones in the order they came.
std::vector<TLAction> preparedSteps(std::vector<TLAction> steps);

}  // namespace lumicor
