#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/dispatch/BackgroundActivity.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class RegistrationTest : public SessionTest {
 protected:
  RegistrationTest() : information_(Bundle::main().infoDictionary()) {
    Bundle::main().setInfoDictionary(json(R"({"CFBundleIdentifier":"example.tea"})"));
  }
  ~RegistrationTest() override { Bundle::main().setInfoDictionary(information_); }

  StubService service_;

 private:
  JSONValue information_;
};

LumicorSnapshot snapshotOf(const std::string& screen, std::int64_t index = 0) {
  const LumicroElement pay("pay", "", 1, 2, 3, 4, "pressed", false, "", "Default", "Pay “now”", "Default",
                           LumicorType::TYPE_INPUT, LumicorInputType::TYPE_BUTTON);
  return {screen, 844, 390, "PORTRAIT", {pay}, {pay}, pay, {{"feed", {0, 0, 12}}}, "Default", "shot.png", index};
}

// ---- The task

class RegisterTaskTest : public RegistrationTest {
 protected:
  /// What the callback was given, and what the log said.
  void expectAfter(const char* reply, const std::vector<JSONValue>& given, const std::vector<std::string>& logged) {
    SCOPED_TRACE(reply);
    StubService service;
    service.answer("/sdk/task/register", URLProtocol::Reply::data(200, reply));
    beginLog();
    std::vector<JSONValue> heard;
    LumicorNetworkTask::registerTask("k", [&](const JSONValue& data) {
      EXPECT_TRUE(isMainThread());
      heard.push_back(data);
    });
    RunLoop::settle();
    EXPECT_EQ(heard, given);
    EXPECT_EQ(log(), logged);
  }
};

