#include <cmath>
#include <limits>
#include <thread>

#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/ui/TLChatMessageCell.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "tests/lumicor/ui/ChatFixture.h"

namespace lumicor {
namespace {

using test::json;
using testing::ElementsAre;

class ChatScreen : public test::ChatFixture {
 protected:
  void SetUp() override {
    service_.answer("/sdk/steps/get",
                    URLProtocol::Reply::failure(URLError::Code::networkConnectionLost).after(answerTime));
    openChat();
  }
  // A request under way keeps itself alive until it is answered.
  void TearDown() override { pass(answerTime + 1); }

  static constexpr double answerTime = 30;

  void send(const std::string& text) {
    chat()->inputTextField()->setText(text);
    chat()->sendMessage();
    pass(0.5);
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> all;
    for (const TLChatMessage& message : chat()->messages()) all.push_back(message.message);
    return all;
  }

  std::vector<std::string> stored() const {
    std::vector<std::string> all;
    const auto messages = LumicorUserDefaults::loadMessages(LumicorUserDefaults::storedMessagesKey());
    for (const TLChatMessage& message : messages.value_or(std::vector<TLChatMessage>{})) all.push_back(message.message);
    return all;
  }

  Ref<TLChatMessageCell> cell(std::int64_t row) const {
    return as<TLChatMessageCell>(chat()->tableView()->cellForRowAtIndexPath(IndexPath(row, 0)));
  }
};

TEST_F(ChatScreen, SendsWhatWasTypedWithoutTrimmingItAndShowsTheTypingRow) {
  send("");
  EXPECT_TRUE(texts().empty());
  send("   ");
  EXPECT_THAT(texts(), ElementsAre("   ", TLChatMessage::typingMarker));
  EXPECT_THAT(stored(), ElementsAre("   ")) << "the typing row is never stored";
  EXPECT_EQ(chat()->inputTextField()->text().value_or(""), "");
  EXPECT_FALSE(chat()->sendButton()->isEnabled());
  EXPECT_THAT(service_.events(), ElementsAre("MESSAGE_SENT"));
  ASSERT_EQ(service_.bodies("/sdk/steps/get").size(), 1u);
  EXPECT_EQ(*service_.bodies("/sdk/steps/get")[0].find("query"), JSONValue("   "));
}

TEST_F(ChatScreen, IgnoresASecondMessageWhileTheFirstIsUnderWay) {
  send("first");
  send("second");
  EXPECT_THAT(texts(), ElementsAre("first", TLChatMessage::typingMarker));
  EXPECT_EQ(service_.bodies("/sdk/steps/get").size(), 1u);
}

TEST_F(ChatScreen, PutsAnAnswerFromAnyThreadInPlaceOfTheTypingRow) {
  send("hello");
  std::thread([chat = chat()] { chat->addMessage("good day"); }).join();
  pass(0.5);
  EXPECT_THAT(texts(), ElementsAre("hello", "good day"));
  EXPECT_THAT(stored(), ElementsAre("hello", "good day"));
  EXPECT_TRUE(chat()->messages().back().isRemote);
  EXPECT_TRUE(chat()->sendButton()->isEnabled());
  EXPECT_TRUE(chat()->inputTextField()->isFirstResponder());
  EXPECT_EQ(chat()->tableView()->numberOfRowsInSection(0), 2);

  chat()->addMessage("one more");
  pass(0.5);
  EXPECT_THAT(texts(), ElementsAre("hello", "good day", "one more")) << "only a typing row gives way";
}

TEST_F(ChatScreen, StandsTheAssistantLeftAndThePersonRightEachInItsColours) {
  chat()->addMessage("from the assistant");
  pass(0.5);
  send("from the person");
  const auto remote = cell(0);
  const auto local = cell(1);
  ASSERT_TRUE(remote && local);
  const double width = chat()->tableView()->bounds().size.width;
  const auto text = [&](const Ref<TLChatMessageCell>& each) {
    return each->messageLabel()->convertRect(each->messageLabel()->bounds(), each->contentView().get());
  };
  EXPECT_EQ(text(remote).minX(), 32);
  EXPECT_EQ(text(local).maxX(), width - 32);
  EXPECT_EQ(remote->bubbleBackgroundView()->backgroundColor(), UIColorHex("#5f5def"));
  EXPECT_EQ(remote->messageLabel()->textColor(), UIColorHex("#ffffff"));
  EXPECT_EQ(local->bubbleBackgroundView()->backgroundColor(), UIColorHex("#c2c2c2"));
  EXPECT_EQ(local->messageLabel()->textColor(), UIColorHex("#000000"));
  const CGRect bubble = remote->bubbleBackgroundView()->frame();
  EXPECT_EQ(bubble, text(remote).insetBy(-10, -10)) << "ten points of padding around the text";
}

TEST_F(ChatScreen, DrawsTheTypingRowAsDotsAndReusesItsCellForText) {
  send("hello");
  const auto typing = cell(1);
  ASSERT_TRUE(typing);
  EXPECT_TRUE(typing->messageLabel()->isHidden());
  EXPECT_FALSE(typing->typingIndicatorView()->isHidden());
  const auto& dots = typing->typingIndicatorView();
  EXPECT_EQ(dots->bounds().size, (CGSize{52, 12}));
  ASSERT_EQ(dots->dotLayers().size(), 3u);
  const double resting = dots->dotLayers()[0]->position().y;
  // The dots rise by five points in half a second, a fifth of a second after one another.
  const auto made = make<TLTypingChatMessageCell>();
  pass(0.5);
  EXPECT_NEAR(made->dotLayers()[0]->presentationLayer()->position().y, resting - 5, 0.01);
  EXPECT_GT(made->dotLayers()[1]->presentationLayer()->position().y, resting - 5);
  pass(0.2);
  EXPECT_NEAR(made->dotLayers()[1]->presentationLayer()->position().y, resting - 5, 0.01);

  typing->messageLabel()->setText("an answer");
  typing->configure();
  EXPECT_FALSE(typing->messageLabel()->isHidden());
  EXPECT_TRUE(dots->isHidden());
}

TEST_F(ChatScreen, WrapsALongMessageAtTwoHundredAndFiftyPoints) {
  std::string text;
  for (int i = 0; i < 80; ++i) text += "tea leaves ";
  chat()->addMessage(text);
  pass(0.5);
  const auto label = cell(0)->messageLabel();
  EXPECT_LE(label->bounds().size.width, 250);
  EXPECT_GT(label->bounds().size.width, 200);
  EXPECT_GT(label->bounds().size.height, 200);
}

TEST(ChatCell, WithoutALayoutShowsThePersonsBubbleFullyTransparent) {
  const auto cell = make<TLChatMessageCell>(UITableViewCellStyle::standard, TLChatMessageCell::reuseIdentifier);
  cell->messageLabel()->setText("mine");
  cell->configure();
  EXPECT_EQ(cell->bubbleBackgroundView()->backgroundColor()->alpha(), 0);
  EXPECT_EQ(cell->messageLabel()->textColor(), UIColor::white());
  cell->isRemote = true;
  cell->configure();
  EXPECT_EQ(cell->bubbleBackgroundView()->backgroundColor(), UIColorHex("#d3d3d3"));
}

TEST_F(ChatScreen, HidesTheHostsBarsAndGivesThemBackAsTheyWere) {
  EXPECT_TRUE(navigation_->isNavigationBarHidden());
  EXPECT_TRUE(tabs_->tabBar()->isHidden());
  tap(chat()->crossButton());
  pass(1);
  EXPECT_EQ(navigation_->topViewController(), navigation_->viewControllers().front());
  EXPECT_FALSE(navigation_->isNavigationBarHidden());
  EXPECT_FALSE(tabs_->tabBar()->isHidden());

  navigation_->setNavigationBarHidden(true, false);
  openChat();
  chat()->closeWithoutAnimation();
  pass(0.5);
  EXPECT_TRUE(navigation_->isNavigationBarHidden()) << "it was hidden before";
  EXPECT_FALSE(tabs_->tabBar()->isHidden());
}

TEST_F(ChatScreen, ShowsTheHistoryOldestFirst) {
  Lumicor::shared().setChatHistory({{"third", true, 30}, {"first", false, 10}, {"second", true, 20}});
  const auto another = make<TLChatViewController>();
  another->loadViewIfNeeded();
  std::vector<std::string> shown;
  for (const TLChatMessage& message : another->messages()) shown.push_back(message.message);
  EXPECT_THAT(shown, ElementsAre("first", "second", "third"));
}

TEST_F(ChatScreen, KeepsAMessageOfThePersonThatReadsLikeTheTypingRow) {
  Lumicor::shared().setChatHistory({{TLChatMessage::typingMarker, false, 1}});
  TLFloaterManager::shared().show();
  openChat();
  chat()->addMessage("Good day");
  pass(1);
  EXPECT_EQ(chat()->messages().size(), 2u);
}

TEST_F(ChatScreen, KeepsItsOwnOfASharedHistory) {
  Lumicor::shared().setChatHistory({{"hello", false, 10}, {TLChatMessage::typingMarker, true, 20}});
  const auto another = make<TLChatViewController>();
  another->loadViewIfNeeded();
  Lumicor::shared().setChatHistory({{"of somebody else", false, 10}});
  another->addMessage("good day");
  pass(0.5);
  std::vector<std::string> shown;
  for (const TLChatMessage& message : another->messages()) shown.push_back(message.message);
  EXPECT_THAT(shown, ElementsAre("hello", "good day")) << "a typing row gives way also when it is part of the history";
  EXPECT_EQ(another->tableView()->numberOfRowsInSection(0), 2);
  EXPECT_EQ(Lumicor::shared().getChatHistory().size(), 1u);
}

TEST_F(ChatScreen, FollowsTheKeyboardAndOnlyOneThatSaysWhereItIs) {
  const double resting = chat()->inputContainerView()->frame().minY();
  chat()->scrollToBottom(true);  // nothing to scroll to yet
  NotificationCenter::defaultCenter().post(UIKeyboardWillShowNotification);
  pass(0.5);
  EXPECT_EQ(chat()->inputContainerView()->frame().minY(), resting);
  for (const double height : {std::numeric_limits<double>::infinity(), std::nan("")}) {
    NotificationCenter::defaultCenter().post(UIKeyboardWillShowNotification, nullptr,
                                             {{UIKeyboardFrameEndUserInfoKey, CGRect{0, 544, 390, height}}});
    pass(0.5);
    EXPECT_EQ(chat()->inputContainerView()->frame().minY(), resting) << "no height at all";
  }

  NotificationCenter::defaultCenter().post(UIKeyboardWillShowNotification, nullptr,
                                           {{UIKeyboardFrameEndUserInfoKey, CGRect{0, 544, 390, 300}}});
  pass(0.5);
  EXPECT_EQ(chat()->inputContainerView()->frame().minY(), resting - 300);
  NotificationCenter::defaultCenter().post(UIKeyboardWillHideNotification, nullptr,
                                           {{UIKeyboardFrameEndUserInfoKey, CGRect{0, 844, 390, 300}}});
  pass(0.5);
  EXPECT_EQ(chat()->inputContainerView()->frame().minY(), resting);
}

TEST_F(ChatScreen, TypingAndSendingWorkByTouchAndKeys) {
  tap(chat()->inputTextField());
  EXPECT_TRUE(UIKeyboard::shared().isVisible());
  driver_.type("tea");
  pass(3);
  EXPECT_EQ(chat()->inputTextField()->text(), "tea");
  tap(chat()->sendButton());
  EXPECT_THAT(texts(), ElementsAre("tea", TLChatMessage::typingMarker));
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
}

}  // namespace
}  // namespace lumicor
