#pragma once

namespace lumicor {

/// Exchanges platform methods for the assistant's own, which call the platform's and note what happened: the façade's
/// current screen follows what appears, disappears and is about to be shown by a segue. Main thread.
class LumicorHooks {
 public:
  /// Exchanges each method once in a process; later calls do nothing.
  static void install();
};

}  // namespace lumicor
