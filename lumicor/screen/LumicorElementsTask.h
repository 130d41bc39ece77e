#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lumicor/screen/LumicorScrollView.h"
#include "lumicor/screen/LumicroElement.h"
#include "platform/runtime/Object.h"

namespace platform {
class UIView;
}

namespace lumicor {

using namespace platform;

/// What a reading of the screen gives: the elements, back to front and parents first, and the scroll positions.
struct LumicorScreenElements {
  std::vector<LumicroElement> elements;
  LumicorScrollDetails scrollDetails;
};

/// Reads the live view tree. Every view that the host has named becomes an element; no name is ever made up.
/// Keeps no state but the scroll registry of the process. Main thread.
class LumicorElementsTask {
 public:
  /// The tree alone, added to what the scroll registry holds. Depth costs no stack.
  static LumicorScreenElements traverseStoryboardView(const Ref<UIView>& view, std::string_view actionName);
  /// A whole screen: empties the scroll registry, then reads the tree and the labelled declarative regions.
  static LumicorScreenElements getAllElements(const Ref<UIView>& view, std::string_view actionName);
};

}  // namespace lumicor
