#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <vector>

#include "examples/teashop/ScreenCatalogue.h"
#include "lumicor/core/TLAction.h"

namespace play {

enum class Outcome {
  succeeded,
  failed,   ///< a step failed
  stalled,  ///< the run never reported: a scroll entry found a text view as a target, or there was nothing to perform
};

/// Performs prepared steps on the shop, beginning on a screen of its own, and tells what happens. With a folder, it
/// writes a picture when each step has settled ("step-01.png"). Turns the run loop, in whatever time the clock has.
/// Main thread.
Outcome playScenario(teashop::TeashopApplication& application, const teashop::NamedScreen& screen,
                     std::vector<lumicor::TLAction> steps, const std::optional<std::filesystem::path>& pictures,
                     std::ostream& out);

}  // namespace play
