#include "lumicor/capture/LumicorFlowCompletion.h"

namespace lumicor {

namespace {

LumicroElement leadingTo(LumicroElement action, const std::string& destination) {
  action.setNavigational(true);
  action.setDestination(destination);
  return action;
}

}  // namespace

std::vector<LumicorSnapshot> LumicorFlowCompletion::completed(std::vector<LumicorSnapshot> flow,
                                                              const std::vector<std::string>& screenshotKeys) {
  for (std::size_t i = 0; i < flow.size(); ++i) {
    const LumicorSnapshot& before = flow[i];
    const bool leadsOn = i + 1 < flow.size() && flow[i + 1].viewName() != before.viewName();
    LumicroElement action =
        leadsOn ? leadingTo(before.actionElement(), flow[i + 1].viewName()) : before.actionElement();
    flow[i] =
        LumicorSnapshot(before.viewName(), before.viewHeight(), before.viewWidth(), before.viewOrientation(),
                        before.elements(), before.inputs(), std::move(action), before.scrollDetails(),
                        before.viewDescription(), i < screenshotKeys.size() ? screenshotKeys[i] : "", before.index());
  }
  return flow;
}

}  // namespace lumicor
