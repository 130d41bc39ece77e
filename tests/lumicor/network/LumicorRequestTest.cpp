#include <gmock/gmock.h>
#include <limits>

#include "lumicor/network/LumicorRequest.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// One request of a kind of its own, and what became of it.
class LumicorRequestTest : public SessionTest {
 protected:
  void send(const JSONValue& body, const char* failureText = "Thing Failure") {
    LumicorRequest::send({.path = "/sdk/thing", .timeout = 7, .failureText = failureText}, body,
                         [this](const std::optional<JSONValue>& reply) {
                           EXPECT_TRUE(isMainThread());
                           replies_.push_back(reply);
                         });
    EXPECT_THAT(replies_, IsEmpty()) << "nothing is delivered before the call returns";
    RunLoop::settle();
  }

  StubService service_;
  std::vector<std::optional<JSONValue>> replies_;
};

TEST_F(LumicorRequestTest, PostsCompactJsonWithTheIdentityHeaders) {
  Lumicor::shared().setSecretKey("s3cret");
  Lumicor::shared().getAttributes()->setUserId("ada");
  Lumicor::shared().getAttributes()->setAppVersion("2.1");
  Lumicor::shared().getAttributes()->setIOSVersion("16.4");
  Lumicor::shared().setEndpoint("https://service.test/base");
  send(json(R"({"a": [1, true, "é"]})"));

  const URLRequest request = service_.requests().at(0);
  EXPECT_EQ(request.url().absoluteString(), "https://service.test/base/sdk/thing");
  EXPECT_EQ(request.httpMethod(), "POST");
  EXPECT_EQ(request.timeoutInterval(), 7);
  EXPECT_EQ(request.httpBody(), R"({"a":[1,true,"é"]})");
  using Entry = HTTPHeaders::Entry;
  EXPECT_THAT(request.headers().entries(),
              UnorderedElementsAre(Entry("secret-key", "s3cret"), Entry("user-id", "ada"), Entry("sdk", "0.0.4"),
                                   Entry("platform", "iOS"), Entry("app-version", "2.1"), Entry("ios-version", "16.4"),
                                   Entry("Content-Type", "application/json")));
  EXPECT_THAT(replies_, ElementsAre(json(R"({"statusCode":200})")));
}

TEST_F(LumicorRequestTest, SendsEmptyIdentityBeforeASessionWasStarted) {
  const auto fresh = make<Lumicor>();
  Lumicor::shared().getAttributes()->setUserId(fresh->getAttributes()->getUserId());
  send(JSONValue::object());
  ASSERT_EQ(service_.requests().size(), 1U);
  EXPECT_EQ(*service_.requests()[0].value("secret-key"), "");
  EXPECT_EQ(*service_.requests()[0].value("user-id"), "");
}

