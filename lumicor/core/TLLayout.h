#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "lumicor/core/TLStyles.h"
#include "lumicor/core/TLViewType.h"
#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// The floating button and, inside, the chat's look, as the service configures them. Made without JSON it holds the
/// built-in layout; read from JSON every key must be there.
struct TLLayout {
  TLViewType viewType = TLViewType::TYPE_FLOATING;
  std::vector<std::int64_t> margin = {};  ///< points, like every size here
  std::int64_t size = 60;
  std::string image = "https://assets.lumicor.example/logo-short-64.png";
  std::int64_t imageSize = 30;
  std::string closeButton = "https://assets.lumicor.example/icons/close.png";
  TLStyles styles = {};
  bool isFixed = false;

  static constexpr auto fields() {
    using L = TLLayout;
    return std::tuple{field("viewType", &L::viewType),   field("margin", &L::margin),
                      field("size", &L::size),           field("image", &L::image),
                      field("imageSize", &L::imageSize), field("closeButton", &L::closeButton),
                      field("styles", &L::styles),       field("isFixed", &L::isFixed)};
  }
  friend bool operator==(const TLLayout&, const TLLayout&) = default;
};

}  // namespace lumicor
