#include "service/api/SdkApi.h"

#include <algorithm>
#include <array>
#include <thread>

#include "service/api/Routes.h"
#include "service/base/Configuration.h"
#include "service/store/Store.h"
#include "service/teaching/TaskRoster.h"

namespace service {
namespace {

constexpr std::size_t kMaximumQuery = 8192;
constexpr std::size_t kMaximumTaskId = 256;
/// As many messages as an application shows when it starts.
constexpr std::int64_t kReturnedMessages = 50;

constexpr std::array<std::string_view, 9> kEventNames{
    "LUMICOR_INITIALIZED", "CHAT_VIEW_OPEN",          "MESSAGE_SENT",
    "NON_ACTION_RESPONSE", "ACTION_RESPONSE",         "TASK_SUCCESS",
    "TASK_FAILURE",        "ACTION_RESPONSE_TIMEOUT", "CHAT_FLOATER_DISMISSED"};

std::vector<ChatMessage> readMessages(const JsonObject& body, std::string_view key) {
  std::vector<ChatMessage> messages;
  for (const Json& item : body.array(key)) {
    const JsonObject fields(item, placeOfItem(key, messages.size()));
    messages.push_back({fields.string("message"), fields.boolean("isRemote"), fields.integer("timestamp")});
  }
  return messages;
}

std::string limitedString(const JsonObject& body, std::string_view key, std::size_t limit) {
  std::string text = body.string(key);
  if (text.size() > limit) body.complain(key, "must not be longer than " + std::to_string(limit) + " bytes");
  return text;
}

const char* nameOf(Reply::Kind kind) {
  switch (kind) {
    case Reply::Kind::Steps:
      return "steps";
    case Reply::Kind::Text:
      return "text";
    case Reply::Kind::Question:
      return "question";
    case Reply::Kind::NoMatch:
      break;
  }
  return "no match";
}

}  // namespace

SdkApi::SdkApi(const Configuration& configuration, TaskRoster& tasks, Store& store, Now now)
    : configuration_(configuration), tasks_(tasks), store_(store), now_(std::move(now)) {}

void SdkApi::addTo(Routes& routes) {
  const auto bind = [this](auto method) {
    return [this, method](const Identity& who, const JsonObject& body) { return (this->*method)(who, body); };
  };
  routes.addSdk("/sdk/init", bind(&SdkApi::initialise));
  routes.addSdk("/sdk/steps/get", bind(&SdkApi::getSteps), StatusKey::Underscore);
  routes.addSdk("/sdk/event/log", bind(&SdkApi::logEvent));
  routes.addSdk("/sdk/messages/upload", bind(&SdkApi::uploadMessages));
}

Json SdkApi::initialise(const Identity& who, const JsonObject&) {
  Json data = configuration_.dataFor(baseAddress_);
  if (!configuration_.returnsUploadedChat()) return data;
  Json history = Json::array();
  for (const ChatMessage& message : store_.chatOf(who.userId, kReturnedMessages))
    history.push_back({{"message", message.message}, {"isRemote", message.isRemote}, {"timestamp", message.timestamp}});
  data["chatHistory"] = std::move(history);
  return data;
}

Json SdkApi::getSteps(const Identity& who, const JsonObject& body) {
  std::this_thread::sleep_for(thinkingTime_);
  const std::string query = limitedString(body, "query", kMaximumQuery);
  const std::vector<ChatMessage> history =
      body.has("chat_history") ? readMessages(body, "chat_history") : std::vector<ChatMessage>();
  const Reply reply = tasks_.assistant()->answer(query, history);
  store_.addQuery({0, now_(), who.userId, query, nameOf(reply.kind), reply.taskId, reply.score});
  return {{"isAction", reply.kind == Reply::Kind::Steps ? 1 : 0},
          {"answer", reply.answer},
          {"shouldOpenChatWindow", reply.shouldOpenChatWindow ? 1 : 0},
          {"taskId", reply.taskId}};
}

Json SdkApi::logEvent(const Identity& who, const JsonObject& body) {
  const std::string name = body.string("eventName");
  if (std::find(kEventNames.begin(), kEventNames.end(), name) == kEventNames.end())
    body.complain("eventName", "is not the name of an event");
  store_.addEvent({0, now_(), who.userId, name, limitedString(body, "taskId", kMaximumTaskId)});
  return nullptr;
}

Json SdkApi::uploadMessages(const Identity& who, const JsonObject& body) {
  store_.addMessages(now_(), who.userId, readMessages(body, "chatHistory"));
  return nullptr;
}

}  // namespace service
