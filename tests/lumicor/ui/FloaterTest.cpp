#include <cmath>

#include "lumicor/ui/LumicorLoaderView.h"
#include "lumicor/ui/LumicorToast.h"
#include "lumicor/ui/TLBottomCloseView.h"
#include "platform/animation/CALayer.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/controllers/UIAlertController.h"
#include "platform/uikit/views/UIImageView.h"
#include "tests/lumicor/ui/ChatFixture.h"

namespace lumicor {
namespace {

using testing::ElementsAre;

class Floater : public test::ChatFixture {
 protected:
  bool chatIsOpen() const { return navigation_->topViewController() == chat(); }
  CGPoint centerOfButton() const { return button()->center(); }
  void drag(CGPoint to) {
    driver_.drag({centerOfButton(), to}, 0.5);
    pass(2);
  }
};

TEST_F(Floater, StandsOverTheWindowAsARoundButton) {
  EXPECT_EQ(button()->superview(), window());
  EXPECT_EQ(button()->frame(), (CGRect{320, 253, 60, 60}));
  EXPECT_EQ(button()->layer()->cornerRadius(), 30);
  EXPECT_EQ(button()->alpha(), 1);
  ASSERT_EQ(button()->subviews().size(), 1u);
  EXPECT_EQ(button()->subviews()[0]->frame(), (CGRect{15, 15, 30, 30}));
}

TEST_F(Floater, StaysReachableAboveWhateverTheHostPresents) {
  using Style = UIModalPresentationStyle;
  const auto sheet = make<test::PlainScreen>();
  sheet->setModalPresentationStyle(Style::pageSheet);
  const auto fullScreen = make<test::PlainScreen>();
  const Ref<UIViewController> alert = make<UIAlertController>("Remove tea?", "It leaves your cart.");
  for (const Ref<UIViewController>& modal : {Ref<UIViewController>(sheet), Ref<UIViewController>(fullScreen), alert}) {
    SCOPED_TRACE(modal->isa().name());
    tabs_->presentViewController(modal, true);
    pass(1);
    EXPECT_EQ(window()->hitTest(centerOfButton(), nullptr), button());
    drag({100, 400});
    EXPECT_EQ(button()->frame().minX(), 10) << "it follows the finger";
    drag({300, 400});
    button()->setShow(false);
    pass(1);
    button()->setShow(true);
    pass(1);
    EXPECT_EQ(window()->hitTest(centerOfButton(), nullptr), button());
    tabs_->dismissViewController(false);
    pass(1);
  }
}

TEST_F(Floater, LiesOverItsCloseTargetAndUnderMessagesAndVeils) {
  LumicorToast::show("Task Capture Successful");
  const auto loader = make<LumicorLoaderView>(CGRect{120, 347, 150, 150});
  loader->show();
  TLFloaterManager::shared().show();
  button()->setShow(true);
  window()->addSubview(make<UIView>());  // the host's own
  pass(0.5);
  const std::vector<Ref<UIView>> all = window()->subviews();
  EXPECT_THAT(std::vector<Ref<UIView>>(all.end() - 5, all.end()),
              ElementsAre(TLFloaterManager::shared().bottomCloseView(), button(), LumicorToast::shown().front(),
                          loader->overlayView(), loader));
  loader->dismiss();
}

TEST_F(Floater, FadesInAndOutAndIgnoresTheValueItHas) {
  button()->setShow(true);
  EXPECT_EQ(button()->layer()->presentationLayer()->opacity(), 1) << "nothing fades";
  button()->setShow(false);
  pass(0.15);
  EXPECT_LT(button()->layer()->presentationLayer()->opacity(), 0.9);
  EXPECT_NE(button()->superview(), nullptr);
  pass(0.2);
  EXPECT_EQ(button()->superview(), nullptr);
  button()->setShow(true);
  pass(0.4);
  EXPECT_EQ(button()->superview(), window());
}

TEST_F(Floater, StaysWhenItIsHiddenAndShownAgainQuickly) {
  for (const double meanwhile : {0.0, 0.1, 0.29}) {
    SCOPED_TRACE(meanwhile);
    button()->setShow(false);
    if (meanwhile > 0) pass(meanwhile);
    button()->setShow(true);
    pass(1);
    EXPECT_EQ(button()->superview(), window());
    EXPECT_EQ(button()->alpha(), 1);
    EXPECT_EQ(button()->layer()->presentationLayer()->opacity(), 1);
  }
  button()->setShow(false);
  pass(0.1);
  button()->setShow(true);
  pass(0.1);
  button()->setShow(false);
  pass(1);
  EXPECT_EQ(button()->superview(), nullptr);
}

TEST_F(Floater, OpensTheChatOnATapAndComesBackWhenItCloses) {
  tap(button());
  pass(1);
  EXPECT_TRUE(chatIsOpen());
  EXPECT_THAT(service_.events(), ElementsAre("CHAT_VIEW_OPEN"));
  EXPECT_FALSE(button()->show());
  EXPECT_EQ(button()->superview(), nullptr);
  EXPECT_EQ(chat()->view()->layer()->mask(), nullptr) << "the transition took its mask away";

  tap(chat()->crossButton());
  pass(1);
  EXPECT_FALSE(chatIsOpen());
  EXPECT_EQ(button()->superview(), window());
}

TEST_F(Floater, LeavesTheButtonAloneForOneTransitionWhenAsked) {
  button()->changeStatusInNextTransaction = false;
  tap(button());
  pass(1);
  EXPECT_TRUE(chatIsOpen());
  EXPECT_TRUE(button()->show());
  EXPECT_TRUE(button()->changeStatusInNextTransaction);
}

TEST_F(Floater, LogsTheTapWhenThereIsNoNavigationController) {
  show(make<test::PlainScreen>());
  window()->bringSubviewToFront(button());
  pass(0.5);
  tap(button());
  EXPECT_FALSE(chatIsOpen());
  EXPECT_THAT(service_.events(), ElementsAre("CHAT_VIEW_OPEN"));
}

TEST_F(Floater, GlidesToTheNearerSideWhenItIsReleasedInTheOpen) {
  drag({100, 400});
  EXPECT_EQ(button()->frame().minX(), 10);
  drag({300, 500});
  EXPECT_EQ(button()->frame().minX(), 320);
  EXPECT_TRUE(service_.events().empty()) << "a drag is no tap";
}

TEST_F(Floater, IsDismissedOverTheCloseTargetInTheCorner) {
  const auto& target = TLFloaterManager::shared().bottomCloseView();
  EXPECT_EQ(target->frame().origin, (CGPoint{390, 844})) << "parked outside the screen";
  driver_.drag({centerOfButton(), {350, 800}}, 0.5);
  pass(0.45);
  EXPECT_EQ(target->frame().origin, (CGPoint{230, 684}));
  pass(2);
  EXPECT_TRUE(target->insideBottomSelected);
  EXPECT_FALSE(button()->show());
  EXPECT_EQ(button()->superview(), nullptr);
  EXPECT_EQ(target->frame().origin, (CGPoint{390, 844}));
  EXPECT_THAT(service_.events(), ElementsAre("CHAT_FLOATER_DISMISSED"));
}

TEST_F(Floater, PutsTheCloseTargetAwayAlsoWhenItWasTakenOffTheWindowUnderTheFinger) {
  const auto& target = TLFloaterManager::shared().bottomCloseView();
  TLFloaterManager::shared().floatViewBeginMove(*button(), {});
  pass(1);
  EXPECT_EQ(target->frame().origin, (CGPoint{230, 684}));
  button()->removeFromSuperview();
  button()->touchesEnded({}, nullptr);
  pass(1);
  EXPECT_EQ(target->frame().origin, (CGPoint{390, 844}));
}

TEST_F(Floater, IsThereOnceAfterASecondStart) {
  const auto first = button();
  TLFloaterManager::shared().show();
  button()->setShow(true);
  pass(1);
  EXPECT_NE(button(), first);
  EXPECT_EQ(first->superview(), nullptr);
}

TEST_F(Floater, PutsTheCloseTargetAwayHoweverADragEnds) {
  const auto& target = TLFloaterManager::shared().bottomCloseView();
  const Ref<UITouch> finger = make<UITouch>();
  const auto beginDrag = [&] {
    button()->touchesBegan({finger}, nullptr);
    pass(1);
    EXPECT_EQ(target->frame().origin, (CGPoint{230, 684}));
  };
  beginDrag();
  button()->touchesCancelled({finger}, nullptr);
  EXPECT_EQ(target->frame().origin, (CGPoint{390, 844})) << "cancelled";
  EXPECT_TRUE(button()->show());
  beginDrag();
  button()->removeFromSuperview();
  EXPECT_EQ(target->frame().origin, (CGPoint{390, 844})) << "taken off the window";
  button()->touchesCancelled({finger}, nullptr);
  EXPECT_TRUE(service_.events().empty());
}

TEST_F(Floater, LetsTheTargetShineThroughWhileItIsOverIt) {
  driver_.drag({centerOfButton(), {350, 800}}, 0.5);
  pass(0.5);
  EXPECT_LT(button()->alpha(), 1);
  EXPECT_TRUE(button()->show()) << "not yet let go";
  pass(1);
}

TEST_F(Floater, StaysDismissedWhenAChatThatStepsReopenedCloses) {
  drag({350, 800});
  EXPECT_FALSE(button()->show());
  chat()->reopen(navigation_);
  pass(1);
  tap(chat()->crossButton());
  pass(1);
  EXPECT_FALSE(chatIsOpen());
  EXPECT_FALSE(button()->show());
  TLFloaterManager::shared().show();
  button()->setShow(true);
  EXPECT_TRUE(button()->show()) << "a new one";
}

TEST_F(Floater, OpensAChatThatTheHostHasCovered) {
  tap(button());
  pass(1);
  const auto cover = make<test::PlainScreen>();
  navigation_->pushViewController(cover, false);
  pass(1);
  chat()->closeWithoutAnimation();
  pass(1);
  EXPECT_TRUE(button()->show());
  tap(button());
  pass(1);
  EXPECT_TRUE(chatIsOpen());
  EXPECT_EQ(navigation_->viewControllers().size(), 3u) << "the host's screens are all there";
  EXPECT_THAT(service_.events(), ElementsAre("CHAT_VIEW_OPEN", "CHAT_VIEW_OPEN"));
  tap(chat()->crossButton());
  pass(1);
  EXPECT_EQ(navigation_->topViewController(), cover);
}

TEST_F(Floater, ComesBackHoweverTheHostTakesTheChatAway) {
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"one screen back", [&] { navigation_->popViewControllerAnimated(false); }},
      {"back to the first", [&] { navigation_->popToRootViewControllerAnimated(false); }},
      {"other screens", [&] { navigation_->setViewControllers({make<test::PlainScreen>()}, false); }},
      {"other screens, animated", [&] { navigation_->setViewControllers({make<test::PlainScreen>()}, true); }},
      {"another root", [&] { show(make<UINavigationController>(make<test::PlainScreen>())); }},
  };
  for (const double moment : {0.15, 1.0}) {
    for (const auto& [what, act] : rows) {
      SCOPED_TRACE(std::string(what) + (moment < 1 ? " while it opens" : " once it is open"));
      button()->tapGesture();
      pass(moment);
      act();
      pass(1);
      EXPECT_TRUE(button()->show());
      EXPECT_EQ(button()->superview(), window());
      EXPECT_EQ(button()->alpha(), 1);
      show(tabs_);
      navigation_->popToRootViewControllerAnimated(false);
      pass(1);
    }
  }
}

