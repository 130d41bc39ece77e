#pragma once

#include "platform/uikit/device/UIDevice.h"

namespace platform {

/// The one screen of the device. Main thread.
class UIScreen : public Object<UIScreen, NSObject> {
 public:
  static UIScreen& main();
  CGRect bounds() const;
  double scale() const;
};

}  // namespace platform
