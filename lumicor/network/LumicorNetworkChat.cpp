// The calls to the service that carry the chat.

#include <algorithm>

#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/runtime/FatalError.h"

namespace lumicor {

namespace {

using Answer = std::optional<TLStepsAnswer>;
using Callback = std::function<void(const Answer&)>;

/// Steps take the service longer than anything else.
constexpr LumicorRequestKind stepsRequest{.path = "/sdk/steps/get", .timeout = 100, .failureText = "Get Steps Failure"};
constexpr LumicorRequestKind historyUpload{.path = "/sdk/messages/upload",
                                           .failureText = "Chat History Upload Failure"};
constexpr std::size_t conversationLength = 10;

/// What was said before the newest message, oldest first.
std::vector<TLChatMessage> recentConversation() {
  auto messages = LumicorUserDefaults::loadMessages(LumicorUserDefaults::storedMessagesKey())
                      .value_or(std::vector<TLChatMessage>{});
  if (!messages.empty()) messages.pop_back();
  if (messages.size() > conversationLength) messages.erase(messages.begin(), messages.end() - conversationLength);
  return messages;
}

/// Whether the answer holds steps. The service always sends the flag.
bool isAction(const JSONValue& data) {
  const JSONValue* const flag = data.find("isAction");
  if (const auto boolean = flag ? flag->asBool() : std::nullopt) return *boolean;
  const auto number = flag ? flag->asDouble() : std::nullopt;
  if (!number) fatalError("a steps reply came without a number \"isAction\"");
  return *number != 0;
}

std::optional<JSONValue> member(const JSONValue& data, std::string_view name) {
  const JSONValue* const found = data.find(name);
  return found ? std::optional(*found) : std::nullopt;
}

/// The steps that an answer holds as a text, read; nothing where it holds none.
using Steps = std::optional<Result<std::vector<TLAction>>>;

Steps readSteps(const std::optional<JSONValue>& reply) {
  const JSONValue* const data = replyData(reply);
  const JSONValue* const content = data ? data->find("answer") : nullptr;
  const std::string* const text = content ? content->asString() : nullptr;
  const JSONValue* const flag = data ? data->find("isAction") : nullptr;
  const bool isText = flag && (flag->asBool() == false || flag->asDouble() == 0.0);
  if (!text || isText) return std::nullopt;
  return decodeJSON<std::vector<TLAction>>(*text);
}

void judgeSteps(const std::optional<JSONValue>& reply, const Steps& steps, const Callback& callback) {
  const JSONValue* const data = goodReplyData(reply, "status_code");  // this reply alone is spelled so
  if (!data) {
    LumicorDebugHelper::log(stepsRequest.failureText);
    return callback(std::nullopt);
  }
  TLStepsAnswer answer{
      .answer = {}, .shouldOpenChatWindow = member(*data, "shouldOpenChatWindow"), .taskId = member(*data, "taskId")};
  if (!isAction(*data)) {
    if (const JSONValue* const content = data->find("answer")) answer.answer = *content;
    return callback(answer);
  }
  if (!steps) {
    LumicorDebugHelper::log("Unable to convert actions jsonString to Data");
    return callback(std::nullopt);
  }
  if (!*steps) {
    callback(std::nullopt);
    return LumicorDebugHelper::log("Error processing Actions JSON: " + steps->error());
  }
  LumicorDebugHelper::log("Get Steps Success");
  answer.answer = **steps;
  callback(answer);
}

}  // namespace

void LumicorNetworkTask::getSteps(const std::string& query, Callback callback) {
  const JSONValue body = JSONValue::object({{"query", query}, {"chat_history", toJSONValue(recentConversation())}});
  const auto reader = [callback =
                           std::move(callback)](const std::optional<JSONValue>& unjudged) -> LumicorRequest::Judge {
    return [actions = readSteps(unjudged), callback](const std::optional<JSONValue>& reply) {
      judgeSteps(reply, actions, callback);
    };
  };
  LumicorRequest::sendAndRead(stepsRequest, body, reader);
}

void LumicorNetworkTask::uploadChatHistory(const std::vector<TLChatMessage>& chatHistory) {
  const JSONValue body = JSONValue::object({{"chatHistory", toJSONValue(chatHistory)}});
  LumicorRequest::send(historyUpload, body, [](const std::optional<JSONValue>& reply) {
    const bool isGood = isGoodReply(reply);
    if (isGood) LumicorUserDefaults::saveMessages(LumicorUserDefaults::storedMessagesKey(), {});
    LumicorDebugHelper::log(isGood ? "Chat History Upload Success" : historyUpload.failureText);
  });
}

}  // namespace lumicor
