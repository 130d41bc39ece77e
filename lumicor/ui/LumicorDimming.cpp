#include "lumicor/ui/LumicorDimming.h"

#include <algorithm>

#include "lumicor/ui/LumicorFrontLevel.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/application/UIWindow.h"

namespace lumicor {

Ref<UIView> addDimmingOverlay() {
  const auto windows = UIApplication::shared().windows();
  const auto key = std::ranges::find_if(windows, [](const Ref<UIWindow>& window) { return window->isKeyWindow(); });
  if (key == windows.end()) return nullptr;
  auto overlay = make<UIView>((*key)->bounds());
  overlay->setBackgroundColor(UIColor::white(0, 0.4));
  overlay->setUserInteractionEnabled(true);
  overlay->setFrontLevel(LumicorFrontLevel::notice);
  overlay->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  (*key)->addSubview(overlay);
  return overlay;
}

}  // namespace lumicor
