// What a person notices: where things rest, how they move, what a finger meets.

#include "lumicor/ui/TLChatMessageCell.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/application/UIKeyboardWindow.h"
#include "platform/uikit/device/UIAccessibility.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "tests/lumicor/ui/ChatFixture.h"

namespace lumicor {
namespace {

class ChatDetails : public test::ChatFixture {
 protected:
  void SetUp() override {
    service_.answer("/sdk/steps/get", URLProtocol::Reply::failure(URLError::Code::networkConnectionLost).after(30));
  }
  // A request under way keeps itself alive until it is answered.
  void TearDown() override { pass(31); }

  /// A chat of so many messages of one to four lines, opened by a tap on the button.
  void openWith(int messages) {
    std::vector<TLChatMessage> history;
    std::string text;
    for (int i = 0; i < messages; ++i) {
      text = i % 4 == 0 ? "A message" : text + " that grows longer than the one before it";
      history.push_back({text, i % 2 == 0, i});
    }
    Lumicor::shared().setChatHistory(history);
    TLFloaterManager::shared().show();
    button()->setShow(true);
    pass(1);
    tap(button());
    pass(1);
  }
  double roomBelowTheList() const {
    const auto& list = chat()->tableView();
    return list->contentSize().height - list->contentOffset().y - list->bounds().size.height;
  }
  Ref<TLChatMessageCell> cell(std::int64_t row) const {
    return as<TLChatMessageCell>(chat()->tableView()->cellForRowAtIndexPath(IndexPath(row, 0)));
  }
  static CGRect shown(const Ref<UIView>& view) { return view->layer()->presentationLayer()->frame(); }
};

TEST_F(ChatDetails, ALongChatOpensAtItsEnd) {
  openWith(40);
  EXPECT_NEAR(roomBelowTheList(), 0, 0.5);
  ASSERT_TRUE(cell(39)) << "the last message is on the screen";
}

TEST_F(ChatDetails, TheCrossIsSeenWithoutItsPictureToo) {
  openWith(3);
  const auto darkest = [&] {
    const CGRect cross = chat()->crossButton()->convertRect(chat()->crossButton()->bounds(), nullptr);
    const auto picture = renderLayer(*window()->layer(), {390, 844}, 1);
    std::uint32_t least = 255;
    for (int y = static_cast<int>(cross.minY()); y < cross.maxY(); ++y) {
      for (int x = static_cast<int>(cross.minX()); x < cross.maxX(); ++x) {
        least = std::min(least, picture->cgImage()->pixel(x, y) & 255);
      }
    }
    return least;
  };
  chat()->crossButton()->setImage(nullptr, UIControlState::normal);
  chat()->crossButton()->setNeedsDisplay();
  pass(0.1);
  EXPECT_EQ(chat()->crossButton()->currentImage(), nullptr);
  EXPECT_LT(darkest(), 60u);
  chat()->crossButton()->setImage(UIImage::imageWithBitmap(Bitmap(60, 60)), UIControlState::normal);
  chat()->crossButton()->setNeedsDisplay();
  pass(0.1);
  EXPECT_GT(darkest(), 200u) << "the picture alone is shown";
}

TEST_F(ChatDetails, ANewBubbleDoesNotComeFlyingIn) {
  openWith(3);
  tap(chat()->inputTextField());
  pass(1);
  chat()->inputTextField()->setText("short");
  chat()->sendMessage();
  for (int i = 0; i < 4; ++i) {
    pass(0.06);
    SCOPED_TRACE(i);
    const auto sent = cell(3);
    ASSERT_TRUE(sent);
    EXPECT_EQ(shown(sent->bubbleBackgroundView()), sent->bubbleBackgroundView()->frame());
    EXPECT_EQ(shown(sent->messageLabel()), sent->messageLabel()->frame());
    EXPECT_EQ(shown(sent->contentView()).size, sent->contentView()->bounds().size);
  }
}

TEST_F(ChatDetails, TheInputBarKeepsAboveTheKeyboardAllTheWay) {
  openWith(20);
  chat()->inputTextField()->becomeFirstResponder();
  Ref<UIView> panel;
  for (const Ref<UIWindow>& window : UIApplication::shared().windows()) {
    if (as<UIKeyboardWindow>(window)) panel = window->subviews().front();
  }
  ASSERT_TRUE(panel);
  for (double seconds = 0; seconds < 0.3; seconds += 0.02) {
    EXPECT_LE(shown(chat()->inputContainerView()).maxY(), shown(panel).minY() + 0.5) << seconds;
    pass(0.02);
  }
  pass(0.5);
  EXPECT_NEAR(roomBelowTheList(), 0, 0.5) << "the list follows";
}

TEST_F(ChatDetails, ReturnSends) {
  openWith(1);
  tap(chat()->inputTextField());
  driver_.type("tea\n");
  pass(2);
  ASSERT_EQ(chat()->messages().size(), 3u);
  EXPECT_EQ(chat()->messages()[1].message, "tea");
}

TEST_F(ChatDetails, TheCrossTakesAFingerBesideIt) {
  openWith(1);
  const CGRect cross = chat()->crossButton()->frame();
  tap({cross.midX(), cross.minY() - 6});
  pass(1);
  EXPECT_NE(navigation_->topViewController(), chat());
}

TEST_F(ChatDetails, ClosingTakesTheKeyboardAlongAndMovesNothingElse) {
  openWith(20);
  tap(chat()->inputTextField());
  pass(1);
  const double cross = chat()->crossButton()->frame().minY();
  chat()->dismissChatView();
  pass(0.1);
  EXPECT_FALSE(UIKeyboard::shared().isVisible());
  EXPECT_EQ(chat()->crossButton()->frame().minY(), cross) << "the bar that comes back does not push";
  EXPECT_EQ(chat()->inputContainerView()->frame().maxY(), 810) << "nor does the tab bar";
  pass(1);
  tap(button());
  pass(1);
  EXPECT_EQ(chat()->crossButton()->frame().minY(), cross);
  EXPECT_EQ(chat()->inputContainerView()->frame().maxY(), 810);
}

TEST_F(ChatDetails, ClosingDoesNotPushTheMessages) {
  openWith(3);
  const auto place = [&] { return cell(0)->convertPoint({0, 0}, nullptr); };
  const CGPoint before = place();
  chat()->dismissChatView();
  for (int i = 0; i < 5; ++i) {
    pass(0.05);
    EXPECT_EQ(place(), before) << "the host's bar that comes back lies over the list's upper edge";
  }
}

TEST_F(ChatDetails, ABubbleIsAsWideAsItsLongestLine) {
  Lumicor::shared().setChatHistory({{"Good day! Tell me what you would like today.", true, 0},
                                    {"incomprehensibilities uncharacteristically", false, 1}});
  TLFloaterManager::shared().show();
  openChat();
  for (const std::int64_t row : {0, 1}) {
    const auto label = cell(row)->messageLabel();
    EXPECT_GT(label->frame().height(), 1.5 * label->font().lineHeight()) << "two lines";
    EXPECT_LT(label->frame().width(), 245) << row;
    EXPECT_EQ(label->frame().width(), label->sizeThatFits({250, 0}).width) << row;
  }
}

TEST_F(ChatDetails, WhoWantsNoMotionSeesFades) {
  UIAccessibility::setReduceMotionEnabled(true);
  openWith(3);
  EXPECT_EQ(navigation_->topViewController(), chat());
  chat()->dismissChatView();
  pass(0.15);
  EXPECT_EQ(chat()->view()->layer()->mask(), nullptr);
  EXPECT_NEAR(chat()->view()->layer()->presentationLayer()->opacity(), 0.5, 0.2);
  pass(1);
  EXPECT_NE(navigation_->topViewController(), chat());
  EXPECT_EQ(chat()->view()->layer()->presentationLayer()->opacity(), 1) << "it shows again next time";
  UIAccessibility::setReduceMotionEnabled(false);
}

TEST_F(ChatDetails, TheTypingBubbleFitsItsDots) {
  openWith(1);
  chat()->inputTextField()->setText("hello");
  chat()->sendMessage();
  pass(0.5);
  const CGRect typing = cell(2)->bubbleBackgroundView()->frame();
  EXPECT_EQ(typing.width(), 52 + 2 * 16);
  EXPECT_EQ(typing.height(), cell(1)->bubbleBackgroundView()->frame().height()) << "as high as one line";
}

TEST_F(ChatDetails, ASendButtonThatCannotBePressedLooksSo) {
  openWith(1);
  const auto enabled = chat()->sendButton()->backgroundColor();
  chat()->setInputEnabled(false);
  EXPECT_NE(chat()->sendButton()->backgroundColor(), enabled);
  EXPECT_EQ(chat()->sendButton()->currentTitleColor(), UIColor::gray());
  chat()->setInputEnabled(true);
  EXPECT_EQ(chat()->sendButton()->backgroundColor(), enabled);
  EXPECT_EQ(chat()->sendButton()->currentTitleColor(), UIColorHex("#ffffff"));
}

TEST_F(ChatDetails, ALineShowsWhereMessagesSlideUnderTheTitle) {
  openWith(20);
  const auto line = [&] {
    for (const Ref<UIView>& view : chat()->view()->subviews()) {
      if (view->bounds().size.height == 0.5) return view->alpha();
    }
    return -1.0;
  };
  EXPECT_EQ(line(), 1);
  chat()->tableView()->setContentOffset({0, 0}, false);
  EXPECT_EQ(line(), 0);
}

}  // namespace
}  // namespace lumicor
