#include "platform/animation/CALayer.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UIViewControllerTransitioning.h"
#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/touch/UIGestureRecognizer.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

/// An animation controller that does what a test tells it.
class Animator : public Object<Animator, NSObject> {
 public:
  using Context = Ref<UIViewControllerContextTransitioning>;
  double duration(Context) { return 0.3; }
  void animate(Context given) {
    context = given;
    ++runs;
    given->containerView()->addSubview(given->viewForKey(UITransitionContextToViewKey));
    if (completes) {
      DispatchQueue::main().asyncAfter(0.3, [given] { given->completeTransition(true); });
    }
  }
  void ended(bool completed) { endedCompleted = completed; }
  static void exportMethods(MethodTable<Animator>& table) {
    table.add<&Animator::duration>("transitionDuration:")
        .add<&Animator::animate>("animateTransition:")
        .add<&Animator::ended>("animationEnded:");
  }
  bool completes = true;
  int runs = 0;
  Context context;
  std::optional<bool> endedCompleted;
};

class Chooser : public Object<Chooser, NSObject> {
 public:
  using Operation = UINavigationControllerOperation;
  Ref<NSObject> choose(Ref<UINavigationController>, Operation operation, Ref<UIViewController> from,
                       Ref<UIViewController> to) {
    asked.push_back((operation == Operation::push ? "push " : "pop ") + from->title() + to->title());
    return animator;
  }
  static void exportMethods(MethodTable<Chooser>& table) {
    table.add<&Chooser::choose>(
        "navigationController:animationControllerForOperation:fromViewController:toViewController:");
  }
  Ref<NSObject> animator;
  std::vector<std::string> asked;
};

class NavigationTransitionTest : public AppFixture {
 protected:
  NavigationTransitionTest() {
    a = make<JournalScreen>("A", journal);
    b = make<JournalScreen>("B", journal);
    navigation = make<UINavigationController>(a);
    show(navigation);
    journal.take();
  }
  void customise() {
    animator = make<Animator>();
    chooser = make<Chooser>();
    chooser->animator = animator;
    navigation->setDelegate(chooser);
  }
  /// How far right of its place the view shows at this moment.
  static double shift(const Ref<UIViewController>& screen) {
    return screen->view()->layer()->presentationLayer()->transform().tx;
  }
  Journal journal;
  Ref<JournalScreen> a, b;
  Ref<UINavigationController> navigation;
  Ref<Animator> animator;
  Ref<Chooser> chooser;
};

// ---- The platform's slide

TEST_F(NavigationTransitionTest, APushedScreenComesFromTheRightWhileTheOldOneGivesWay) {
  navigation->pushViewController(b, true);
  settle();
  EXPECT_NEAR(shift(b), 390, 1);
  EXPECT_NEAR(shift(a), 0, 1);
  EXPECT_EQ(b->view()->safeAreaInsets().top, 91) << "laid out for where it will stand";
  advance(0.175);
  EXPECT_NEAR(shift(b), 195, 5);
  EXPECT_NEAR(shift(a), -58, 3);
  EXPECT_EQ(a->view()->window(), window());
  advance(0.2);
  EXPECT_EQ(shift(b), 0);
  EXPECT_EQ(a->view()->superview(), nullptr);
  EXPECT_EQ(a->view()->transform(), CGAffineTransformIdentity);

  navigation->popViewControllerAnimated(true);
  const auto& order = a->view()->superview()->subviews();
  EXPECT_EQ(order.front(), a->view());
  EXPECT_EQ(order.back(), b->view()) << "the leaving screen slides away over the one below";
  advance(0.175);
  EXPECT_NEAR(shift(b), 195, 5);
  EXPECT_NEAR(shift(a), -58, 3);
}

TEST_F(NavigationTransitionTest, TouchesDoNothingWhileScreensMove) {
  class Counter : public Object<Counter, NSObject> {
   public:
    void tapped() { ++taps; }
    static void exportMethods(MethodTable<Counter>& table) { table.add<&Counter::tapped>("tapped"); }
    int taps = 0;
  };
  const auto counter = make<Counter>();
  const auto control = make<UIControl>(CGRect{0, 200, 390, 300});
  control->addTarget(counter, sel("tapped"), UIControlEvents::touchUpInside);
  b->view()->addSubview(control);
  navigation->pushViewController(b, true);
  advance(0.1);
  tap(CGPoint{350, 300});
  EXPECT_EQ(counter->taps, 0);
  advance(0.4);
  tap(CGPoint{350, 300});
  EXPECT_EQ(counter->taps, 1);
}

