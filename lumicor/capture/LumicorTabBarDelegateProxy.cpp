#include "lumicor/capture/LumicorTabBarDelegateProxy.h"

#include "lumicor/capture/LumicorTrackingTask.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/controllers/UITabBarController.h"

namespace lumicor {

void LumicorTabBarDelegateProxy::exportMethods(MethodTable<LumicorTabBarDelegateProxy>& table) {
  table.add<&LumicorTabBarDelegateProxy::didSelectViewController>("tabBarController:didSelectViewController:");
}

void LumicorTabBarDelegateProxy::didSelectViewController(const Ref<UITabBarController>& controller,
                                                         const Ref<UIViewController>& selected) {
  static const SEL didSelect = sel("tabBarController:didSelectViewController:");
  if (!isRegistering()) return forward(didSelect, controller, selected);
  LumicorTrackingTask::handleTabSelection("tabbar", controller, selected, originalDelegate());
}

}  // namespace lumicor
