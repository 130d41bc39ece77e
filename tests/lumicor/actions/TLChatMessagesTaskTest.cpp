#include <gmock/gmock.h>

#include "lumicor/actions/TLChatMessagesTask.h"
#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/ui/TLChatViewController.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controls/UIButton.h"
#include "tests/lumicor/actions/StepTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const fallback = "Sorry, I am not able to perform this task, I am still learning!";

/// A chat screen that only notes what it is told.
struct NotingChat : Object<NotingChat, TLChatViewController> {
  std::vector<std::string> said;
  int closed = 0;
  void addMessage(const std::string& text) override { said.push_back(text); }
  void closeWithoutAnimation() override { ++closed; }
  void viewDidLoad() override {}
  void viewWillAppear(bool) override {}
};

class TLChatMessagesTaskTest : public StepTest {
 protected:
  TLChatMessagesTaskTest() {
    TLFloaterManager::shared().setChatViewController(chat_);
    const auto button = add<UIButton>("pay");
    button->setTitle("Pay", UIControlState::normal);
    show(navigation_);
  }
  ~TLChatMessagesTaskTest() override { TLFloaterManager::shared().setChatViewController(nullptr); }

  void handle(std::optional<TLStepsAnswer> answer) {
    TLChatMessagesTask::handleResponse(answer);
    RunLoop::settle();
  }
  static TLStepsAnswer steps(std::vector<TLAction> actions, std::optional<JSONValue> open = JSONValue(1)) {
    return {std::move(actions), std::move(open), JSONValue("task 7")};
  }
  bool chatIsOpen() const { return navigation_->topViewController() == chat_; }

  StubService service_;
  Ref<NotingChat> chat_ = make<NotingChat>();
  Ref<UINavigationController> navigation_ = make<UINavigationController>(screen_);
};
using TLChatMessagesTaskDeathTest = TLChatMessagesTaskTest;

TEST_F(TLChatMessagesTaskTest, AsksTheServiceAndSaysWhatItAnswers) {
  service_.answer("/sdk/steps/get", json(R"({"status_code":200,"data":{"isAction":0,"answer":"Hello"}})"));
  TLChatMessagesTask::sendRequest("hi");
  RunLoop::settle();
  EXPECT_EQ(*service_.bodies("/sdk/steps/get").at(0).find("query")->asString(), "hi");
  EXPECT_THAT(chat_->said, ElementsAre("Hello"));
  EXPECT_THAT(service_.events(), ElementsAre("NON_ACTION_RESPONSE"));
}

TEST_F(TLChatMessagesTaskTest, ApologisesForAFailedRequestWithoutAnEvent) {
  handle(std::nullopt);
  EXPECT_THAT(chat_->said, ElementsAre(fallback));
  EXPECT_THAT(service_.events(), IsEmpty());
}

TEST_F(TLChatMessagesTaskTest, LogsATextAnswerAlsoWithoutAChatScreen) {
  TLFloaterManager::shared().setChatViewController(nullptr);
  handle(TLStepsAnswer{JSONValue("Hello"), {}, {}});
  handle(TLStepsAnswer{});
  handle(std::nullopt);
  EXPECT_THAT(service_.events(), ElementsAre("NON_ACTION_RESPONSE", "NON_ACTION_RESPONSE"));
  EXPECT_EQ(service_.bodies("/sdk/event/log")[0], json(R"({"eventName":"NON_ACTION_RESPONSE","taskId":""})"));
}

TEST_F(TLChatMessagesTaskTest, CarriesStepsOutReopensTheChatAndTellsTheOutcome) {
  TLChatMessagesTask::handleResponse(steps({step("pay"), step("last")}));
  EXPECT_EQ(chat_->closed, 0) << "not before this turn of the loop is over";
  RunLoop::settle();
  EXPECT_EQ(chat_->closed, 1);
  EXPECT_THAT(service_.events(), ElementsAre("ACTION_RESPONSE"));
  // 1.0 s before the run, 1.5 s before its step, 2.0 s after it, 1.0 s before the chat opens, 2.0 s before it speaks.
  RunLoop::advance(5.4);
  EXPECT_FALSE(chatIsOpen());
  RunLoop::advance(0.2);
  EXPECT_TRUE(chatIsOpen());
  RunLoop::advance(1.8);
  EXPECT_THAT(chat_->said, IsEmpty());
  RunLoop::advance(0.2);
  EXPECT_THAT(chat_->said, ElementsAre("Done Pay"));
  EXPECT_THAT(service_.bodies("/sdk/event/log"),
              ElementsAre(json(R"({"eventName":"ACTION_RESPONSE","taskId":""})"),
                          json(R"({"eventName":"TASK_SUCCESS","taskId":"task 7"})")));
}

