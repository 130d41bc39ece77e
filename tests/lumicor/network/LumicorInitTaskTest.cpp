#include <gmock/gmock.h>

#include "lumicor/capture/LumicorTrackingControlView.h"
#include "lumicor/network/LumicorConfiguration.h"
#include "lumicor/network/LumicorInitTask.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

/// A start of a session against a service that answers with a given configuration.
class LumicorInitTaskTest : public SessionTest {
 protected:
  LumicorInitTaskTest() {
    Bundle::main().setInfoDictionary(json(R"({"CFBundleShortVersionString":"3.2"})"));
    TLFloaterManager::shared().setLayoutData(layoutWithoutFont());
  }

  /// The font of the built-in layout is not fetched by these tests.
  static TLLayout layoutWithoutFont() {
    TLLayout layout;
    layout.styles.fontURL = "no address";
    return layout;
  }
  void start(std::string_view reply) {
    service_.answer("/sdk/init", json(reply));
    Lumicor::shared().initialize("key", "ada");
    RunLoop::settle();
  }
  std::vector<std::string> startAndLog(std::string_view reply) {
    beginLog();
    start(reply);
    return log();
  }

  StubService service_;
};

TEST_F(LumicorInitTaskTest, TellsTheServiceWhoAndWhatAndBecomesInitialised) {
  service_.answer("/sdk/init", json(R"({"statusCode":200,"data":{}})"));
  beginLog();
  Lumicor::shared().initialize("key", "ada", "https://other.test");
  EXPECT_FALSE(Lumicor::shared().getInitialized());
  RunLoop::settle();
  EXPECT_THAT(log(), ElementsAre("Initialization Success", "Log Event Success"));
  EXPECT_TRUE(Lumicor::shared().getInitialized());

  const URLRequest request = service_.requests().at(0);
  EXPECT_EQ(request.url().absoluteString(), "https://other.test/sdk/init");
  EXPECT_EQ(request.timeoutInterval(), 10);
  EXPECT_EQ(request.httpBody(), "{}");
  EXPECT_EQ(*request.value("secret-key"), "key");
  EXPECT_EQ(*request.value("user-id"), "ada");
  EXPECT_EQ(*request.value("app-version"), "3.2");
  EXPECT_EQ(*request.value("ios-version"), "16.4");
  EXPECT_EQ(service_.bodies("/sdk/event/log").at(0), json(R"({"eventName":"LUMICOR_INITIALIZED","taskId":""})"));
}

TEST_F(LumicorInitTaskTest, ReadsAVersionThatIsNoTextAsNone) {
  Bundle::main().setInfoDictionary(json(R"({"CFBundleShortVersionString":3})"));
  EXPECT_EQ(LumicorInitTask("key", "ada").appVersion(), "");
}

TEST_F(LumicorInitTaskTest, AppliesNothingOfAReplyThatIsNotGood) {
  for (const char* reply :
       {R"({"statusCode":200})", R"({"statusCode":200,"data":[]})", R"({"statusCode":201,"data":{"chatHistory":[]}})",
        R"({"statusCode":"200","data":{"chatHistory":[]}})", R"({"data":{"chatHistory":[]}})"}) {
    SCOPED_TRACE(reply);
    StubService other;
    other.answer("/sdk/init", json(reply));
    Lumicor::shared().setChatHistory({{"kept", true, 1}});
    beginLog();
    Lumicor::shared().initialize("key", "ada");
    RunLoop::settle();
    EXPECT_THAT(log(), ElementsAre("Initialization Failure"));
    EXPECT_FALSE(Lumicor::shared().getInitialized());
    EXPECT_EQ(Lumicor::shared().getChatHistory().size(), 1U);
    EXPECT_THAT(other.events(), IsEmpty());
    Lumicor::shared().setInitialized(true);
    Lumicor::shared().initialize("key", "ada");
    RunLoop::settle();
    EXPECT_TRUE(Lumicor::shared().getInitialized()) << "a start that fails leaves an earlier one as it is";
    Lumicor::shared().setInitialized(false);
  }
}

