#pragma once

namespace lumicor {

/// Taps on named views, seen by the recognisers that the host made. Other gestures are not recorded. Main thread.
class LumicorGestureHooks {
 public:
  static void install();
};

}  // namespace lumicor