TEST_F(Floater, StandsInForAChatThatWasLeftInAnotherTab) {
  const auto other = make<UINavigationController>(make<test::PlainScreen>());
  tabs_->setViewControllers({navigation_, other});
  tap(button());
  pass(1);
  tabs_->setSelectedIndex(1);
  pass(1);
  EXPECT_TRUE(button()->show());
  tabs_->setSelectedIndex(0);
  pass(1);
  EXPECT_TRUE(chatIsOpen());
  EXPECT_FALSE(button()->show()) << "not over the chat";
  tabs_->setSelectedIndex(1);
  pass(1);
  tap(button());
  pass(1);
  EXPECT_EQ(other->topViewController(), chat());
  EXPECT_FALSE(button()->show());
}

TEST_F(Floater, StaysAwayFromAChatThatStepsReopen) {
  for (const bool covered : {false, true}) {
    SCOPED_TRACE(covered ? "the host has covered it" : "it is closing");
    button()->tapGesture();
    pass(1);
    covered ? navigation_->pushViewController(make<test::PlainScreen>(), false) : chat()->dismissChatView();
    pass(0.15);
    chat()->reopen(navigation_);
    pass(1);
    EXPECT_TRUE(chatIsOpen());
    EXPECT_TRUE(chat()->view()->isDescendantOfView(window().get()));
    EXPECT_FALSE(button()->show());
    chat()->dismissChatView();
    pass(1);
    EXPECT_TRUE(button()->show());
  }
}