TEST_F(LumicorInitTaskTest, StartsAgainForWhoeverIsThereNow) {
  start(R"({"statusCode":200,"data":{"showTesselLumicor":true}})");
  ASSERT_TRUE(Lumicor::showTesselLumicor);
  StubService later;
  later.answer("/sdk/init", json(R"({"statusCode":200,"data":{"showTesselLumicor":false}})"));
  Lumicor::shared().initialize("other key", "bob");
  RunLoop::settle();
  EXPECT_EQ(*later.requests().at(0).value("secret-key"), "other key");
  EXPECT_EQ(*later.requests().at(0).value("user-id"), "bob");
  EXPECT_TRUE(Lumicor::showTesselLumicor) << "false leaves the flag as it was";
}

TEST_F(LumicorInitTaskTest, LoadsTheFontOfTheLayoutThatCameElseOfTheOneInForce) {
  const auto fontRequests = [](const StubService& service) {
    std::vector<std::string> addresses;
    for (const URLRequest& request : service.requests()) {
      const std::string address = request.url().absoluteString();
      if (address.ends_with(".otf")) addresses.push_back(address);
    }
    return addresses;
  };
  service_.answer("/before.otf", URLProtocol::Reply::failure(URLError::timedOut));  // the next start tries again
  TLLayout layout = layoutWithoutFont();
  layout.styles.fontURL = "https://fonts.test/before.otf";
  TLFloaterManager::shared().setLayoutData(layout);
  testing::internal::CaptureStdout();
  start(R"({"statusCode":200,"data":{}})");
  EXPECT_THAT(fontRequests(service_), ElementsAre("https://fonts.test/before.otf"));

  layout.styles.fontURL = "https://fonts.test/after.otf";
  StubService later;
  later.answer("/after.otf", URLProtocol::Reply::failure(URLError::timedOut));
  const JSONValue data = JSONValue::object({{"layoutData", toJSONValue(layout)}});
  LumicorConfiguration::read(data).apply();
  RunLoop::settle();
  testing::internal::GetCapturedStdout();
  EXPECT_THAT(fontRequests(later), ElementsAre("https://fonts.test/after.otf"));
}

TEST_F(LumicorInitTaskTest, ShowsTheButtonInALaterTurnOfTheLoop) {
  const auto before = TLFloaterManager::shared().floaterView();
  LumicorConfiguration::read(json(R"({"showTesselLumicor":true})")).apply();
  EXPECT_TRUE(Lumicor::showTesselLumicor);
  EXPECT_EQ(TLFloaterManager::shared().floaterView(), before);
  RunLoop::settle();
  EXPECT_NE(TLFloaterManager::shared().floaterView(), before);
}

TEST_F(LumicorInitTaskTest, AppliesEveryMemberThatCanBeReadAndLogsTheOthers) {
  const auto lines = startAndLog(R"({"statusCode":200,"data":{
      "layoutData":{"viewType":"TYPE_FLOATING"},
      "chatHistory":[{"message":"hello"}],
      "tlDefaults":{"failureMessage":"no","successMessageTemplate":"yes"},
      "unknown":1}})");
  EXPECT_THAT(lines,
              ElementsAre("Initialization Success",
                          AllOf(StartsWith("Failed to decode layout JSON: "), EndsWith("margin: missing")),
                          AllOf(StartsWith("Failed to decode chat history JSON: "), EndsWith("isRemote: missing")),
                          "Log Event Success"));
  EXPECT_EQ(Lumicor::shared().getDefaults(), (TLDefaults{"no", "yes"}));
  EXPECT_THAT(Lumicor::shared().getChatHistory(), IsEmpty());
  EXPECT_EQ(TLFloaterManager::shared().layoutData(), layoutWithoutFont());
  EXPECT_THAT(service_.events(), ElementsAre("LUMICOR_INITIALIZED"));
}

