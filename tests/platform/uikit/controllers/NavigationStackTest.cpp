#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

/// Writes what a navigation controller tells its delegate.
class JournalDelegate : public Object<JournalDelegate, NSObject> {
 public:
  explicit JournalDelegate(Journal journal) : journal_(std::move(journal)) {}
  void willShow(Ref<UINavigationController>, Ref<UIViewController> screen, bool) { write("willShow", *screen); }
  void didShow(Ref<UINavigationController>, Ref<UIViewController> screen, bool) { write("didShow", *screen); }
  static void exportMethods(MethodTable<JournalDelegate>& table) {
    table.add<&JournalDelegate::willShow>("navigationController:willShowViewController:animated:")
        .add<&JournalDelegate::didShow>("navigationController:didShowViewController:animated:");
  }

 private:
  void write(const std::string& what, const UIViewController& screen) {
    journal_.write("(" + what + " " + screen.title() + ")");
  }
  Journal journal_;
};

class NavigationStackTest : public AppFixture {
 protected:
  NavigationStackTest() {
    a = screen("A");
    b = screen("B");
    c = screen("C");
    delegate = make<JournalDelegate>(journal);
    navigation = make<UINavigationController>(a);
    navigation->setDelegate(delegate);
  }
  Ref<JournalScreen> screen(const std::string& name) { return make<JournalScreen>(name, journal); }
  void showNavigation() {
    show(navigation);
    journal.take();
  }
  void pushQuietly(const Ref<UIViewController>& screen) {
    navigation->pushViewController(screen, false);
    journal.take();
  }
  using Stack = std::vector<Ref<UIViewController>>;

  Journal journal;
  Ref<JournalScreen> a, b, c;
  Ref<JournalDelegate> delegate;
  Ref<UINavigationController> navigation;
};

TEST_F(NavigationStackTest, TheRootGetsItsParentAtOnceAndItsViewWhenTheControllerAppears) {
  EXPECT_EQ(journal.take(), "A.will+ A.did+");
  EXPECT_FALSE(a->isViewLoaded());
  EXPECT_EQ(a->navigationController(), navigation);
  show(navigation);
  EXPECT_EQ(journal.take(), "A.load A.willAppear (willShow A) A.didAppear (didShow A)");
  EXPECT_EQ(a->view()->window(), window());
  EXPECT_EQ(a->view()->bounds().size, (CGSize{390, 844}));
}

TEST_F(NavigationStackTest, AnUnanimatedPushAndPopTellEverythingBeforeTheyReturn) {
  showNavigation();
  navigation->pushViewController(b, false);
  EXPECT_EQ(journal.take(),
            "B.will+ B.load A.willDisappear B.willAppear (willShow B) A.didDisappear B.didAppear B.did+ (didShow B)");
  EXPECT_EQ(a->view()->superview(), nullptr);
  EXPECT_EQ(navigation->popViewControllerAnimated(false), b);
  EXPECT_EQ(journal.take(),
            "B.will- B.willDisappear A.willAppear (willShow A) B.didDisappear A.didAppear B.did- (didShow A)");
  EXPECT_EQ(b->parentViewController(), nullptr);
  EXPECT_EQ(b->view()->superview(), nullptr);
}

TEST_F(NavigationStackTest, AnAnimatedPushAndPopTellTheFirstHalfAtOnceAndTheSecondWhenTheSlideIsOver) {
  showNavigation();
  navigation->pushViewController(b, true);
  EXPECT_EQ(journal.take(), "B.will+ B.load A.willDisappear~ B.willAppear~ (willShow B)");
  EXPECT_EQ(navigation->topViewController(), b);
  EXPECT_TRUE(navigation->isTransitioning());
  advance(0.3);
  EXPECT_EQ(journal.take(), "");
  advance(0.1);
  EXPECT_EQ(journal.take(), "A.didDisappear~ B.didAppear~ B.did+ (didShow B)");
  EXPECT_FALSE(navigation->isTransitioning());

  navigation->popViewControllerAnimated(true);
  EXPECT_EQ(journal.take(), "B.will- B.willDisappear~ A.willAppear~ (willShow A)");
  EXPECT_EQ(b->navigationController(), navigation) << "it is still asked for its navigation controller on its way out";
  advance(0.4);
  EXPECT_EQ(journal.take(), "B.didDisappear~ A.didAppear~ B.did- (didShow A)");
  EXPECT_EQ(b->navigationController(), nullptr);
}

