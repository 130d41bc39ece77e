#pragma once

namespace lumicor {

/// Actions on their way out of controls: while a demonstration is under way, those of named controls and of the buttons
/// of bars are handed to the tracking flow, which sends them on. Main thread.
class LumicorControlHooks {
 public:
  static void install();
};

}  // namespace lumicor