TEST_F(LumicorRequestTest, DoesNotConsultTheHttpStatus) {
  service_.answer("/sdk/thing", json(R"({"statusCode":200})"), 500);
  beginLog();
  send(JSONValue::object());
  EXPECT_TRUE(isGoodReply(replies_.at(0)));
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(LumicorRequestTest, ReadsOffTheMainThreadAndJudgesOnIt) {
  std::vector<std::string> order;
  LumicorRequest::sendAndRead({.path = "/sdk/thing", .failureText = ""}, JSONValue::object(),
                              [&](const std::optional<JSONValue>& read) -> LumicorRequest::Judge {
                                order.push_back(isMainThread() ? "read on main" : "read");
                                EXPECT_TRUE(isGoodReply(read));
                                return [&](const std::optional<JSONValue>& judged) {
                                  order.push_back(isMainThread() ? "judged on main" : "judged");
                                  EXPECT_TRUE(isGoodReply(judged));
                                };
                              });
  RunLoop::settle();
  EXPECT_THAT(order, ElementsAre("read", "judged on main"));
}

TEST_F(LumicorRequestTest, PassesOverAByteOrderMark) {
  service_.answer("/sdk/thing", URLProtocol::Reply::data(200, "\xEF\xBB\xBF{\"statusCode\":200}"));
  send(JSONValue::object());
  EXPECT_TRUE(isGoodReply(replies_.at(0)));
}

TEST_F(LumicorRequestTest, SendsNothingWhenTheBodyIsNoJson) {
  beginLog();
  send(JSONValue::object({{"x", std::numeric_limits<double>::quiet_NaN()}}));
  EXPECT_THAT(log(), ElementsAre("Error: Unable to convert body to JSON", "Thing Failure"));
  EXPECT_THAT(service_.requests(), IsEmpty());
  EXPECT_THAT(replies_, ElementsAre(std::nullopt));
}

TEST_F(LumicorRequestTest, ReportsFailuresOfTransportAndOfParsing) {
  const URLError timeout(URLError::timedOut);
  const auto expect = [this](URLProtocol::Reply reply, const std::string& line) {
    SCOPED_TRACE(line);
    replies_.clear();
    StubService other;
    other.answer("/sdk/thing", std::move(reply));
    beginLog();
    send(JSONValue::object());
    EXPECT_THAT(log(), ElementsAre(line, "Thing Failure"));
    EXPECT_THAT(replies_, ElementsAre(std::nullopt));
  };
  expect(URLProtocol::Reply::failure(URLError::timedOut), "Error: " + timeout.localizedDescription());
  for (const char* body :
       {"", "[]", "\"text\"", "{", "{\"statusCode\":200} x", "\xff", "\xEF\xBB\xBF", "\xEF\xBB{\"statusCode\":200}"}) {
    expect(URLProtocol::Reply::data(200, body), "Error: Unable to parse JSON");
  }
}

TEST_F(LumicorRequestTest, LogsOnlyTheErrorForAKindWithoutFailureText) {
  service_.answer("/sdk/thing", URLProtocol::Reply::data(200, "[]"));
  beginLog();
  send(JSONValue::object(), "");
  EXPECT_THAT(log(), ElementsAre("Error: Unable to parse JSON"));
}

TEST_F(LumicorRequestTest, GivesUpAfterItsOwnTimeout) {
  service_.answer("/sdk/thing", URLProtocol::Reply::json(200, JSONValue::object()).after(60));
  send(JSONValue::object());
  RunLoop::advance(6.9);
  EXPECT_THAT(replies_, IsEmpty());
  RunLoop::advance(0.2);
  EXPECT_THAT(replies_, ElementsAre(std::nullopt));
}

TEST_F(LumicorRequestTest, RefusesIdentityThatCouldBreakOutOfItsHeader) {
  const std::string refusal = "Error: " + URLError(URLError::badRequest).localizedDescription();
  for (const char* user : {"ada\r\nx-admin: 1", "ada\n", "ada\x7f"}) {
    SCOPED_TRACE(user);
    replies_.clear();
    Lumicor::shared().getAttributes()->setUserId(user);
    beginLog();
    send(JSONValue::object());
    EXPECT_THAT(log(), ElementsAre(refusal, "Thing Failure"));
    EXPECT_THAT(replies_, ElementsAre(std::nullopt));
  }
  EXPECT_THAT(service_.requests(), IsEmpty());
  Lumicor::shared().getAttributes()->setUserId("");
}

TEST_F(LumicorRequestTest, TreatsAnEndpointThatFormsNoAddressAsAFailure) {
  Lumicor::shared().setEndpoint("not an address");
  send(JSONValue::object());
  EXPECT_THAT(replies_, ElementsAre(std::nullopt));
}

TEST(GoodReply, IsTheIntegerTwoHundredWithAnObjectForItsData) {
  for (const char* bad : {"{}", R"({"statusCode":"200"})", R"({"statusCode":200.5})", R"({"statusCode":true})",
                          R"({"statusCode":201})", R"({"status_code":200})", R"({"statusCode":null})"}) {
    EXPECT_FALSE(isGoodReply(json(bad))) << bad;
  }
  EXPECT_FALSE(isGoodReply(std::nullopt));
  EXPECT_TRUE(isGoodReply(json(R"({"status_code":200})"), "status_code"));
  EXPECT_TRUE(isGoodReply(json(R"({"statusCode":200.0})"))) << "a whole number, however it is written";
  EXPECT_TRUE(isGoodReply(json(R"({"statusCode":2e2})")));
  EXPECT_FALSE(goodReplyData(json(R"({"statusCode":200,"data":[]})")));
  EXPECT_FALSE(goodReplyData(json(R"({"statusCode":201,"data":{}})")));
  EXPECT_TRUE(goodReplyData(json(R"({"statusCode":200,"data":{}})")));
}

}  // namespace lumicor::test
