#include <gmock/gmock.h>
#include <thread>

#include "lumicor/core/LumicorDebugHelper.h"
#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/dispatch/BackgroundActivity.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/UserDefaults.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

const std::string key = "storedMessages";

std::vector<TLChatMessage> messagesNumbered(int first, int last) {
  std::vector<TLChatMessage> messages;
  for (int i = first; i <= last; ++i) messages.push_back({"message " + std::to_string(i), i % 2 == 0, i});
  return messages;
}

// ---- Events

using LogEventTest = SessionTest;

TEST_F(LogEventTest, SendsTheNameAndTheTask) {
  StubService service;
  LumicorNetworkTask::logEvent(LumicorLogEvent::TASK_SUCCESS, "task 7");
  DispatchQueue::global().async([] { LumicorNetworkTask::logEvent(LumicorLogEvent::CHAT_VIEW_OPEN, ""); });
  RunLoop::settle();
  EXPECT_THAT(service.bodies("/sdk/event/log"),
              testing::UnorderedElementsAre(json(R"({"eventName":"TASK_SUCCESS","taskId":"task 7"})"),
                                            json(R"({"eventName":"CHAT_VIEW_OPEN","taskId":""})")));
  EXPECT_EQ(service.requests().at(0).timeoutInterval(), 10);
}

TEST_F(LogEventTest, LogsSuccessForTheIntegerTwoHundredAlone) {
  const auto logOf = [this](const char* reply) {
    StubService service;
    service.answer("/sdk/event/log", URLProtocol::Reply::data(200, reply));
    beginLog();
    LumicorNetworkTask::logEvent(LumicorLogEvent::MESSAGE_SENT, "");
    RunLoop::settle();
    return log();
  };
  EXPECT_THAT(logOf(R"({"statusCode":200})"), ElementsAre("Log Event Success"));
  EXPECT_THAT(logOf(R"({"statusCode":"200"})"), ElementsAre("Log Event Failure"));
  EXPECT_THAT(logOf(R"({})"), ElementsAre("Log Event Failure"));
  EXPECT_THAT(logOf("no json"), ElementsAre("Error: Unable to parse JSON", "Log Event Failure", "Log Event Failure"));
}

// ---- Steps

class GetStepsTest : public SessionTest {
 protected:
  /// Asks, and returns what the callback was given; fails unless it was called once.
  std::optional<TLStepsAnswer> answerTo(const std::string& query) {
    std::vector<std::optional<TLStepsAnswer>> answers;
    LumicorNetworkTask::getSteps(query, [&](const auto& answer) {
      EXPECT_TRUE(isMainThread());
      LumicorDebugHelper::log("callback");
      answers.push_back(answer);
    });
    RunLoop::settle();
    EXPECT_THAT(answers, SizeIs(1));
    return answers.empty() ? std::nullopt : answers[0];
  }
  std::optional<TLStepsAnswer> answerFor(std::string_view reply) {
    StubService service;
    service.answer("/sdk/steps/get", URLProtocol::Reply::data(200, std::string(reply)));
    return answerTo("q");
  }
  std::vector<std::string> logFor(std::string_view reply) {
    beginLog();
    answerFor(reply);
    return log();
  }
  JSONValue historySentWith(const std::vector<TLChatMessage>& stored) {
    StubService service;
    LumicorUserDefaults::saveMessages(key, stored);
    answerTo("two teas, please");
    const JSONValue body = service.bodies("/sdk/steps/get").at(0);
    EXPECT_EQ(*body.find("query")->asString(), "two teas, please");
    EXPECT_EQ(service.requests()[0].timeoutInterval(), 100);
    return *body.find("chat_history");
  }
};

TEST_F(GetStepsTest, SendsTheLastTenMessagesBeforeTheNewest) {
  EXPECT_EQ(historySentWith(messagesNumbered(1, 15)), toJSONValue(messagesNumbered(5, 14)));
  EXPECT_EQ(historySentWith(messagesNumbered(1, 4)), toJSONValue(messagesNumbered(1, 3)));
  EXPECT_EQ(historySentWith(messagesNumbered(1, 11)), toJSONValue(messagesNumbered(1, 10)));
  EXPECT_EQ(historySentWith(messagesNumbered(1, 1)), JSONValue::array());
  EXPECT_EQ(historySentWith({}), JSONValue::array());
  UserDefaults::standard().removeObject(key);
  StubService service;
  answerTo("hello");
  EXPECT_EQ(service.bodies("/sdk/steps/get").at(0), json(R"({"query":"hello","chat_history":[]})"));
}

TEST_F(GetStepsTest, PassesATextAnswerOnAsItCame) {
  const auto answer =
      answerFor(R"({"status_code":200,"data":{"isAction":0,"answer":"Hello","shouldOpenChatWindow":1,"taskId":"t"}})");
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->steps());
  EXPECT_EQ(*answer->text(), "Hello");
  EXPECT_EQ(answer->shouldOpenChatWindow, JSONValue(1));
  EXPECT_EQ(answer->taskId, JSONValue("t"));
  EXPECT_THAT(logFor(R"({"status_code":200,"data":{"isAction":false,"answer":"Hello"}})"), ElementsAre("callback"));

  const auto bare = answerFor(R"({"status_code":200,"data":{"isAction":0}})");
  ASSERT_TRUE(bare);
  EXPECT_FALSE(bare->text());
  EXPECT_FALSE(bare->shouldOpenChatWindow);
  EXPECT_FALSE(bare->taskId);
}

