#pragma once

#include <string>
#include <tuple>

#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// Response texts that the service sends with the configuration.
struct TLDefaults {
  std::string failureMessage;
  std::string successMessageTemplate;

  static constexpr auto fields() {
    using R = TLDefaults;
    return std::tuple{field("failureMessage", &R::failureMessage),
                      field("successMessageTemplate", &R::successMessageTemplate)};
  }
  friend bool operator==(const TLDefaults&, const TLDefaults&) = default;
};

}  // namespace lumicor