TEST_F(NavigationStackTest, OnlyThePoppedScreenMovesFromItsParent) {
  showNavigation();
  navigation->pushViewController(b, false);
  EXPECT_FALSE(a->wasMovingFromParent);
  navigation->popViewControllerAnimated(false);
  EXPECT_TRUE(b->wasMovingFromParent);
  EXPECT_TRUE(b->hadNavigation);
  EXPECT_FALSE(b->isMovingFromParentViewController());
  navigation->pushViewController(c, false);
  EXPECT_FALSE(a->wasMovingFromParent);
}

TEST_F(NavigationStackTest, PoppingToTheRootLetsEveryScreenInBetweenGoTheUppermostFirst) {
  showNavigation();
  pushQuietly(b);
  pushQuietly(c);
  EXPECT_EQ(navigation->popToRootViewControllerAnimated(false), (Stack{b, c}));
  EXPECT_EQ(journal.take(),
            "C.will- B.will- C.willDisappear A.willAppear (willShow A) C.didDisappear A.didAppear C.did- B.did- "
            "(didShow A)");
  EXPECT_EQ(navigation->viewControllers(), (Stack{a}));
}

TEST_F(NavigationStackTest, AtTheRootThereIsNothingToPop) {
  showNavigation();
  EXPECT_EQ(navigation->popViewControllerAnimated(true), nullptr);
  EXPECT_TRUE(navigation->popToRootViewControllerAnimated(false).empty());
  EXPECT_TRUE(navigation->popToViewController(a, true).empty());
  advance(1);
  EXPECT_EQ(journal.take(), "");
  EXPECT_EQ(navigation->visibleViewController(), a);
  EXPECT_EQ(make<UINavigationController>()->popViewControllerAnimated(false), nullptr);
  EXPECT_EQ(make<UINavigationController>()->topViewController(), nullptr);
}

TEST_F(NavigationStackTest, APopDuringAPushIsShownWhenThePushIsOver) {
  showNavigation();
  navigation->pushViewController(b, true);
  journal.take();
  EXPECT_EQ(navigation->popViewControllerAnimated(true), b);
  EXPECT_EQ(navigation->topViewController(), a) << "the stack changes at once";
  EXPECT_EQ(journal.take(), "");
  advance(0.4);
  EXPECT_EQ(journal.take(),
            "A.didDisappear~ B.didAppear~ B.did+ (didShow B) B.will- B.willDisappear~ A.willAppear~ (willShow A)");
  advance(0.4);
  EXPECT_EQ(journal.take(), "B.didDisappear~ A.didAppear~ B.did- (didShow A)");
}

TEST_F(NavigationStackTest, AnUnanimatedPopEndsAPushThatRuns) {
  showNavigation();
  navigation->pushViewController(b, true);
  journal.take();
  navigation->popToRootViewControllerAnimated(false);
  EXPECT_EQ(journal.take(),
            "A.didDisappear~ B.didAppear~ B.did+ (didShow B) B.will- B.willDisappear A.willAppear (willShow A) "
            "B.didDisappear A.didAppear B.did- (didShow A)");
  advance(1);
  EXPECT_EQ(journal.take(), "");
  EXPECT_EQ(a->view()->transform(), CGAffineTransformIdentity);
  EXPECT_EQ(a->view()->superview()->subviews().size(), 1u) << "nothing of the slide is left";
}

