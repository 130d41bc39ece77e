#pragma once

#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/touch/UIResponder.h"

namespace platform {

/// Whose root view a view is, as views know it: the next responder, told of what happens to the view. UIViewController
/// is the only kind. Main thread.
class RootViewHost : public UIResponder {
 public:
  /// Around the view's moves between windows; none is no window.
  virtual void viewWillMoveToWindow(const Ref<UIWindow>& window) = 0;
  virtual void viewDidMoveToWindow(const Ref<UIWindow>& window) = 0;
  virtual void viewWillLayoutSubviews() = 0;
  virtual void viewDidLayoutSubviews() = 0;
  virtual void viewSafeAreaInsetsDidChange() = 0;
  /// What the view adds to the safe area that it inherits.
  virtual UIEdgeInsets safeAreaContribution() const = 0;
};

}  // namespace platform
