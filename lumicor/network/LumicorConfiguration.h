#pragma once

#include <optional>
#include <vector>

#include "lumicor/core/TLChatMessage.h"
#include "lumicor/core/TLDefaults.h"
#include "lumicor/core/TLLayout.h"
#include "platform/foundation/JSONValue.h"
#include "platform/foundation/Result.h"

namespace lumicor {

using namespace platform;

/// What the service configures a session with. A member that is missing or of another JSON type is not there; one that
/// cannot be decoded says why. A value.
struct LumicorConfiguration {
  bool showTrackerView = false;
  std::optional<Result<TLLayout>> layoutData;
  std::optional<Result<std::vector<TLChatMessage>>> chatHistory;
  bool showTesselLumicor = false;
  std::optional<Result<TLDefaults>> tlDefaults;

  /// Reads the "data" of an init reply. Any thread.
  static LumicorConfiguration read(const JSONValue& data);
  /// Makes it so, member after member; one that failed is logged and stops no other. What is long moves out of it.
  /// Main thread. It reaches into the rooms above and is defined at the top, with the start of a session.
  void apply() &&;
};

}  // namespace lumicor
