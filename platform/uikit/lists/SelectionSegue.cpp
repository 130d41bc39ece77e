#include "platform/uikit/lists/SelectionSegue.h"

#include "platform/uikit/lists/SegueHost.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

void performSelectionSegue(const Ref<UIView>& list, const std::optional<std::string>& identifier,
                           const Ref<UIView>& cell) {
  if (!identifier) return;
  for (Ref<UIResponder> at = list; at; at = at->nextResponder()) {
    auto* const screen = dynamic_cast<SegueHost*>(at.get());
    if (!screen || !screen->hasSegue(*identifier)) continue;
    if (screen->shouldPerformSegue(*identifier, cell)) screen->performSegue(*identifier, cell);
    return;
  }
}

}  // namespace platform
