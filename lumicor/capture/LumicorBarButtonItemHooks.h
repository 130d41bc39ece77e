#pragma once

#include "platform/runtime/Object.h"

namespace platform {
class UIBarButtonItem;
}

namespace lumicor {

using namespace platform;

/// System items of bars send their action to themselves, and on to where the host wanted it. Main thread.
class LumicorBarButtonItemHooks {
 public:
  static void install();

  /// While it lives, a press of that item has been handed to the tracking flow already: the item's own method only
  /// sends the host's action.
  class HandedOver {
   public:
    explicit HandedOver(const UIBarButtonItem* item);
    ~HandedOver();
    HandedOver(const HandedOver&) = delete;
    HandedOver& operator=(const HandedOver&) = delete;

   private:
    const UIBarButtonItem* const before_;
  };
};

}  // namespace lumicor
