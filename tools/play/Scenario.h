#pragma once

#include <string_view>
#include <vector>

#include "lumicor/core/TLAction.h"
#include "platform/foundation/Result.h"

namespace play {

/// Reads steps in the service's form: the list itself, or a whole reply with "data" and the list as text in "answer".
/// They come prepared as the chat prepares them. On failure the sentence says what is wrong and where.
platform::Result<std::vector<lumicor::TLAction>> readScenario(std::string_view bytes);

}  // namespace play
