#include "platform/uikit/lists/SelectionSegue.h"

#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/views/UIView.h"

namespace platform {

void performSelectionSegue(const Ref<UIView>& list, const std::optional<std::string>& identifier,
                           const Ref<UIView>& cell) {
  if (!identifier) return;
  for (Ref<UIResponder> at = list; at; at = at->nextResponder()) {
    const auto screen = as<UIViewController>(at);
    if (!screen || !screen->hasSegue(*identifier)) continue;
    if (screen->shouldPerformSegue(*identifier, cell)) screen->performSegue(*identifier, cell);
    return;
  }
}

}  // namespace platform