// ---- Animation controllers

TEST_F(NavigationTransitionTest, TheDelegatesAnimationControllerRunsTheTransition) {
  customise();
  navigation->pushViewController(b, true);
  EXPECT_THAT(chooser->asked, testing::ElementsAre("push AB"));
  ASSERT_EQ(animator->runs, 1);
  const auto& context = *animator->context;
  EXPECT_EQ(context.viewControllerForKey(UITransitionContextFromViewControllerKey), a);
  EXPECT_EQ(context.viewControllerForKey(UITransitionContextToViewControllerKey), b);
  EXPECT_EQ(context.viewForKey(UITransitionContextFromViewKey), a->view());
  EXPECT_EQ(context.viewForKey("something else"), nullptr);
  EXPECT_EQ(context.initialFrameForViewController(a), (CGRect{0, 0, 390, 844}));
  EXPECT_EQ(context.finalFrameForViewController(b), (CGRect{0, 0, 390, 844}));
  EXPECT_EQ(context.finalFrameForViewController(nullptr), CGRect());
  EXPECT_EQ(a->view()->superview(), context.containerView());
  EXPECT_EQ(journal.take(), "B.will+ B.load A.willDisappear~ B.willAppear~");
  EXPECT_EQ(shift(b), 0) << "the platform moves nothing of its own";
  advance(0.31);
  EXPECT_EQ(journal.take(), "A.didDisappear~ B.didAppear~ B.did+");
  EXPECT_EQ(animator->endedCompleted, true);
  EXPECT_EQ(a->view()->superview(), nullptr);

  navigation->popViewControllerAnimated(true);
  EXPECT_EQ(chooser->asked.back(), "pop BA");
  animator->context->completeTransition(true);
  animator->context->completeTransition(true);
  EXPECT_EQ(journal.take(), "B.will- B.willDisappear~ A.willAppear~ B.didDisappear~ A.didAppear~ B.did-");
}

TEST_F(NavigationTransitionTest, TheDelegateIsNotAskedWithoutAnimationAndMayDecline) {
  customise();
  navigation->pushViewController(b, false);
  EXPECT_TRUE(chooser->asked.empty());
  chooser->animator = nullptr;
  navigation->popViewControllerAnimated(true);
  EXPECT_THAT(chooser->asked, testing::ElementsAre("pop BA"));
  advance(0.175);
  EXPECT_NEAR(shift(b), 195, 5);
}

TEST_F(NavigationTransitionTest, ACancelledTransitionLeavesEverythingAsItWas) {
  customise();
  animator->completes = false;
  navigation->pushViewController(b, true);
  journal.take();
  animator->context->completeTransition(false);
  EXPECT_TRUE(animator->context->transitionWasCancelled());
  EXPECT_EQ(animator->endedCompleted, false);
  EXPECT_EQ(journal.take(), "B.willDisappear B.didDisappear A.willAppear A.didAppear B.will- B.did-");
  EXPECT_EQ(navigation->topViewController(), a);
  EXPECT_EQ(navigation->navigationBar()->topItem(), a->navigationItem());
  EXPECT_EQ(a->view()->window(), window());
  EXPECT_EQ(b->view()->superview(), nullptr);
  EXPECT_EQ(b->parentViewController(), nullptr);
}

TEST_F(NavigationTransitionTest, ATransitionThatNeverCompletesIsEndedASecondAfterItsTime) {
  customise();
  animator->completes = false;
  navigation->pushViewController(b, true);
  navigation->popViewControllerAnimated(true);
  advance(1.25);
  EXPECT_TRUE(navigation->isTransitioning());
  EXPECT_EQ(b->view()->window(), window());
  chooser->animator = nullptr;
  advance(0.1);
  EXPECT_EQ(navigation->visibleViewController(), a);
  advance(1);
  EXPECT_FALSE(navigation->isTransitioning());
  EXPECT_EQ(a->view()->window(), window());
  EXPECT_EQ(b->view()->window(), nullptr);
  journal.take();
  animator->context->completeTransition(true);
  EXPECT_EQ(journal.take(), "") << "too late";
}