TEST_F(NavigationStackTest, OfSeveralPushesDuringATransitionTheLastIsShownNext) {
  showNavigation();
  navigation->pushViewController(b, true);
  navigation->pushViewController(c, true);
  const auto d = screen("D");
  navigation->pushViewController(d, true);
  journal.take();
  advance(0.4);
  EXPECT_EQ(journal.take(),
            "A.didDisappear~ B.didAppear~ B.did+ (didShow B) D.load B.willDisappear~ D.willAppear~ (willShow D)");
  advance(0.4);
  EXPECT_EQ(journal.take(), "B.didDisappear~ D.didAppear~ C.did+ D.did+ (didShow D)");
  EXPECT_FALSE(c->isViewLoaded());
  EXPECT_EQ(navigation->viewControllers(), (Stack{a, b, c, d}));
}

TEST_F(NavigationStackTest, AScreenPoppedAndPushedAgainWhileItLeavesComesBack) {
  showNavigation();
  pushQuietly(b);
  navigation->popViewControllerAnimated(true);
  navigation->pushViewController(b, true);
  advance(1);
  EXPECT_EQ(
      journal.take(),
      "B.will- B.willDisappear~ A.willAppear~ (willShow A) B.didDisappear~ A.didAppear~ B.did- (didShow A) B.will+ "
      "A.willDisappear~ B.willAppear~ (willShow B) A.didDisappear~ B.didAppear~ B.did+ (didShow B)");
  EXPECT_EQ(b->navigationController(), navigation);
  EXPECT_EQ(navigation->viewControllers(), (Stack{a, b}));
}

TEST_F(NavigationStackTest, SettingAnotherStackShowsItsTopAndSortsOutTheParents) {
  showNavigation();
  pushQuietly(b);
  const auto d = screen("D");
  navigation->setViewControllers({a, d, c}, false);
  EXPECT_EQ(
      journal.take(),
      "D.will+ C.will+ B.will- C.load B.willDisappear C.willAppear (willShow C) B.didDisappear C.didAppear D.did+ "
      "C.did+ B.did- (didShow C)");
  EXPECT_FALSE(d->isViewLoaded());
  navigation->setViewControllers({c}, true);
  advance(1);
  EXPECT_EQ(journal.take(), "D.will- A.will- D.did- A.did-") << "the screen in front stays as it is";
  navigation->setViewControllers({c}, true);
  EXPECT_EQ(journal.take(), "");
}

TEST_F(NavigationStackTest, AStackSetToWhatLiesBelowGoesBackAndAnEmptyOneShowsNothing) {
  showNavigation();
  pushQuietly(b);
  navigation->setViewControllers({a}, true);
  EXPECT_EQ(journal.take(), "B.will- B.willDisappear~ A.willAppear~ (willShow A)");
  advance(1);
  journal.take();
  navigation->setViewControllers({}, false);
  EXPECT_EQ(journal.take(), "A.will- A.willDisappear A.didDisappear A.did-");
  EXPECT_EQ(navigation->visibleViewController(), nullptr);
  navigation->pushViewController(c, true);
  advance(1);
  EXPECT_EQ(navigation->visibleViewController(), c);
  EXPECT_EQ(c->view()->window(), window());
}

TEST_F(NavigationStackTest, WhatACallbackPushesIsShownAfterTheScreenThatCalled) {
  showNavigation();
  b->onWillAppear = [this] { navigation->pushViewController(c, false); };
  navigation->pushViewController(b, false);
  EXPECT_EQ(
      journal.take(),
      "B.will+ B.load A.willDisappear B.willAppear C.will+ (willShow B) A.didDisappear B.didAppear B.did+ "
      "(didShow B) C.load B.willDisappear C.willAppear (willShow C) B.didDisappear C.didAppear C.did+ (didShow C)");
  c->onDidAppear = nullptr;
  navigation->popToRootViewControllerAnimated(false);
  journal.take();
  b->onDidAppear = [this] { navigation->popViewControllerAnimated(false); };
  navigation->pushViewController(b, false);
  EXPECT_EQ(navigation->visibleViewController(), a);
  EXPECT_EQ(a->view()->window(), window());
}

