#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "platform/foundation/Record.h"

namespace lumicor {

using namespace platform;

/// One message of the chat.
struct TLChatMessage {
  /// The text of the row that stands for an assistant at work; it is drawn as dots and never stored.
  static constexpr const char* typingMarker = "TesselLumicorTyping";

  std::string message;
  bool isRemote;           ///< from the assistant, not typed by the person
  std::int64_t timestamp;  ///< milliseconds since 1970

  static constexpr auto fields() {
    using M = TLChatMessage;
    return std::tuple{field("message", &M::message), field("isRemote", &M::isRemote),
                      field("timestamp", &M::timestamp)};
  }
  friend bool operator==(const TLChatMessage&, const TLChatMessage&) = default;
};

}  // namespace lumicor
