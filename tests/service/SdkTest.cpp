#include <gmock/gmock.h>
#include <sstream>
#include <thread>

#include "tests/service/RunningService.h"
#include "tests/service/Wire.h"

namespace service {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string uploadOf(int count) {
  Json messages = Json::array();
  for (int i = 0; i < count; ++i)
    messages.push_back({{"message", "line " + std::to_string(i)}, {"isRemote", i % 2 == 1}, {"timestamp", 1000 + i}});
  return Json{{"chatHistory", messages}}.dump();
}

TEST(Sdk, SendsTheConfigurationWithAddressesOfItsOwn) {
  RunningService service;
  const Json reply = post(service.port(), "/sdk/init", "{}").json();
  EXPECT_EQ(reply["statusCode"], 200);
  EXPECT_EQ(reply["data"]["showTesselLumicor"], true);
  EXPECT_FALSE(reply["data"].contains("acceptedKeys"));
  const std::string image = reply["data"]["layoutData"]["image"];
  ASSERT_TRUE(image.starts_with(service.address() + "/"));
  const WireResponse asset = get(service.port(), image.substr(service.address().size()));
  EXPECT_EQ(asset.status, 200);
  EXPECT_EQ(asset.headers.value("Content-Type"), "image/png");
  EXPECT_EQ(asset.body, readFile(dataFolder() / "assets/button.png"));
}

TEST(Sdk, AnswersAQueryWithStepsOrWordsJudgedByTheOtherSpelling) {
  RunningService service;
  const Json steps =
      post(service.port(), "/sdk/steps/get", R"({"query": "order rye to Mill Lane", "chat_history": []})").json();
  EXPECT_EQ(steps["status_code"], 200);
  EXPECT_FALSE(steps.contains("statusCode"));
  EXPECT_EQ(steps["data"]["isAction"], 1);
  EXPECT_EQ(steps["data"]["taskId"], "order-bread");
  EXPECT_EQ(steps["data"]["shouldOpenChatWindow"], 1);
  EXPECT_EQ(Json::parse(steps["data"]["answer"].get<std::string>()).size(), 5u);
  const Json silent = post(service.port(), "/sdk/steps/get", R"({"query": "search for plums"})").json();
  EXPECT_EQ(silent["data"]["shouldOpenChatWindow"], 0);
  const Json words = post(service.port(), "/sdk/steps/get", R"({"query": "", "chat_history": []})").json();
  EXPECT_EQ(words["data"]["isAction"], 0);
  EXPECT_TRUE(words["data"]["answer"].is_string());
  EXPECT_EQ(words["data"]["taskId"], "");
}

TEST(Sdk, FindsInTheChatHistoryWhatAnAnswerBelongsTo) {
  RunningService service;
  const Json history = {{{"message", "order a baguette"}, {"isRemote", false}, {"timestamp", 1}},
                        {{"message", "Where shall it go?"}, {"isRemote", true}, {"timestamp", 2}}};
  const Json body = {{"query", "12 Baker Street"}, {"chat_history", history}};
  const Json reply = post(service.port(), "/sdk/steps/get", body.dump()).json();
  EXPECT_EQ(reply["data"]["isAction"], 1);
  EXPECT_THAT(reply["data"]["answer"].get<std::string>(), HasSubstr("12 Baker Street"));
}

TEST(Sdk, KeepsEventsMessagesAndQueriesInTheirOrderAndReadsThemBack) {
  RunningService service;
  for (const auto* name : {"LUMICOR_INITIALIZED", "CHAT_VIEW_OPEN", "CHAT_FLOATER_DISMISSED"}) {
    const Json event = {{"eventName", name}, {"taskId", "t-1"}};
    EXPECT_EQ(post(service.port(), "/sdk/event/log", event.dump(), "bea").json()["statusCode"], 200);
  }
  const Json events = get(service.port(), "/admin/events?after=1&limit=5").json()["data"]["events"];
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0]["eventName"], "CHAT_VIEW_OPEN");
  EXPECT_EQ(events[1]["eventName"], "CHAT_FLOATER_DISMISSED");
  EXPECT_EQ(events[1]["userId"], "bea");
  EXPECT_EQ(events[1]["taskId"], "t-1");
  EXPECT_GT(events[1]["receivedAt"].get<std::int64_t>(), 1'500'000'000'000);

  post(service.port(), "/sdk/messages/upload", uploadOf(3), "bea");
  // The first upload's reply may have been lost: the same messages come again, with one more.
  post(service.port(), "/sdk/messages/upload", uploadOf(4), "bea");
  post(service.port(), "/sdk/messages/upload", uploadOf(1), "cid");
  const Json messages = get(service.port(), "/admin/messages").json()["data"]["messages"];
  ASSERT_EQ(messages.size(), 5u);
  EXPECT_EQ(messages[3]["message"], "line 3");
  EXPECT_EQ(messages[4]["userId"], "cid");
  EXPECT_EQ(post(service.port(), "/sdk/init", "{}", "bea").json()["data"]["chatHistory"].size(), 4u);

  post(service.port(), "/sdk/steps/get", R"({"query": "sing"})");
  const Json queries = get(service.port(), "/admin/queries").json()["data"]["queries"];
  ASSERT_EQ(queries.size(), 1u);
  EXPECT_EQ(queries[0]["query"], "sing");
  EXPECT_EQ(queries[0]["outcome"], "no match");
}

