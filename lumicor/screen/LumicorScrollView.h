#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// The scroll position of one scrollable container, in points.
struct LumicorScrollView {
  std::int64_t index;  ///< how many entries the scroll registry held when this one was made
  std::int64_t scrollOffsetX;
  std::int64_t scrollOffsetY;

  static constexpr auto fields() {
    using V = LumicorScrollView;
    return std::tuple{field("index", &V::index), field("scrollOffsetX", &V::scrollOffsetX),
                      field("scrollOffsetY", &V::scrollOffsetY)};
  }
  friend bool operator==(const LumicorScrollView&, const LumicorScrollView&) = default;
};

/// Scroll positions by the container's identifier.
using LumicorScrollDetails = std::map<std::string, LumicorScrollView>;

}  // namespace lumicor