TEST_F(NavigationStackTest, WhatTheRootPushesAsItFirstAppearsIsShownOnceItHasAppeared) {
  a->onWillAppear = [this] { navigation->pushViewController(b, false); };
  show(navigation);
  EXPECT_EQ(journal.take(),
            "A.will+ A.did+ A.load A.willAppear B.will+ (willShow A) A.didAppear (didShow A) B.load A.willDisappear "
            "B.willAppear (willShow B) A.didDisappear B.didAppear B.did+ (didShow B)");
  EXPECT_EQ(b->view()->window(), window());
}

TEST_F(NavigationStackTest, ChangesOutOfSightLoadNothingAndTellOnlyOfParents) {
  navigation->pushViewController(b, true);
  navigation->pushViewController(c, true);
  navigation->popViewControllerAnimated(true);
  EXPECT_EQ(journal.take(), "A.will+ A.did+ B.will+ B.did+ C.will+ C.did+ C.will- C.did-");
  EXPECT_FALSE(a->isViewLoaded() || b->isViewLoaded());
  show(navigation);
  EXPECT_EQ(journal.take(), "B.load B.willAppear (willShow B) B.didAppear (didShow B)");
}

TEST_F(NavigationStackTest, ATransitionEndsAtOnceWhenTheWholeControllerIsTakenAway) {
  showNavigation();
  navigation->pushViewController(b, true);
  journal.take();
  navigation->view()->removeFromSuperview();
  EXPECT_EQ(journal.take(), "A.didDisappear~ B.didAppear~ B.did+ (didShow B) B.willDisappear B.didDisappear");
  advance(1);
  EXPECT_EQ(journal.take(), "");
  EXPECT_FALSE(navigation->isTransitioning());
}

TEST_F(NavigationStackTest, PoppedScreensAndWholeStacksAreFreed) {
  showNavigation();
  b->writesDeath = true;
  pushQuietly(b);
  navigation->popViewControllerAnimated(true);
  b = nullptr;
  advance(1);
  EXPECT_THAT(journal.take(), testing::EndsWith("B.did- (didShow A) B.gone"));

  c->writesDeath = true;
  navigation->pushViewController(c, true);
  c = nullptr;
  const Weak<UINavigationController> watched = navigation;
  navigation = nullptr;
  show(make<UIViewController>());
  advance(1);
  EXPECT_TRUE(watched.expired());
  EXPECT_THAT(journal.take(), testing::EndsWith("C.gone"));
}

TEST_F(NavigationStackTest, ImpossibleStacksAreProgrammingErrors) {
  EXPECT_DEATH(navigation->pushViewController(a, false), "JournalScreen is pushed that is on the navigation stack");
  EXPECT_DEATH(navigation->popToViewController(b, false), "not on the stack");
  EXPECT_DEATH(navigation->setViewControllers({b, c, b}), "twice");
}

TEST_F(NavigationStackTest, VisibleIsWhatIsPresentedElseTheTop) {
  showNavigation();
  pushQuietly(b);
  EXPECT_EQ(navigation->visibleViewController(), b);
  b->presentViewController(c, false);
  EXPECT_EQ(navigation->visibleViewController(), c);
  EXPECT_EQ(navigation->topViewController(), b);
}

TEST_F(NavigationStackTest, NoneIsNoScreenOfAStack) {
  const auto navigation = make<UINavigationController>(Ref<UIViewController>());
  EXPECT_TRUE(navigation->viewControllers().empty());
  const auto a = make<UIViewController>();
  const auto b = make<UIViewController>();
  navigation->setViewControllers({nullptr, a, nullptr, b, nullptr});
  EXPECT_EQ(navigation->viewControllers(), (std::vector<Ref<UIViewController>>{a, b}));
  navigation->pushViewController(nullptr, false);
  EXPECT_EQ(navigation->topViewController(), b);
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({nullptr, navigation});
  show(tabs);
  EXPECT_EQ(tabs->viewControllers().size(), 1u);
  EXPECT_EQ(navigation->visibleViewController(), b);
}

}  // namespace
}  // namespace platform::test
