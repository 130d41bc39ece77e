#include "lumicor/network/LumicorNetworkTask.h"

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorDebugHelper.h"

namespace lumicor {

namespace {

constexpr LumicorRequestKind initialisation{.path = "/sdk/init", .failureText = "Initialization Failure"};
constexpr LumicorRequestKind event{.path = "/sdk/event/log", .failureText = "Log Event Failure"};

LumicorRequest::Delivery logged(std::string_view text) {
  return [text] { LumicorDebugHelper::log(text); };
}

}  // namespace

void LumicorNetworkTask::initialize(std::function<void(const JSONValue&)> callback) {
  requestConfiguration([callback = std::move(callback)](const JSONValue& data) -> LumicorRequest::Delivery {
    return [callback, data] { callback(data); };
  });
}

void LumicorNetworkTask::requestConfiguration(std::function<LumicorRequest::Delivery(const JSONValue& data)> prepare) {
  const auto judge = [prepare = std::move(prepare)](const std::optional<JSONValue>& reply) -> LumicorRequest::Delivery {
    const JSONValue* const data = goodReplyData(reply);
    if (!data) return logged(initialisation.failureText);
    return [deliver = prepare(*data)] {
      LumicorDebugHelper::log("Initialization Success");
      Lumicor::shared().setInitialized(true);
      deliver();
    };
  };
  LumicorRequest::send(initialisation, JSONValue::object(), judge);
}

void LumicorNetworkTask::logEvent(LumicorLogEvent logEvent, const std::string& taskId) {
  const JSONValue body = JSONValue::object({{"eventName", rawValue(logEvent)}, {"taskId", taskId}});
  LumicorRequest::send(event, body, [](const std::optional<JSONValue>& reply) {
    return logged(isGoodReply(reply) ? "Log Event Success" : event.failureText);
  });
}

}  // namespace lumicor
