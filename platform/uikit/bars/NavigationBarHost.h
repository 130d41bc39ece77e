#pragma once

namespace platform {

/// Who drives a navigation bar, as the bar knows it. UINavigationController is the only kind. Main thread.
class NavigationBarHost {
 public:
  /// The bar needs more or less room than before.
  virtual void barHeightDidChange(bool animated) = 0;

 protected:
  ~NavigationBarHost() = default;
};

}  // namespace platform