TEST_F(RegisterTaskTest, SendsWhatTheServiceKeepsOfATask) {
  LumicorNetworkTask::registerTask("videos/7.mp4", [](const JSONValue&) {});
  RunLoop::settle();
  EXPECT_THAT(service_.bodies("/sdk/task/register"),
              ElementsAre(json(R"({"appBundleId":"example.tea","taskName":"Default","taskDescription":"Default",
                  "recordingKey":"videos/7.mp4","status":"Action Required","openChatWindow":true,"triggers":0})")));
  EXPECT_EQ(service_.requests().at(0).timeoutInterval(), 10);
}

TEST_F(RegisterTaskTest, HandsTheDataOnAfterSuccessAlone) {
  expectAfter(R"({"statusCode":200,"data":{"insertedId":"t"}})", {json(R"({"insertedId":"t"})")},
              {"Task Register Success"});
  expectAfter(R"({"statusCode":200,"data":{}})", {JSONValue::object()}, {"Task Register Success"});
  for (const char* reply : {R"({"statusCode":500,"data":{"insertedId":"t"}})", R"({"statusCode":200})",
                            R"({"statusCode":"200","data":{}})", R"({"statusCode":200,"data":[]})"}) {
    expectAfter(reply, {}, {"Task Register Failure"});
  }
  expectAfter("torn", {}, {"Error: Unable to parse JSON", "Task Register Failure", "Task Register Failure"});
}

TEST_F(RegisterTaskTest, IsSilentWhereTheHostHasNoIdentifier) {
  Bundle::main().setInfoDictionary(JSONValue::object());
  beginLog();
  LumicorNetworkTask::registerTask("k", [](const JSONValue&) { ADD_FAILURE(); });
  RunLoop::settle();
  EXPECT_THAT(service_.requests(), IsEmpty());
  EXPECT_THAT(log(), IsEmpty());
}

// ---- Its snapshots

class RegisterSnapshotsTest : public RegistrationTest {
 protected:
  std::vector<std::string> logOf(const char* data, std::vector<LumicorSnapshot> flow) {
    beginLog();
    LumicorNetworkTask::registerSnapshots(json(data), std::move(flow));
    RunLoop::settle();
    return log();
  }
  std::vector<JSONValue> bodies() const { return service_.bodies("/sdk/snapshot/register"); }
};

TEST_F(RegisterSnapshotsTest, SendsEachInOrderUnderTheTask) {
  EXPECT_THAT(logOf(R"({"insertedId":"t1"})", {snapshotOf("Home", 4), snapshotOf("Cart", 9)}),
              ElementsAre("Register Snapshot Started", "Register Snapshot Success"));
  ASSERT_THAT(bodies(), SizeIs(2));
  EXPECT_EQ(bodies()[1], JSONValue::object({{"snapshotName", "Default"},
                                            {"snapshotDescription", "Default"},
                                            {"taskId", "t1"},
                                            {"index", 1},
                                            {"snapshot", toJSONValue(snapshotOf("Cart", 9))}}));
  EXPECT_EQ(bodies()[0].find("index")->asInteger(), 0);
  EXPECT_EQ(service_.requests().at(0).timeoutInterval(), 10);
}

TEST_F(RegisterSnapshotsTest, WaitsForEachAnswer) {
  service_.answer("/sdk/snapshot/register", URLProtocol::Reply::json(200, json(R"({"statusCode":200})")).after(2));
  LumicorNetworkTask::registerSnapshots(json(R"({"insertedId":"t1"})"), {snapshotOf("Home"), snapshotOf("Cart")});
  RunLoop::advance(1.9);
  EXPECT_THAT(bodies(), SizeIs(1));
  RunLoop::advance(0.2);
  EXPECT_THAT(bodies(), SizeIs(2));
  RunLoop::advance(2);  // a request under way keeps itself alive
}

TEST_F(RegisterSnapshotsTest, StopsAtTheFirstThatIsRefusedAndTellsItsCode) {
  const std::string line = "Register Snapshot not completed with status code: ";
  const std::vector three{snapshotOf("A"), snapshotOf("B"), snapshotOf("C")};
  service_.answer("/sdk/snapshot/register", json(R"({"statusCode":200})"));
  service_.answer("/sdk/snapshot/register", json(R"({"statusCode":500})"));
  EXPECT_THAT(logOf(R"({"insertedId":"t"})", three), ElementsAre("Register Snapshot Started", line + "500"));
  EXPECT_THAT(bodies(), SizeIs(2));
  for (const auto& [reply, code] : {std::pair(R"({"statusCode":"late"})", "late"), std::pair("{}", "none")}) {
    StubService other;
    other.answer("/sdk/snapshot/register", json(reply));
    EXPECT_THAT(logOf(R"({"insertedId":"t"})", three), ElementsAre("Register Snapshot Started", line + code));
  }
  StubService dead;
  dead.answer("/sdk/snapshot/register", URLProtocol::Reply::failure(URLError::timedOut));
  EXPECT_THAT(logOf(R"({"insertedId":"t"})", three),
              ElementsAre("Register Snapshot Started", "Error: " + URLError(URLError::timedOut).localizedDescription(),
                          line + "none"));
  EXPECT_THAT(dead.requests(), SizeIs(1)) << "nothing is repeated";
}

TEST_F(RegisterSnapshotsTest, SaysNothingWhereThereIsNothingToRegister) {
  EXPECT_THAT(logOf(R"({"insertedId":"t"})", {}), IsEmpty());
  EXPECT_THAT(logOf("{}", {snapshotOf("A")}), IsEmpty());
  EXPECT_THAT(logOf(R"({"insertedId":7})", {snapshotOf("A")}), IsEmpty());
  Lumicor::shared().setEndpoint("no address");
  EXPECT_THAT(logOf(R"({"insertedId":"t"})", {snapshotOf("A")}), IsEmpty());
  EXPECT_THAT(service_.requests(), IsEmpty());
}

TEST_F(RegisterSnapshotsTest, IsStoppedByASnapshotThatCannotBeReadBack) {
  auto tooLong = snapshotOf("B");
  auto inputs = tooLong.inputs();
  inputs[0].setValue(std::string(JSONValue::maximumBytes, 'x'));
  tooLong.setInputs(inputs);
  const auto logged = logOf(R"({"insertedId":"t"})", {snapshotOf("A"), tooLong, snapshotOf("C")});
  ASSERT_THAT(logged, SizeIs(2));
  EXPECT_THAT(logged[1], testing::StartsWith("Error during snapshot conversion: "));
  EXPECT_THAT(bodies(), SizeIs(1));
}

// ---- Files

class UploadMediaTest : public RegistrationTest {
 protected:
  UploadMediaTest() : file_(std::filesystem::temp_directory_path() / "lumicor-upload-test.bin") {
    std::ofstream(file_) << "frames";
  }
  ~UploadMediaTest() override { std::filesystem::remove(file_); }

  /// The key that the callback was given; fails unless it was called once, on the thread that belongs to the outcome.
  std::optional<std::string> keyFor(const char* reply) {
    service_.answer("/sdk/media/upload", json(reply));
    std::vector<std::optional<std::string>> keys;
    LumicorNetworkTask::uploadMedia("CartScreen", file_, "mp4", [&](const std::optional<std::string>& key) {
      EXPECT_EQ(isMainThread(), !key.has_value());
      keys.push_back(key);
    });
    RunLoop::settle();
    EXPECT_THAT(keys, SizeIs(1));
    return keys.empty() ? std::nullopt : keys[0];
  }
  static constexpr const char* goodAddress =
      R"({"statusCode":200,"data":{"url":"https://files.test/put/1?once","key":"media/1"}})";

  std::filesystem::path file_;
};

TEST_F(UploadMediaTest, AsksForAnAddressAndPutsTheFileThere) {
  beginLog();
  service_.answer("/put/1", URLProtocol::Reply::data(201, ""));
  EXPECT_EQ(keyFor(goodAddress), "media/1");
  EXPECT_THAT(log(), ElementsAre("Get Upload Url Success", "Upload File Success")) << "no status of HTTP counts";
  EXPECT_THAT(service_.bodies("/sdk/media/upload"),
              ElementsAre(json(R"({"viewName":"CartScreen","extension":"mp4"})")));
  ASSERT_THAT(service_.requests(), SizeIs(2));
  const URLRequest put = service_.requests()[1];
  EXPECT_EQ(put.url().absoluteString(), "https://files.test/put/1?once");
  EXPECT_EQ(put.httpMethod(), "PUT");
  EXPECT_EQ(put.httpBody(), "frames");
  EXPECT_EQ(put.timeoutInterval(), 60);
  EXPECT_EQ(put.cachePolicy(), URLRequest::CachePolicy::reloadIgnoringLocalCacheData);
  for (const char* field : {"secret-key", "user-id", "sdk", "platform", "app-version", "ios-version"}) {
    EXPECT_EQ(put.value(field), nullptr) << field << " is for the service alone";
  }
}

TEST_F(UploadMediaTest, HandsTheKeyOutThoughTheFileNeverArrives) {
  service_.answer("/put/1", URLProtocol::Reply::failure(URLError::networkConnectionLost));
  beginLog();
  EXPECT_EQ(keyFor(goodAddress), "media/1");
  const std::string lost = URLError(URLError::networkConnectionLost).localizedDescription();
  EXPECT_THAT(log(), ElementsAre("Get Upload Url Success", "Upload File Failure " + lost));
  std::filesystem::remove(file_);
  EXPECT_EQ(keyFor(goodAddress), "media/1") << "nor when there is no file";
}

TEST_F(UploadMediaTest, HandsTheKeyOutThoughTheAddressIsNone) {
  EXPECT_EQ(keyFor(R"({"statusCode":200,"data":{"url":"not an address","key":"media/1"}})"), "media/1");
  EXPECT_THAT(service_.requests(), SizeIs(1));
}

TEST_F(UploadMediaTest, GivesNoKeyWithoutAWholeAnswer) {
  for (const char* reply : {R"({"statusCode":500,"data":{"url":"https://files.test/1","key":"k"}})",
                            R"({"statusCode":200,"data":{"url":"https://files.test/1"}})",
                            R"({"statusCode":200,"data":{"url":7,"key":"k"}})", R"({"statusCode":200})"}) {
    SCOPED_TRACE(reply);
    StubService service;
    service.answer("/sdk/media/upload", json(reply));
    beginLog();
    std::optional<std::string> key = "untouched";
    LumicorNetworkTask::uploadMedia("A", file_, "png", [&](const auto& given) { key = given; });
    RunLoop::settle();
    EXPECT_EQ(key, std::nullopt);
    EXPECT_THAT(log(), ElementsAre("Get Upload Url Failure"));
    EXPECT_THAT(service.requests(), SizeIs(1));
  }
}

}  // namespace lumicor::test