TEST_F(LumicorInitTaskTest, SkipsMembersOfAnotherTypeSilently) {
  const auto lines = startAndLog(R"({"statusCode":200,"data":{"showTrackerView":1,"layoutData":[],"chatHistory":{},
      "showTesselLumicor":"true","tlDefaults":null}})");
  EXPECT_THAT(lines, ElementsAre("Initialization Success", "Log Event Success"));
  EXPECT_FALSE(Lumicor::showTrackingView);
  EXPECT_FALSE(Lumicor::showTesselLumicor);
}

TEST_F(LumicorInitTaskTest, LogsDefaultsThatAreNotWhole) {
  EXPECT_THAT(
      startAndLog(R"({"statusCode":200,"data":{"tlDefaults":{"failureMessage":"no"}}})"),
      ElementsAre("Initialization Success",
                  AllOf(StartsWith("Failed to decode defaults JSON: "), EndsWith("successMessageTemplate: missing")),
                  "Log Event Success"));
}

TEST_F(LumicorInitTaskTest, HandsOverLayoutAndHistoryAndOffersTheAssistant) {
  TLLayout layout = layoutWithoutFont();
  layout.size = 72;
  const JSONValue data =
      JSONValue::object({{"showTesselLumicor", true},
                         {"layoutData", toJSONValue(layout)},
                         {"chatHistory", json(R"([{"message":"a","isRemote":true,"timestamp":7}])")}});
  const JSONValue reply = JSONValue::object({{"statusCode", 200}, {"data", data}});
  Lumicor::shared().setChatHistory({{"from before", true, 1}});
  start(*reply.encode());
  EXPECT_EQ(TLFloaterManager::shared().layoutData(), layout);
  EXPECT_THAT(Lumicor::shared().getChatHistory(), ElementsAre(TLChatMessage{"a", true, 7}));
  EXPECT_TRUE(Lumicor::showTesselLumicor);
  ASSERT_TRUE(TLFloaterManager::shared().floaterView());
  EXPECT_TRUE(TLFloaterManager::shared().floaterView()->show());
}

TEST_F(LumicorInitTaskTest, PrefersTheTrackerToTheAssistantWhenThereIsAScreen) {
  const char* const both = R"({"statusCode":200,"data":{"showTrackerView":true,"showTesselLumicor":true}})";
  start(both);
  EXPECT_FALSE(Lumicor::showTrackingView) << "without a screen there is nothing to lay the tracker over";
  EXPECT_TRUE(Lumicor::showTesselLumicor);

  Lumicor::showTesselLumicor = false;
  const auto screen = make<UIViewController>();
  show(screen);
  Lumicor::shared().initialize("key", "ada");
  RunLoop::settle();
  EXPECT_TRUE(Lumicor::showTrackingView);
  ASSERT_TRUE(Lumicor::shared().trackingButton);
  EXPECT_EQ(Lumicor::shared().trackingButton->superview(), window());
  Lumicor::shared().trackingButton->removeFromSuperview();
  EXPECT_FALSE(Lumicor::showTesselLumicor);
}

TEST_F(LumicorInitTaskTest, GivesTheDataToACallerWhoAppliesItAlone) {
  service_.answer("/sdk/init", json(R"({"statusCode":200,"data":{"chatHistory":[],"x":1}})"));
  service_.answer("/sdk/init", json(R"({"statusCode":500,"data":{}})"));
  Lumicor::shared().setChatHistory({{"kept", true, 1}});
  std::vector<JSONValue> given;
  for (int i = 0; i < 2; ++i) {
    LumicorNetworkTask::initialize([&](const JSONValue& data) {
      EXPECT_TRUE(Lumicor::shared().getInitialized());
      given.push_back(data);
    });
  }
  RunLoop::settle();
  EXPECT_THAT(given, ElementsAre(json(R"({"chatHistory":[],"x":1})")));
  EXPECT_EQ(Lumicor::shared().getChatHistory().size(), 1U);
}

}  // namespace lumicor::test