TEST_F(TLChatMessagesTaskTest, ReopensTheChatWithAnAnimationThatNoTouchDisturbs) {
  struct Watched : Object<Watched, UINavigationController> {
    bool animated = false;
    bool ignored = false;
    void pushViewController(const Ref<UIViewController>& controller, bool isAnimated) override {
      animated = isAnimated;
      ignored = UIApplication::shared().isIgnoringInteractionEvents();
      Super::pushViewController(controller, isAnimated);
    }
  };
  const auto watched = make<Watched>(screen_);
  show(watched);
  handle(steps({step("pay"), step("last")}));
  RunLoop::advance(60);
  EXPECT_EQ(watched->topViewController(), chat_);
  EXPECT_TRUE(watched->animated);
  EXPECT_TRUE(watched->ignored);
  EXPECT_FALSE(UIApplication::shared().isIgnoringInteractionEvents());
}

TEST_F(TLChatMessagesTaskTest, CarriesStepsOutAlsoWithoutAChatScreen) {
  TLFloaterManager::shared().setChatViewController(nullptr);
  handle(steps({step("pay"), step("last")}, std::nullopt));  // whether the chat is to open is not asked then
  RunLoop::advance(60);
  EXPECT_THAT(service_.events(), ElementsAre("ACTION_RESPONSE", "TASK_SUCCESS"));
}

TEST_F(TLChatMessagesTaskTest, KeepsTheBlankAfterDoneWhenThereIsNothingToAdd) {
  handle(steps({step("", "TYPE_SYSTEM_BACK"), step("last")}, JSONValue(0)));
  RunLoop::advance(60);
  EXPECT_FALSE(chatIsOpen());
  EXPECT_THAT(chat_->said, ElementsAre("Done "));
}

TEST_F(TLChatMessagesTaskTest, TellsAFailedRun) {
  handle(steps({step("nowhere"), step("last")}, JSONValue(2)));
  RunLoop::advance(60);
  EXPECT_TRUE(chatIsOpen());
  EXPECT_THAT(chat_->said, ElementsAre(fallback));
  EXPECT_THAT(service_.bodies("/sdk/event/log"),
              ElementsAre(json(R"({"eventName":"ACTION_RESPONSE","taskId":""})"),
                          json(R"({"eventName":"TASK_FAILURE","taskId":"task 7"})")));
}

TEST_F(TLChatMessagesTaskTest, LeavesAChatThatWasOpenedByHandMeanwhileWhereItIs) {
  handle(steps({step("", "TYPE_TEXT"), step("last")}));
  navigation_->pushViewController(chat_, false);
  RunLoop::advance(60);
  EXPECT_EQ(navigation_->viewControllers().size(), 2U);
}

TEST_F(TLChatMessagesTaskTest, SaysNothingMoreAfterAListThatIsTooShort) {
  handle(steps({step("pay")}, std::nullopt));
  RunLoop::advance(60);
  EXPECT_EQ(chat_->closed, 1);
  EXPECT_THAT(chat_->said, IsEmpty());
  EXPECT_THAT(service_.events(), ElementsAre("ACTION_RESPONSE"));
}

