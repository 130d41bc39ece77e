#pragma once

#include <string>

#include "lumicor/core/TLAction.h"

namespace lumicor {

/// How the restoration of one scroll position ended.
enum class TLScrollOutcome {
  restored,
  failed,   ///< nothing on the screen goes by that name: the step fails
  stalled,  ///< a text view outside the screen's own view was scrolled: the step never goes on
};

/// Restores one scroll position on the façade's current screen, for a step on the screen of class `viewName`.
/// A "LumicorCollectionView" id with too few parts is a fatal programming error. Main thread.
TLScrollOutcome restoreScrollPosition(const TLScrollActionDetails& details, const std::string& viewName);

}  // namespace lumicor
