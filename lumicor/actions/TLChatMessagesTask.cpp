#include "lumicor/actions/TLChatMessagesTask.h"

#include "lumicor/actions/TLActionsTask.h"
#include "lumicor/actions/TLChatScreen.h"
#include "lumicor/actions/TLStepPreparation.h"
#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace lumicor {

namespace {

constexpr const char* failureText = "Sorry, I am not able to perform this task, I am still learning!";
constexpr const char* successWord = "Done";
constexpr std::size_t uploadThreshold = 30;

// Seconds.
constexpr double pauseBeforeRun = 1.0;
constexpr double pauseAfterRun = 1.0;
constexpr double pauseBeforeOutcome = 2.0;

void say(const std::string& text) {
  if (const auto chat = TLChatScreen::current()) chat->addMessage(text);
}

std::int64_t shouldOpenChatWindow(const TLStepsAnswer& answer) {
  const auto value = answer.shouldOpenChatWindow ? answer.shouldOpenChatWindow->asInteger() : std::nullopt;
  if (!value) fatalError("a steps answer came without an integer \"shouldOpenChatWindow\"");
  return *value;
}

std::string taskId(const TLStepsAnswer& answer) {
  const auto* const value = answer.taskId ? answer.taskId->asString() : nullptr;
  if (!value) fatalError("a steps answer came without a string \"taskId\"");
  return *value;
}

void reopenChat(const TLStepsAnswer& answer) {
  const auto chat = TLChatScreen::current();
  const auto navigation = chat ? LumicorUtils::getNavigationControllerFromRoot() : nullptr;
  if (navigation && shouldOpenChatWindow(answer) != 0) chat->reopen(navigation);
}

void tellOutcome(const TLStepsAnswer& answer, const TLTaskResult& result) {
  say(result.success ? successWord + (" " + result.resultValue) : failureText);
  LumicorNetworkTask::logEvent(result.success ? LumicorLogEvent::TASK_SUCCESS : LumicorLogEvent::TASK_FAILURE,
                               taskId(answer));
}

void runEnded(const std::shared_ptr<const TLStepsAnswer>& answer, const TLTaskResult& result) {
  DispatchQueue::main().asyncAfter(pauseAfterRun, [answer, result] {
    reopenChat(*answer);
    DispatchQueue::main().asyncAfter(pauseBeforeOutcome, [answer, result] { tellOutcome(*answer, result); });
  });
}

void carryOut(std::vector<TLAction> steps, const std::shared_ptr<const TLStepsAnswer>& answer) {
  LumicorNetworkTask::logEvent(LumicorLogEvent::ACTION_RESPONSE, "");
  const auto task = make<TLActionsTask>(preparedSteps(std::move(steps)),
                                        [answer](const TLTaskResult& result) { runEnded(answer, result); });
  if (const auto chat = TLChatScreen::current()) chat->closeWithoutAnimation();
  DispatchQueue::main().asyncAfter(pauseBeforeRun, [task] { task->start(); });
}

void reply(const TLStepsAnswer& answer) {
  if (const auto chat = TLChatScreen::current()) {
    const std::string* const text = answer.text();
    if (!text) fatalError("a text answer came without a string \"answer\"");
    chat->addMessage(*text);
  }
  LumicorNetworkTask::logEvent(LumicorLogEvent::NON_ACTION_RESPONSE, "");
}

}  // namespace

void TLChatMessagesTask::sendRequest(const std::string& query) {
  LumicorNetworkTask::getSteps(query, &TLChatMessagesTask::handleResponse);
}

void TLChatMessagesTask::handleResponse(const std::optional<TLStepsAnswer>& response) {
  if (!response) return say(failureText);
  if (const std::vector<TLAction>* const steps = response->steps()) {
    const auto answer = std::make_shared<const TLStepsAnswer>(*response);
    DispatchQueue::main().async([answer] { carryOut(*answer->steps(), answer); });
  } else {
    reply(*response);
  }
}

void TLChatMessagesTask::saveMessage(const TLChatMessage& message) {
  const std::string& key = LumicorUserDefaults::storedMessagesKey();
  std::vector<TLChatMessage> stored = LumicorUserDefaults::loadMessages(key).value_or(std::vector<TLChatMessage>{});
  if (message.message == TLChatMessage::typingMarker) return;
  stored.push_back(message);
  LumicorUserDefaults::saveMessages(key, stored);
  if (stored.size() >= uploadThreshold) LumicorNetworkTask::uploadChatHistory(stored);
}

}  // namespace lumicor
