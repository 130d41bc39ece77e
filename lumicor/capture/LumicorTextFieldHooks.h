#pragma once

#include "platform/runtime/Object.h"

namespace platform {
class Notification;
}

namespace lumicor {

using namespace platform;

/// Typing into text fields: a burst of it is one action, told once the text has been still for a while. Main thread.
class LumicorTextFieldHooks {
 public:
  static void install();
  /// A field is being edited: its changes are watched from now on.
  static void setupTextChangeObserver(const Notification& notification);
};

}  // namespace lumicor
