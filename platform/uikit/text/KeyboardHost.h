#pragma once

#include "platform/runtime/Ref.h"
#include "platform/uikit/Forward.h"

namespace platform {

struct UIKey;

/// What the software keyboard needs of the application. UIApplication is the only one. Main thread.
class KeyboardHost {
 public:
  static KeyboardHost& shared();

  /// A window above everything that the application shows, as large as the screen and hidden. It takes touches on what
  /// stands in it alone, and never becomes the key window.
  virtual Ref<UIView> makeKeyboardWindow() = 0;
  /// A key was tapped: see UIApplication.
  virtual void deliverKey(const UIKey& key) = 0;

 protected:
  ~KeyboardHost() = default;
};

}  // namespace platform