TEST_F(Floater, StaysWithinReachWhenTheDeviceIsTurned) {
  const CGRect portrait{0, 0, 390, 844}, landscape{0, 0, 844, 390};
  drag({380, 690});
  const CGRect before = button()->frame();
  for (const bool chatIsOver : {false, true}) {
    SCOPED_TRACE(chatIsOver ? "while the chat is open" : "at rest");
    if (chatIsOver) button()->tapGesture();
    pass(1);
    window()->setFrame(landscape);
    if (chatIsOver) chat()->dismissChatView();
    pass(0.1);
    if (chatIsOver) {
      const auto mask = as<CAShapeLayer>(chat()->view()->layer()->mask());
      ASSERT_NE(mask, nullptr);
      EXPECT_TRUE(landscape.contains(mask->path()->bounds().center())) << "shrinks to where the button will be";
    }
    pass(1);
    EXPECT_EQ(button()->superview(), window());
    const CGRect frame = button()->frame();
    EXPECT_EQ(frame.size, before.size);
    EXPECT_TRUE(frame.minX() > 422 && frame.maxX() <= 844 && frame.minY() > 195 && frame.maxY() <= 390)
        << frame.minX() << ", " << frame.minY();
    window()->setFrame(portrait);
    pass(1);
    EXPECT_NEAR(button()->frame().minX(), before.minX(), 0.01);
    EXPECT_NEAR(button()->frame().minY(), before.minY(), 0.01);
  }
}

