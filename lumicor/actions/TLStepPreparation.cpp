#include "lumicor/actions/TLStepPreparation.h"

#include <algorithm>

namespace lumicor {

namespace {

/// The part of a scroll target that names something on the screen.
void cutScrollTarget(TLScrollActionDetails& details) {
  const std::size_t dash = details.viewId.find('-');
  if (dash != std::string::npos) details.viewId.erase(0, dash + 1);
}

}  // namespace

std::vector<TLAction> preparedSteps(std::vector<TLAction> steps) {
  for (TLAction& step : steps) std::ranges::for_each(step.scrollDetails, cutScrollTarget);
  std::ranges::stable_sort(steps, {}, &TLAction::index);
  return steps;
}

}  // namespace lumicor
