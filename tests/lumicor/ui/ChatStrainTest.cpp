// The chat under strain: texts of any size and kind, a thousand visits, and what the host does in the middle of them.

#include <malloc.h>
#include <thread>

#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/ui/TLChatMessageCell.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/LayerRenderer.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/device/UIDevice.h"
#include "tests/lumicor/ui/ChatFixture.h"

namespace lumicor {
namespace {

using namespace std::string_literals;

std::string repeated(std::string_view part, std::size_t times) {
  std::string text;
  text.reserve(part.size() * times);
  while (times-- > 0) text += part;
  return text;
}

/// Bytes that 900 rounds may leave behind: less than any object of each.
constexpr std::size_t mostGrowth = 40'000;

class ChatStrain : public test::ChatFixture {
 protected:
  void SetUp() override {
    service_.answer("/sdk/steps/get", URLProtocol::Reply::failure(URLError::networkConnectionLost).after(30));
  }
  // A request under way keeps itself alive until it is answered.
  void TearDown() override { pass(31); }

  void open() {
    tap(button());
    pass(1);
  }
  void close() {
    tap(chat()->crossButton());
    pass(1);
  }
  bool isOpen() const { return navigation_->topViewController() == chat(); }
  static std::size_t viewsIn(const Ref<UIView>& view) {
    std::size_t sum = 1;
    for (const Ref<UIView>& each : view->subviews()) sum += viewsIn(each);
    return sum;
  }
  static std::size_t layersIn(const Ref<CALayer>& layer) {
    std::size_t sum = layer->mask() ? 2 : 1;
    for (const Ref<CALayer>& each : layer->sublayers()) sum += layersIn(each);
    return sum;
  }
};

TEST_F(ChatStrain, TakesTextsOfAnySizeAndKind) {
  const std::pair<const char*, std::string> rows[] = {
      {"a million letters without a break", std::string(1 << 20, 'a')},
      {"a million letters in words", repeated("sencha and gyokuro ", (1 << 20) / 19)},
      {"ten thousand line breaks", repeated("\n", 10000)},
      {"ten thousand short lines", repeated("tea\r\n", 10000)},
      {"control characters", "a\0b\1\2\3\x1b[31mred\x7f\t\v\f\b"s},
      {"marks that turn the writing around", repeated("\u202e\u2067abc\u202c", 200)},
      {"letters under a thousand accents", "e" + repeated("\u0301", 1000)},
      {"half pairs of surrogates", "before \xED\xA0\x80 between \xED\xB0\x80 after"},
      {"bytes that are no text", "caf\xE9 \xFF\xFE \xC0\x80 \xF5\x80\x80\x80 \xE2\x82"},
      {"a family of emoji, often", repeated("\U0001F468\u200D\U0001F469\u200D\U0001F467 ", 500)},
  };
  open();
  std::size_t expected = 0;
  for (const auto& [what, text] : rows) {
    SCOPED_TRACE(what);
    chat()->addMessage(text);
    pass(1);
    renderLayer(*window()->layer(), {390, 844}, 1);
    ASSERT_EQ(chat()->messages().size(), ++expected);
    EXPECT_EQ(chat()->messages().back().message, text) << "kept as it came";
    const auto& list = chat()->tableView();
    const double room = list->contentSize().height - list->bounds().size.height;
    EXPECT_NEAR(list->contentOffset().y, std::max(0.0, room), 1) << "at its end";
    const auto cell =
        as<TLChatMessageCell>(list->cellForRowAtIndexPath(IndexPath(static_cast<std::int64_t>(expected) - 1, 0)));
    ASSERT_TRUE(cell);
    EXPECT_LE(cell->messageLabel()->bounds().size.width, 250.5);
  }
  close();
  EXPECT_FALSE(isOpen());
  const auto stored = LumicorUserDefaults::loadMessages(LumicorUserDefaults::storedMessagesKey());
  ASSERT_TRUE(stored);
  EXPECT_EQ(stored->size(), expected);
}

/// Answers everything and remembers nothing, so that memory tells of the assistant alone.
URLProtocol::Registration forgetfulService() {
  return URLProtocol::registerHandler(
      [](const URLRequest&) { return URLProtocol::Reply::json(200, test::json(R"({"statusCode":200})")); });
}

TEST_F(ChatStrain, TheSameChatOpensAndClosesAThousandTimesWithoutGrowing) {
  const auto service = forgetfulService();
  for (int i = 0; i < 20; ++i) chat()->addMessage("Message " + std::to_string(i));
  pass(1);
  const auto visits = [&](int count) {
    for (int i = 0; i < count; ++i) {
      open();
      ASSERT_TRUE(isOpen());
      close();
      ASSERT_FALSE(isOpen());
    }
  };
  visits(100);
  const std::size_t views = viewsIn(window()), layers = layersIn(window()->layer());
  const std::size_t chatViews = viewsIn(chat()->view());
  const auto bytes = mallinfo2().uordblks;
  visits(900);
  EXPECT_EQ(viewsIn(window()), views);
  EXPECT_EQ(layersIn(window()->layer()), layers);
  EXPECT_EQ(viewsIn(chat()->view()), chatViews);
  EXPECT_LT(mallinfo2().uordblks, bytes + mostGrowth);
}

TEST_F(ChatStrain, AThousandStartsLeaveOneButtonAndOneChat) {
  const auto service = forgetfulService();
  const auto start = [&](int count) {
    for (int i = 0; i < count; ++i) {
      TLFloaterManager::shared().show();
      button()->setShow(true);
      if (i % 3 == 0) open();
      pass(0.1);
      if (isOpen()) close();
    }
  };
  start(100);
  const std::size_t views = viewsIn(window()), layers = layersIn(window()->layer());
  const auto bytes = mallinfo2().uordblks;
  start(900);
  EXPECT_EQ(viewsIn(window()), views);
  EXPECT_EQ(layersIn(window()->layer()), layers);
  EXPECT_LT(mallinfo2().uordblks, bytes + mostGrowth);
}

TEST_F(ChatStrain, ATransitionEndsWhateverHappensInItsMiddle) {
  using Act = std::function<void()>;
  const auto oldWindow = make<UIWindow>(CGRect{0, 0, 390, 844});
  const std::pair<const char*, Act> rows[] = {
      {"nothing", [] {}},
      {"the button is taken off its window", [&] { button()->removeFromSuperview(); }},
      {"the button is hidden", [&] { button()->setShow(false); }},
      {"a second start",
       [&] {
         TLFloaterManager::shared().show();
         button()->setShow(true);
       }},
      {"the root is replaced and comes back",
       [&] {
         show(make<test::PlainScreen>());
         pass(0.05);
         show(tabs_);
       }},
      {"the root is replaced, and comes back late",
       [&] {
         show(make<test::PlainScreen>());
         pass(1);
         show(tabs_);
       }},
      {"another window comes to the front",
       [&] {
         oldWindow->makeKeyAndVisible();
         pass(1);
         oldWindow->setHidden(true);
         window()->makeKeyAndVisible();
       }},
      {"the window is hidden for a while",
       [&] {
         window()->setHidden(true);
         pass(1);
         window()->makeKeyAndVisible();
       }},
      {"the device is turned",
       [&] {
         window()->setFrame({0, 0, 844, 390});
         pass(0.05);
         window()->setFrame({0, 0, 390, 844});
       }},
      {"the host pops to its first screen", [&] { navigation_->popToRootViewControllerAnimated(false); }},
      {"the host pushes a screen", [&] { navigation_->pushViewController(make<test::PlainScreen>(), true); }},
      {"another tab is chosen and left",
       [&] {
         tabs_->setSelectedIndex(1);
         pass(0.05);
         tabs_->setSelectedIndex(0);
       }},
      {"the cross is pressed", [&] { chat()->dismissChatView(); }},
      {"an answer comes", [&] { chat()->addMessage("Good day"); }},
  };
  for (const bool opening : {true, false}) {
    for (const auto& [what, act] : rows) {
      SCOPED_TRACE(std::string(opening ? "opening: " : "closing: ") + what);
      if (!opening) open();
      opening ? button()->tapGesture() : chat()->dismissChatView();
      pass(0.15);
      act();
      pass(2);
      EXPECT_FALSE(UIApplication::shared().isIgnoringInteractionEvents());
      EXPECT_EQ(navigation_->topViewController()->view()->layer()->mask(), nullptr);
      EXPECT_TRUE(navigation_->topViewController()->view()->isDescendantOfView(window().get()));
      // From here everything works as ever.
      navigation_->popToRootViewControllerAnimated(false);
      pass(1);
      EXPECT_FALSE(navigation_->isNavigationBarHidden());
      EXPECT_FALSE(tabs_->tabBar()->isHidden());
      EXPECT_EQ(navigation_->viewControllers().size(), 1u);
      button()->setShow(true);
      window()->addSubview(button());
      pass(1);
      open();
      ASSERT_TRUE(isOpen());
      EXPECT_EQ(chat()->view()->frame(), (CGRect{0, 0, 390, 844}));
      close();
      ASSERT_FALSE(isOpen());
      EXPECT_EQ(button()->superview(), window());
      EXPECT_EQ(button()->alpha(), 1);
    }
  }
}

TEST_F(ChatStrain, ACrossPressedTwiceTakesTheChatAlone) {
  const auto screen = make<test::PlainScreen>();
  navigation_->pushViewController(screen, false);
  for (const double moment : {0.1, 1.0}) {
    button()->tapGesture();
    pass(moment);
    chat()->dismissChatView();
    pass(0.1);
    chat()->dismissChatView();
    pass(1);
    EXPECT_EQ(navigation_->topViewController(), screen);
  }
}

TEST_F(ChatStrain, ASecondStartClosesTheChatOfTheFirst) {
  for (const bool covered : {false, true}) {
    SCOPED_TRACE(covered ? "under a screen of the host" : "on top");
    open();
    const auto first = chat();
    first->inputTextField()->setText("tea");
    first->sendMessage();
    pass(1);
    if (covered) navigation_->pushViewController(make<test::PlainScreen>(), false);
    TLFloaterManager::shared().show();
    button()->setShow(true);
    pass(1);
    EXPECT_EQ(first->parentViewController(), nullptr);
    EXPECT_EQ(navigation_->viewControllers().size(), covered ? 2u : 1u);
    EXPECT_FALSE(navigation_->isNavigationBarHidden());
    EXPECT_FALSE(tabs_->tabBar()->isHidden());
    EXPECT_EQ(button()->superview(), window());
    open();
    ASSERT_TRUE(isOpen());
    pass(31);
    ASSERT_EQ(chat()->messages().size(), 1u) << "the answer to what was asked before";
    EXPECT_TRUE(chat()->sendButton()->isEnabled());
    close();
    EXPECT_FALSE(navigation_->isNavigationBarHidden());
    EXPECT_FALSE(tabs_->tabBar()->isHidden());
  }
}

TEST_F(ChatStrain, AnswersFromManyThreadsAllComeOnce) {
  open();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([chat = chat(), thread] {
      for (int i = 0; i < 25; ++i) chat->addMessage(std::to_string(thread) + "/" + std::to_string(i));
    });
  }
  for (std::thread& thread : threads) thread.join();
  pass(2);
  ASSERT_EQ(chat()->messages().size(), 200u);
  EXPECT_EQ(chat()->tableView()->numberOfRowsInSection(0), 200);
  // Those of one thread come in its order.
  std::map<std::string, int> next;
  for (const TLChatMessage& message : chat()->messages()) {
    const std::size_t slash = message.message.find('/');
    EXPECT_EQ(message.message.substr(slash + 1), std::to_string(next[message.message.substr(0, slash)]++));
  }
}

}  // namespace
}  // namespace lumicor
