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
constexpr LumicorRequestKind steps{.path = "/sdk/steps/get", .timeout = 100, .failureText = "Get Steps Failure"};
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

/// A judged reply: the answer, and what the log is told before and after the callback has it.
struct Judgement {
  Answer answer;
  std::string before;
  std::string after;
};

Judgement judgeSteps(const std::optional<JSONValue>& reply) {
  const JSONValue* const data = goodReplyData(reply, "status_code");  // this reply alone is spelled so
  if (!data) return {.answer = {}, .before = std::string(steps.failureText), .after = ""};
  TLStepsAnswer answer{
      .answer = {}, .shouldOpenChatWindow = member(*data, "shouldOpenChatWindow"), .taskId = member(*data, "taskId")};
  const JSONValue* const content = data->find("answer");
  if (!isAction(*data)) {
    if (content) answer.answer = *content;
    return {.answer = std::move(answer), .before = "", .after = ""};
  }
  const std::string* const text = content ? content->asString() : nullptr;
  if (!text) return {.answer = {}, .before = "Unable to convert actions jsonString to Data", .after = ""};
  auto actions = decodeJSON<std::vector<TLAction>>(*text);
  if (!actions) return {.answer = {}, .before = "", .after = "Error processing Actions JSON: " + actions.error()};
  answer.answer = std::move(*actions);
  return {.answer = std::move(answer), .before = "Get Steps Success", .after = ""};
}

void deliver(const Judgement& judged, const Callback& callback) {
  if (!judged.before.empty()) LumicorDebugHelper::log(judged.before);
  callback(judged.answer);
  if (!judged.after.empty()) LumicorDebugHelper::log(judged.after);
}

}  // namespace

void LumicorNetworkTask::getSteps(const std::string& query, Callback callback) {
  const JSONValue body = JSONValue::object({{"query", query}, {"chat_history", toJSONValue(recentConversation())}});
  const auto judge = [callback =
                          std::move(callback)](const std::optional<JSONValue>& reply) -> LumicorRequest::Delivery {
    return [judged = judgeSteps(reply), callback] { deliver(judged, callback); };
  };
  LumicorRequest::send(steps, body, judge);
}

void LumicorNetworkTask::uploadChatHistory(const std::vector<TLChatMessage>& chatHistory) {
  const JSONValue body = JSONValue::object({{"chatHistory", toJSONValue(chatHistory)}});
  LumicorRequest::send(historyUpload, body, [](const std::optional<JSONValue>& reply) -> LumicorRequest::Delivery {
    return [good = isGoodReply(reply)] {
      if (good) LumicorUserDefaults::saveMessages(LumicorUserDefaults::storedMessagesKey(), {});
      LumicorDebugHelper::log(good ? "Chat History Upload Success" : historyUpload.failureText);
    };
  });
}

}  // namespace lumicor
