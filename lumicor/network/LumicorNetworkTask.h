#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lumicor/core/TLChatMessage.h"
#include "lumicor/network/LumicorEventsTask.h"
#include "lumicor/network/LumicorRequest.h"
#include "lumicor/network/TLStepsAnswer.h"

namespace lumicor {

using namespace platform;

/// The calls to the service, one operation each. Replies are read before they get to the main queue and judged on it;
/// callbacks run there. Failures are logged, never thrown. Thread: any, except what reads the device's history: main.
class LumicorNetworkTask {
 public:
  static HTTPHeaders getHeaders() { return LumicorRequest::getHeaders(); }

  /// Asks for the configuration. On success the session is initialised and the callback gets the reply's "data", which
  /// nobody applies; on failure the callback is not called.
  static void initialize(std::function<void(const JSONValue& data)> callback);
  using Apply = std::function<void(const JSONValue& data)>;
  /// The same for a caller that reads the data before it gets to the main queue, whether or not the reply turns out to
  /// be good; what `read` returns is called on that queue when it did.
  static void requestConfiguration(std::function<Apply(const JSONValue& data)> read);

  /// Sends a query with the recent conversation. The callback is called once, with no value when it failed.
  static void getSteps(const std::string& query, std::function<void(const std::optional<TLStepsAnswer>&)> callback);
  /// Once the service has the messages, the device's copy is emptied.
  static void uploadChatHistory(const std::vector<TLChatMessage>& chatHistory);

  static void logEvent(LumicorLogEvent event, const std::string& taskId);
};

}  // namespace lumicor
