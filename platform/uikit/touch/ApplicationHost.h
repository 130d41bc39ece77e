#pragma once

#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// The running application, as the rooms below it know it: what touches, controls, lists and text ask of it and tell
/// it. UIApplication is the only one. Main thread.
class ApplicationHost {
 public:
  static ApplicationHost& shared();

  virtual bool isIgnoringInteractionEvents() const = 0;
  /// See UIApplication.
  virtual bool sendAction(SEL action, const Ref<NSObject>& target, const Ref<NSObject>& sender,
                          const Ref<UIEvent>& event) = 0;
  /// The first responder is another one, or none: the keyboard follows. Not told while it is being handed over.
  virtual void firstResponderDidChange() = 0;
  /// Where the software keyboard stands on the screen, or will once it has slid in; empty while it is away.
  virtual CGRect keyboardFrame() const = 0;

 protected:
  ~ApplicationHost() = default;
};

}  // namespace platform