TEST_F(GetStepsTest, JudgesByTheOtherSpellingOfTheStatus) {
  for (const char* bad :
       {R"({"statusCode":200,"data":{"isAction":0}})", R"({"status_code":"200","data":{}})", R"({"status_code":200})",
        R"({"status_code":200,"data":"x"})", R"({"status_code":404,"data":{}})"}) {
    SCOPED_TRACE(bad);
    EXPECT_FALSE(answerFor(bad));
    EXPECT_THAT(logFor(bad), ElementsAre("Get Steps Failure", "callback"));
  }
}

TEST_F(GetStepsTest, DecodesStepsOutOfTheirString) {
  const std::string step =
      R"({\"elementId\":\"pay\",\"index\":3,\"value\":\"\",\"scrollDetails\":[{\"viewId\":\"a-b\",)"
      R"(\"offsets\":{\"x\":0,\"y\":-4}}],\"viewName\":\"Cart\",\"actionType\":\"TYPE_BUTTON\",\"more\":null})";
  for (const char* flag : {"1", "2", "-1", "true", "0.5"}) {
    const auto answer = answerFor(R"({"status_code":200,"data":{"isAction":)" + std::string(flag) + R"(,"answer":"[)" +
                                  step + R"(]","shouldOpenChatWindow":0,"taskId":"t"}})");
    ASSERT_TRUE(answer && answer->steps()) << flag;
    EXPECT_THAT(*answer->steps(), ElementsAre(TLAction{"pay", 3, "", {{"a-b", {0, -4}}}, "Cart", "TYPE_BUTTON"}));
    EXPECT_EQ(answer->shouldOpenChatWindow, JSONValue(0));
    EXPECT_EQ(answer->taskId, JSONValue("t"));
  }
  const auto odd =
      answerFor(R"({"status_code":200,"data":{"isAction":1,"answer":"[]","shouldOpenChatWindow":[],"taskId":null}})");
  EXPECT_EQ(odd->shouldOpenChatWindow, JSONValue::array()) << "as it was received";
  EXPECT_EQ(odd->taskId, JSONValue(nullptr));
  const char* const none = R"({"status_code":200,"data":{"isAction":1,"answer":"[]"}})";
  EXPECT_THAT(*answerFor(none)->steps(), IsEmpty());
  EXPECT_THAT(logFor(none), ElementsAre("Get Steps Success", "callback"));
}

TEST_F(GetStepsTest, GivesNoValueForStepsThatCannotBeRead) {
  for (const char* answer : {"", R"(,"answer":[])", R"(,"answer":7)"}) {
    EXPECT_THAT(logFor(R"({"status_code":200,"data":{"isAction":1)" + std::string(answer) + "}}"),
                ElementsAre("Unable to convert actions jsonString to Data", "callback"));
  }
  for (const char* text : {"", "{}", R"([{\"elementId\":\"pay\"}])", "[1]"}) {
    const std::string reply = R"({"status_code":200,"data":{"isAction":1,"answer":")" + std::string(text) + R"("}})";
    EXPECT_FALSE(answerFor(reply));
    EXPECT_THAT(logFor(reply), ElementsAre("callback", MatchesRegex("Error processing Actions JSON: .*[a-z]{5}.*")));
  }
}

TEST_F(GetStepsTest, StopsAtAReplyThatDoesNotSayWhatItIs) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(answerFor(R"({"status_code":200,"data":{"answer":"x"}})"), "fatal error: .*isAction");
  EXPECT_DEATH(answerFor(R"({"status_code":200,"data":{"isAction":"1"}})"), "fatal error: .*isAction");
  EXPECT_DEATH(answerFor(R"({"status_code":200,"data":{"isAction":null}})"), "fatal error: .*isAction");
  EXPECT_DEATH(
      {
        StubService service;
        service.answer("/sdk/steps/get", json(R"({"status_code":200,"data":{"answer":"x"}})"));
        DispatchQueue::main().async([] {
          LumicorNetworkTask::getSteps("q", [](const auto&) {});
          while (BackgroundActivity::count() > 0) std::this_thread::yield();  // the reply is read meanwhile
          std::fputs("the main thread goes on\n", stderr);
        });
        RunLoop::settle();
      },
      "the main thread goes on\nfatal error: .*isAction");
}

// ---- Chat history

class UploadChatHistoryTest : public SessionTest {
 protected:
  std::vector<std::string> upload(const char* reply) {
    LumicorUserDefaults::saveMessages(key, messagesNumbered(1, 3));
    service_.answer("/sdk/messages/upload", json(reply));
    beginLog();
    LumicorNetworkTask::uploadChatHistory(messagesNumbered(1, 3));
    RunLoop::settle();
    return log();
  }
  StubService service_;
};

TEST_F(UploadChatHistoryTest, EmptiesTheStoreOnceTheServiceHasTheMessages) {
  EXPECT_THAT(upload(R"({"statusCode":200})"), ElementsAre("Chat History Upload Success"));
  EXPECT_EQ(service_.bodies("/sdk/messages/upload").at(0),
            JSONValue::object({{"chatHistory", toJSONValue(messagesNumbered(1, 3))}}));
  EXPECT_EQ(service_.requests().at(0).timeoutInterval(), 10);
  EXPECT_EQ(UserDefaults::standard().data(key), "[]");
}

TEST_F(UploadChatHistoryTest, KeepsTheStoreWhenTheUploadFailed) {
  EXPECT_THAT(upload(R"({"statusCode":500})"), ElementsAre("Chat History Upload Failure"));
  EXPECT_EQ(LumicorUserDefaults::loadMessages(key), messagesNumbered(1, 3));
}

}  // namespace lumicor::test
