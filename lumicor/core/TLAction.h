#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// A content offset in points, whole numbers on the wire.
struct TLScrollOffset {
  std::int64_t x = 0;
  std::int64_t y = 0;

  static constexpr auto fields() {
    using R = TLScrollOffset;
    return std::tuple{field("x", &R::x), field("y", &R::y)};
  }
  friend bool operator==(const TLScrollOffset&, const TLScrollOffset&) = default;
};

/// One scroll position to restore before a step's target is looked up. `viewId` names the scrollable view, or a cell:
/// "LumicorCollectionView-<collection view>-<section>-<item>".
struct TLScrollActionDetails {
  std::string viewId;
  TLScrollOffset offsets;

  static constexpr auto fields() {
    using R = TLScrollActionDetails;
    return std::tuple{field("viewId", &R::viewId), field("offsets", &R::offsets)};
  }
  friend bool operator==(const TLScrollActionDetails&, const TLScrollActionDetails&) = default;
};

/// A rectangle in points.
struct TLActionPosition {
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;

  static constexpr auto fields() {
    using R = TLActionPosition;
    return std::tuple{field("x", &R::x), field("y", &R::y), field("width", &R::width), field("height", &R::height)};
  }
  friend bool operator==(const TLActionPosition&, const TLActionPosition&) = default;
};

/// One step that the service asks for.
struct TLAction {
  std::string elementId;  ///< accessibilityIdentifier of the target
  std::int64_t index = 0;
  std::string value;
  std::vector<TLScrollActionDetails> scrollDetails;
  std::string viewName;  ///< class name of the screen on which the step is performed
  std::string actionType;

  static constexpr auto fields() {
    using R = TLAction;
    return std::tuple{field("elementId", &R::elementId), field("index", &R::index),
                      field("value", &R::value),         field("scrollDetails", &R::scrollDetails),
                      field("viewName", &R::viewName),   field("actionType", &R::actionType)};
  }
  friend bool operator==(const TLAction&, const TLAction&) = default;
};

}  // namespace lumicor
