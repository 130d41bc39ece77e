#pragma once

#include "platform/runtime/Ref.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// Who drives a tab bar, as the bar knows it. UITabBarController is the only kind. Main thread.
class TabBarHost {
 public:
  /// A person's tap; the host selects.
  virtual void itemTapped(const Ref<UITabBarItem>& item) = 0;
  /// The bar was hidden or shown.
  virtual void barVisibilityDidChange() = 0;

 protected:
  ~TabBarHost() = default;
};

}  // namespace platform