TEST(Sdk, KeepsWhatItWasToldAcrossARestart) {
  const TemporaryFolder folder;
  {
    RunningService service({}, folder.path());
    post(service.port(), "/sdk/event/log", R"({"eventName": "TASK_SUCCESS", "taskId": "a"})");
  }
  RunningService service({}, folder.path());
  post(service.port(), "/sdk/event/log", R"({"eventName": "TASK_FAILURE", "taskId": "b"})");
  const Json events = get(service.port(), "/admin/events").json()["data"]["events"];
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0]["taskId"], "a");
}

TEST(Sdk, KeepsNothingOfAnUploadWithOneFault) {
  RunningService service;
  const auto* body = R"({"chatHistory": [{"message": "a", "isRemote": true, "timestamp": 1}, {"message": "b"}]})";
  const Json reply = post(service.port(), "/sdk/messages/upload", body).json();
  EXPECT_EQ(reply["message"], "chatHistory[1].isRemote: is missing");
  EXPECT_EQ(get(service.port(), "/admin/messages").json()["data"]["messages"].size(), 0u);
}

TEST(Sdk, ServesManyApplicationsAtOnce) {
  RunningService service;
  constexpr int kClients = 12;
  std::vector<std::thread> clients;
  for (int i = 0; i < kClients; ++i) {
    clients.emplace_back([&service, i] {
      const std::string user = "user " + std::to_string(i);
      for (int n = 0; n < 5; ++n) {
        EXPECT_EQ(post(service.port(), "/sdk/event/log", R"({"eventName": "MESSAGE_SENT", "taskId": ""})", user).status,
                  200);
        EXPECT_EQ(post(service.port(), "/sdk/steps/get", R"({"query": "go back"})", user).json()["data"]["isAction"],
                  1);
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(get(service.port(), "/admin/events").json()["data"]["events"].size(), 5u * kClients);
}

TEST(ExchangeLog, HoldsEveryExchangeOnALineOfItsOwnAndNoKey) {
  const TemporaryFolder data;
  RunningService service({}, data.path());
  post(service.port(), "/sdk/steps/get", "{\"query\": \"zwei\\nlines\"}");
  get(service.port(), "/assets/button.png");
  talk(service.port(), "nonsense\r\n\r\n");
  std::istringstream lines(service.exchanges());
  std::vector<Json> exchanges;
  for (std::string line; std::getline(lines, line);) exchanges.push_back(Json::parse(line));
  ASSERT_EQ(exchanges.size(), 3u);
  EXPECT_EQ(exchanges[0]["method"], "POST");
  EXPECT_EQ(exchanges[0]["path"], "/sdk/steps/get");
  EXPECT_EQ(exchanges[0]["headers"]["secret-key"], "(redacted)");
  EXPECT_EQ(exchanges[0]["headers"]["user-id"], "ann");
  EXPECT_EQ(exchanges[0]["requestBody"], "{\"query\": \"zwei\\nlines\"}");
  EXPECT_EQ(exchanges[0]["status"], 200);
  EXPECT_EQ(Json::parse(exchanges[0]["responseBody"].get<std::string>())["status_code"], 200);
  EXPECT_GE(exchanges[0]["milliseconds"].get<double>(), 0);
  EXPECT_EQ(exchanges[1]["responseBody"], "(28 bytes of image/png)");
  EXPECT_EQ(exchanges[2]["status"], 400);
  EXPECT_THAT(service.exchanges(), Not(HasSubstr("bakery-key")));
  for (const auto& entry : std::filesystem::recursive_directory_iterator(data.path())) {
    if (!entry.is_regular_file()) continue;
    EXPECT_THAT(readFile(entry.path()), Not(HasSubstr("bakery-key"))) << entry.path();
  }
}

TEST(ExchangeLog, StaysReadableWhateverWasSent) {
  RunningService service;
  post(service.port(), "/sdk/init", "{\"a\": \"\xff\xfe\"}");
  post(service.port(), "/sdk/init", "{\"a\": \"" + std::string(300'000, 'x') + "\"}");
  std::istringstream lines(service.exchanges());
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(Json::parse(line)["requestBody"], "{\"a\": \"\xEF\xBF\xBD\xEF\xBF\xBD\"}");
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_THAT(Json::parse(line)["requestBody"].get<std::string>(), testing::EndsWith("x... (300009 bytes)"));
}

}  // namespace
}  // namespace service
