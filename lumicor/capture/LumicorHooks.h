#pragma once

namespace lumicor {

/// Exchanges platform methods for the assistant's own, which call the platform's and note what happened: the façade's
/// current screen follows what appears, disappears and is about to be shown by a segue, and while a demonstration is
/// under way, what a person does is told to the tracking flow. With the tracking off the application behaves as without
/// them. Main thread.
class LumicorHooks {
 public:
  /// Exchanges each method once in a process; later calls do nothing.
  static void install();
};

}  // namespace lumicor
