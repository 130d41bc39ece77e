#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lumicor/core/TLChatMessage.h"
#include "lumicor/network/LumicorEventsTask.h"
#include "lumicor/network/LumicorRequest.h"
#include "lumicor/network/TLStepsAnswer.h"
#include "lumicor/screen/LumicorSnapshot.h"

namespace lumicor {

using namespace platform;

/// The calls to the service, one operation each. Replies are read before they get to the main queue and judged on it;
/// callbacks run there unless they say otherwise. Failures are logged, never thrown. Thread: any, except what reads the
/// device's history: main.
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

  // ---- Handing a demonstration over
  /// Registers a task by the key of its recording. The callback gets the reply's "data" on success and is not called on
  /// failure, nor when the host has no bundle identifier (nothing is sent then): both are told to `refused`.
  static void registerTask(const std::string& key, std::function<void(const JSONValue& data)> callback,
                           std::function<void()> refused = nullptr);
  /// Registers the snapshots under the "insertedId" of the task registration's data, one after the other and in order;
  /// the first that is refused ends it. Only the log tells the outcome. They are encoded off the main thread: hand the
  /// flow over, not a copy.
  static void registerSnapshots(const JSONValue& registerTaskResponse, std::vector<LumicorSnapshot> taskFlow);
  /// Asks for an address and sends the file (a path on this machine) there. The callback gets the media key as soon as
  /// there is an address, whether or not the file arrived: on the session's queue; or no value: on the main queue.
  static void uploadMedia(const std::string& viewName, const std::string& file, const std::string& fileExtension,
                          std::function<void(const std::optional<std::string>& key)> callback);
};

}  // namespace lumicor