TEST_F(NavigationTransitionTest, AnUnanimatedChangeDoesNotWaitForAnAnimationController) {
  customise();
  animator->completes = false;
  navigation->pushViewController(b, true);
  navigation->popToRootViewControllerAnimated(false);
  EXPECT_FALSE(navigation->isTransitioning());
  EXPECT_EQ(a->view()->window(), window());
  EXPECT_EQ(b->view()->window(), nullptr);
}

TEST_F(NavigationTransitionTest, NothingIsKeptAliveByATransitionUnderWay) {
  customise();
  animator->completes = false;
  navigation->pushViewController(b, true);
  const Weak<UINavigationController> controller = navigation;
  const Weak<JournalScreen> screen = b;
  const Weak<Animator> watched = animator;
  navigation = nullptr;
  a = b = nullptr;
  animator = nullptr;
  chooser = nullptr;
  show(make<UIViewController>());
  advance(3);
  EXPECT_TRUE(controller.expired());
  const Ref<Animator> alive = watched.lock();
  if (alive) alive->context = nullptr;  // a test's own reference; the platform holds none
  EXPECT_TRUE(screen.expired());
}

// ---- The finger from the edge

TEST_F(NavigationTransitionTest, AFingerFromTheLeftEdgeLeadsBack) {
  navigation->pushViewController(b, false);
  journal.take();
  hands().drag({{5, 400}, {300, 400}}, 0.5);
  advance(0.3);
  EXPECT_EQ(journal.take(), "B.willDisappear~ A.willAppear~") << "it may still turn back";
  EXPECT_TRUE(b->wasMovingFromParent);
  EXPECT_GT(shift(b), 60);
  EXPECT_LT(shift(b), 250);
  advance(1);
  EXPECT_EQ(journal.take(), "B.will- B.didDisappear~ A.didAppear~ B.did-");
  EXPECT_EQ(navigation->viewControllers().size(), 1u);
  EXPECT_EQ(b->view()->transform(), CGAffineTransformIdentity);
}

TEST_F(NavigationTransitionTest, AFingerThatTurnsBackCancelsThePop) {
  navigation->pushViewController(b, false);
  journal.take();
  drag({{5, 400}, {150, 400}, {60, 400}}, 0.6);
  advance(1);
  EXPECT_EQ(journal.take(), "B.willDisappear~ A.willAppear~ A.willDisappear A.didDisappear B.willAppear B.didAppear");
  EXPECT_EQ(navigation->topViewController(), b);
  EXPECT_FALSE(b->isMovingFromParentViewController());
  EXPECT_EQ(navigation->navigationBar()->topItem(), b->navigationItem());
  EXPECT_EQ(a->view()->superview(), nullptr);
  EXPECT_EQ(navigation->popViewControllerAnimated(false), b);
}

TEST_F(NavigationTransitionTest, APopThatIsForcedToItsEndUnderTheFingerTellsTheScreenOnce) {
  navigation->pushViewController(b, false);
  journal.take();
  hands().drag({{5, 400}, {300, 400}}, 0.5);
  advance(0.1);
  EXPECT_EQ(journal.take(), "B.willDisappear~ A.willAppear~");
  navigation->setViewControllers({a}, false);  // nothing new, and the finger still leads
  const auto c = make<JournalScreen>("C", journal);
  navigation->pushViewController(c, false);
  EXPECT_EQ(journal.take(),
            "C.will+ B.will- B.didDisappear~ A.didAppear~ B.did- C.load A.willDisappear C.willAppear "
            "A.didDisappear C.didAppear C.did+");
  advance(2);
  EXPECT_EQ(journal.take(), "");
  EXPECT_EQ(navigation->topViewController(), c);
}

TEST_F(NavigationTransitionTest, TheFingerDoesNothingAtTheRootElsewhereOrWhenItIsForbidden) {
  drag({{5, 400}, {300, 400}}, 0.4);
  EXPECT_EQ(journal.take(), "");
  navigation->pushViewController(b, false);
  journal.take();
  drag({{100, 400}, {350, 400}}, 0.4);
  drag({{5, 200}, {10, 600}}, 0.4);
  navigation->interactivePopGestureRecognizer()->setEnabled(false);
  drag({{5, 400}, {300, 400}}, 0.4);
  EXPECT_EQ(journal.take(), "");
  navigation->interactivePopGestureRecognizer()->setEnabled(true);
  customise();  // an animation controller has the say
  drag({{5, 400}, {300, 400}}, 0.4);
  EXPECT_EQ(journal.take(), "");
}

}  // namespace
}  // namespace platform::test
