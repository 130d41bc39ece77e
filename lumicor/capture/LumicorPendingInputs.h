#pragma once

#include <functional>

#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// What was typed or chosen and waits for its pause to end before it is registered. Whatever is registered next, the
/// end of the demonstration and a change of screens settle it early: else a name typed just before "Save" was pressed
/// would stand after it, on a screen that has no such field. Main thread.
class LumicorPendingInputs {
 public:
  /// `settle` registers it now; it is called at most once and not once the source is gone. Takes the place of what that
  /// source had waiting.
  static void add(NSObject& source, std::function<void()> settle);
  static void forget(const NSObject& source);
  /// In the order in which they were last added to.
  static void settle();
};

}  // namespace lumicor
