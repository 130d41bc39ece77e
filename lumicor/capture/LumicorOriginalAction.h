#pragma once

#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace lumicor {

using namespace platform;

/// What a control was about to send when a hook stopped it. A value; sent at most once. Main thread.
struct LumicorOriginalAction {
  Ref<UIControl> control;
  SEL action;
  Ref<NSObject> target;  ///< none for the responder chain
  Ref<UIEvent> event;

  /// As the platform would have sent it, through whatever else was put in the place of its method.
  void send() const;
};

}  // namespace lumicor
