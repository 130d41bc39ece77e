#pragma once

#include "lumicor/actions/TLStepTarget.h"
#include "lumicor/actions/TLTaskResult.h"
#include "lumicor/core/TLAction.h"

namespace lumicor {

/// Performs one step on what was found for it: first on the target view, by its class, then on the tab bar, the search
/// controller and the bar button item, whatever the view was. Tells the outcome in `result`. Main thread.
void performStep(const TLAction& step, const TLStepTarget& target, TLTaskResult& result);

/// Goes one screen back from the façade's current screen, when it is in a navigation controller.
void performSystemBack();

}  // namespace lumicor
