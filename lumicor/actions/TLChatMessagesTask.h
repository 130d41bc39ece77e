#pragma once

#include <optional>
#include <string>

#include "lumicor/core/TLChatMessage.h"
#include "lumicor/network/TLStepsAnswer.h"

namespace lumicor {

/// Turns the service's answers into what the person sees: a reply, or steps carried out on the host's screens and what
/// came of them. Keeps nothing between requests; the closures of a request hold its state. Thread: main.
class TLChatMessagesTask {
 public:
  /// Asks the service and handles its answer.
  static void sendRequest(const std::string& query);
  /// Handles an answer; none when the request failed.
  static void handleResponse(const std::optional<TLStepsAnswer>& response);
  /// Appends a message to the device's history; a long history is uploaded. The typing row is never stored.
  static void saveMessage(const TLChatMessage& message);
};

}  // namespace lumicor