TEST_F(Floater, ComesToRestWhenADragIsBrokenOff) {
  driver_.drag({centerOfButton(), {200, 400}, {200, 401}}, 1);
  pass(0.6);
  chat()->reopen(navigation_);
  pass(2);
  chat()->dismissChatView();
  pass(1);
  EXPECT_TRUE(button()->show());
  EXPECT_EQ(std::min(button()->frame().minX(), 390 - button()->frame().maxX()), 10) << "at a side";
}

TEST_F(Floater, ShowsAGlyphAndARingUntilItsPictureHasCome) {
  TLLayout layout;
  layout.image = "https://floater.test/slow.png";
  service_.answer("/slow.png",
                  URLProtocol::Reply::data(200, UIImage::imageWithBitmap(Bitmap(4, 4))->pngRepresentation()).after(2));
  TLFloaterManager::shared().setLayoutData(layout);
  TLFloaterManager::shared().show();
  const auto picture = as<UIImageView>(button()->subviews().front());
  const auto glyph = picture->image();
  ASSERT_NE(glyph, nullptr);
  EXPECT_EQ(glyph->size(), (CGSize{30, 30}));
  EXPECT_GT(button()->layer()->borderWidth(), 0);
  pass(3);
  EXPECT_NE(picture->image(), glyph);
  EXPECT_EQ(button()->layer()->borderWidth(), 0);
}

