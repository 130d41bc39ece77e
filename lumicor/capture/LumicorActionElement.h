#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lumicor/screen/LumicroElement.h"
#include "platform/uikit/views/UIView.h"

namespace lumicor {

using namespace platform;

/// What a person did, and to what.
struct LumicorAction {
  std::string name;
  Ref<UIView> view;                  ///< none for a bar's item that no bar shows
  std::string identifier;            ///< by which the view, or the item that it stands for, is found again
  std::optional<std::string> value;  ///< what was chosen, where the view itself cannot tell
  std::string id;                    ///< the same for all that came of one doing
};

/// The elements that a snapshot singles out. Main thread.
class LumicorActionElement {
 public:
  /// The acted-on view as an element: of the kind by which the action is performed again, holding what was entered or
  /// chosen. What nobody knows yet is "Default".
  static LumicroElement of(const LumicorAction& action);
  /// Those of a screen's elements that a person can operate.
  static std::vector<LumicroElement> inputsAmong(const std::vector<LumicroElement>& elements);
};

}  // namespace lumicor
