#pragma once

#include <string>
#include <vector>

#include "lumicor/screen/LumicorSnapshot.h"

namespace lumicor {

/// What a demonstration's snapshots only know once it is over. Any thread: not the main one for a long flow.
class LumicorFlowCompletion {
 public:
  /// The flow with the screenshots' keys filled in (by place; empty where there is none), and each action that was
  /// followed by another screen told where it led.
  static std::vector<LumicorSnapshot> completed(std::vector<LumicorSnapshot> flow,
                                                const std::vector<std::string>& screenshotKeys);
};

}  // namespace lumicor