TEST_F(Floater, TheGlyphKeepsClearOfTheRoundEdgeHoweverLargeThePictureIsToBe) {
  TLLayout layout;
  layout.image = "";
  layout.size = layout.imageSize = 60;
  TLFloaterManager::shared().setLayoutData(layout);
  TLFloaterManager::shared().show();
  const auto glyph = as<UIImageView>(button()->subviews().front())->image();
  ASSERT_NE(glyph, nullptr);
  const Bitmap& pixels = *glyph->cgImage();
  ASSERT_EQ(pixels.width(), 120);
  int inside = 0;
  for (int y = 0; y < 120; ++y) {
    for (int x = 0; x < 120; ++x) {
      if (pixels.pixel(x, y) >> 24 == 0) continue;
      EXPECT_LT(std::hypot(x - 59.5, y - 59.5), 54) << x << ", " << y;
      ++inside;
    }
  }
  EXPECT_GT(inside, 1000) << "there is a glyph";
}

/// A host that watches its own navigation.
class NavigationWatcher final : public Object<NavigationWatcher, NSObject> {
 public:
  static void exportMethods(MethodTable<NavigationWatcher>& table) {
    table.add<&NavigationWatcher::didShow>("navigationController:didShowViewController:animated:");
  }
  int shown = 0;

 private:
  void didShow(const Ref<UINavigationController>&, const Ref<UIViewController>&, bool) { ++shown; }
};

TEST_F(Floater, LeavesTheHostsNavigationDelegateInTheKnow) {
  const auto watcher = make<NavigationWatcher>();
  navigation_->setDelegate(watcher);
  tap(button());
  pass(1);
  EXPECT_TRUE(chatIsOpen());
  EXPECT_EQ(watcher->shown, 1);
  navigation_->popViewControllerAnimated(false);
  pass(1);
  EXPECT_EQ(watcher->shown, 2);
}

TEST_F(Floater, GivesTheHostsNavigationDelegateBackAfterTheChat) {
  const auto watcher = make<NavigationWatcher>();
  for (const bool animated : {true, false}) {
    navigation_->setDelegate(watcher);
    tap(button());
    pass(1);
    EXPECT_TRUE(chatIsOpen());
    EXPECT_NE(navigation_->delegate(), watcher) << "the chat closes with a transition of its own";
    navigation_->popViewControllerAnimated(animated);
    pass(2);
    EXPECT_FALSE(chatIsOpen());
    EXPECT_EQ(navigation_->delegate(), watcher);
  }
  EXPECT_EQ(watcher->shown, 4);
}

TEST_F(Floater, GivesTheHostsNavigationDelegateBackWhenTheChatOpensElsewhere) {
  const auto watcher = make<NavigationWatcher>();
  navigation_->setDelegate(watcher);
  TLFloaterManager::shared().overrideNavigationDelegate();
  navigation_->pushViewController(make<test::PlainScreen>(), false);
  pass(1);
  EXPECT_NE(navigation_->delegate(), watcher) << "the chat is still to come";
  const auto other = make<UINavigationController>(make<test::PlainScreen>());
  tabs_->setViewControllers({navigation_, other});
  tabs_->setSelectedIndex(1);
  tap(button());
  pass(1);
  EXPECT_EQ(other->topViewController(), chat());
  EXPECT_EQ(navigation_->delegate(), watcher);
}

}  // namespace
}  // namespace lumicor
