#pragma once

namespace lumicor {

/// Screens that appear, leave and are about to be shown by a segue: the façade's current screen follows them, and a
/// screen that is removed from its container is the system's way back. Main thread.
class LumicorScreenHooks {
 public:
  static void install();
};

}  // namespace lumicor
