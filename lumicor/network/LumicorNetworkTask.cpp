#include "lumicor/network/LumicorNetworkTask.h"

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"

namespace lumicor {

namespace {

constexpr LumicorRequestKind initialisation{.path = "/sdk/init", .failureText = "Initialization Failure"};
constexpr LumicorRequestKind event{.path = "/sdk/event/log", .failureText = "Log Event Failure"};

}  // namespace

void LumicorNetworkTask::initialize(std::function<void(const JSONValue&)> callback) {
  requestConfiguration([callback = std::move(callback)](const JSONValue&) { return callback; });
}

void LumicorNetworkTask::requestConfiguration(std::function<Apply(const JSONValue& data)> read) {
  const auto reader = [read = std::move(read)](const std::optional<JSONValue>& unjudged) -> LumicorRequest::Judge {
    const JSONValue* const content = replyData(unjudged);
    return [apply = content ? read(*content) : nullptr](const std::optional<JSONValue>& reply) {
      const JSONValue* const data = goodReplyData(reply);
      if (!data) return LumicorDebugHelper::log(initialisation.failureText);
      LumicorDebugHelper::log("Initialization Success");
      Lumicor::shared().setInitialized(true);
      apply(*data);
    };
  };
  LumicorRequest::sendAndRead(initialisation, JSONValue::object(), reader);
}

void LumicorNetworkTask::logEvent(LumicorLogEvent logEvent, const std::string& taskId) {
  const JSONValue body = JSONValue::object({{"eventName", rawValue(logEvent)}, {"taskId", taskId}});
  LumicorRequest::send(event, body, [](const std::optional<JSONValue>& reply) {
    LumicorDebugHelper::log(isGoodReply(reply) ? "Log Event Success" : event.failureText);
  });
}

}  // namespace lumicor