TEST_F(TLChatMessagesTaskTest, RunsStepsByIndexAndCutsScrollTargetsAtTheirFirstDash) {
  const auto numbered = [](std::int64_t index, const char* name) {
    TLAction action = step(name);
    action.index = index;
    return action;
  };
  std::vector<std::string> pressed;
  struct Press : Object<Press, NSObject> {
    std::vector<std::string>* pressed = nullptr;
    void press(Ref<NSObject> sender) { pressed->push_back(*as<UIButton>(sender)->accessibilityIdentifier()); }
    static void exportMethods(MethodTable<Press>& table) { table.add<&Press::press>("press:"); }
  };
  const auto press = make<Press>();
  press->pressed = &pressed;
  for (const char* name : {"one", "two", "three", "also one"}) {
    add<UIButton>(name)->addTarget(press, sel("press:"), UIControlEvents::touchUpInside);
  }
  const auto feed = add<UIScrollView>("home-feed", CGRect{0, 0, 100, 100});
  const auto plain = add<UIScrollView>("plain", CGRect{0, 0, 100, 100});
  TLAction second = numbered(2, "two");
  second.scrollDetails = {{"screen-home-feed", {0, 40}}, {"plain", {0, 50}}};
  handle(steps({second, numbered(9, "last"), numbered(1, "one"), numbered(3, "three"), numbered(1, "also one")},
               JSONValue(0)));
  RunLoop::advance(60);
  EXPECT_THAT(pressed, ElementsAre("one", "also one", "two", "three"));
  EXPECT_EQ(feed->contentOffset(), (CGPoint{0, 40}));
  EXPECT_EQ(plain->contentOffset(), (CGPoint{0, 50}));
}

TEST_F(TLChatMessagesTaskDeathTest, StopsAtAnswersThatAreNotWhole) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto run = [this](TLStepsAnswer answer) {
    handle(std::move(answer));
    RunLoop::advance(60);
  };
  EXPECT_DEATH(run(TLStepsAnswer{}), "fatal error: .*\"answer\"");
  EXPECT_DEATH(run(TLStepsAnswer{JSONValue(7), {}, {}}), "fatal error: .*\"answer\"");
  const std::vector<TLAction> list = {step("pay"), step("last")};
  EXPECT_DEATH(run(steps(list, std::nullopt)), "fatal error: .*\"shouldOpenChatWindow\"");
  EXPECT_DEATH(run(steps(list, JSONValue(true))), "fatal error: .*\"shouldOpenChatWindow\"");
  EXPECT_DEATH(run(TLStepsAnswer{list, JSONValue(1), {}}), "fatal error: .*\"taskId\"");
  EXPECT_DEATH(run(TLStepsAnswer{list, JSONValue(1), JSONValue(7)}), "fatal error: .*\"taskId\"");
}

// ---- History

TEST_F(TLChatMessagesTaskTest, StoresEveryMessageButTheTypingRow) {
  TLChatMessagesTask::saveMessage({"hi", false, 1});
  TLChatMessagesTask::saveMessage({"TesselLumicorTyping", true, 2});
  TLChatMessagesTask::saveMessage({"Hello", true, 3});
  EXPECT_EQ(LumicorUserDefaults::loadMessages("storedMessages"),
            (std::vector<TLChatMessage>{{"hi", false, 1}, {"Hello", true, 3}}));
}

TEST_F(TLChatMessagesTaskTest, UploadsFromTheThirtiethMessageUntilTheServiceTakesThem) {
  service_.answer("/sdk/messages/upload", json(R"({"statusCode":500})"));
  service_.answer("/sdk/messages/upload", json(R"({"statusCode":200})"));
  for (int i = 1; i <= 30; ++i) {
    EXPECT_THAT(service_.bodies("/sdk/messages/upload"), IsEmpty());
    TLChatMessagesTask::saveMessage({"message", false, i});
    RunLoop::settle();
  }
  EXPECT_EQ(service_.bodies("/sdk/messages/upload").size(), 1U);
  TLChatMessagesTask::saveMessage({"TesselLumicorTyping", true, 31});
  RunLoop::settle();
  EXPECT_EQ(service_.bodies("/sdk/messages/upload").size(), 1U) << "the typing row starts no upload";
  TLChatMessagesTask::saveMessage({"message", true, 32});
  RunLoop::settle();
  const auto bodies = service_.bodies("/sdk/messages/upload");
  ASSERT_EQ(bodies.size(), 2U);
  EXPECT_EQ(bodies[1].find("chatHistory")->asArray()->size(), 31U);
  EXPECT_EQ(LumicorUserDefaults::loadMessages("storedMessages"), std::vector<TLChatMessage>{});
}

}  // namespace lumicor::test
