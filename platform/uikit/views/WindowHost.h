#pragma once

#include "platform/runtime/Ref.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// The window around a view, as views know it. UIWindow is the only one. Main thread.
class WindowHost {
 public:
  virtual Ref<UIWindow> hostWindow() = 0;
  virtual Ref<UIView> hostWindowView() = 0;

 protected:
  ~WindowHost() = default;
};

}  // namespace platform
