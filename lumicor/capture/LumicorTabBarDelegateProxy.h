#pragma once

#include "lumicor/capture/LumicorDelegateProxy.h"
#include "platform/uikit/Forward.h"

namespace lumicor {

/// Hears which tab a person chose. Main thread.
class LumicorTabBarDelegateProxy final : public Object<LumicorTabBarDelegateProxy, LumicorDelegateProxy> {
 public:
  using Object::Object;
  static void exportMethods(MethodTable<LumicorTabBarDelegateProxy>& table);

  /// While registering, the host's delegate is told by the tracking flow, after the action was registered.
  void didSelectViewController(const Ref<UITabBarController>& controller, const Ref<UIViewController>& selected);
};

}  // namespace lumicor
