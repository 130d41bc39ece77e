#include "lumicor/actions/TLActionsTask.h"
#include "lumicor/actions/TLScrollRestoration.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/device/UIPasteboard.h"
#include "platform/uikit/lists/UICollectionView.h"
#include "platform/uikit/lists/UICollectionViewFlowLayout.h"
#include "platform/uikit/lists/UITableView.h"
#include "platform/uikit/text/UITextView.h"
#include "tests/lumicor/actions/StepTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A run in virtual time: what was pressed and reported, each with the second at which it happened.
class TLActionsTaskTest : public StepTest {
 protected:
  TLActionsTaskTest() { UIPasteboard::general().setString(std::nullopt); }

  void addButton(const char* identifier) {
    const auto button = add<UIButton>(identifier);
    button->setTitle(identifier, UIControlState::normal);
    const auto press = std::make_shared<Press>();
    press->heard = [this, identifier] { events_.emplace_back(now(), std::string("press ") + identifier); };
    presses_.push_back(press);
    button->addTarget(press, sel("press:"), UIControlEvents::touchUpInside);
  }
  /// Starts a run; the last step of a list is never performed, so one is added.
  void run(std::vector<TLAction> steps) {
    steps.push_back(step("never performed"));
    start(std::move(steps));
  }
  void start(std::vector<TLAction> steps) {
    start_ = Clock::mediaTime();
    const auto task = make<TLActionsTask>(std::move(steps), [this](const TLTaskResult& result) {
      results_.push_back(result);
      events_.emplace_back(now(), result.success ? "success" : "failure");
    });
    task_ = task;
    task->start();
  }
  double now() const { return std::round((Clock::mediaTime() - start_) * 1000) / 1000; }

  struct Press : Object<Press, NSObject> {
    std::function<void()> heard;
    void press(Ref<NSObject>) { heard(); }
    static void exportMethods(MethodTable<Press>& table) { table.add<&Press::press>("press:"); }
  };
  std::vector<std::pair<double, std::string>> events_;
  std::vector<TLTaskResult> results_;
  std::vector<Ref<Press>> presses_;
  Weak<TLActionsTask> task_;
  double start_ = 0;
};
using TLActionsTaskDeathTest = TLActionsTaskTest;

// ---- Pacing and end

TEST_F(TLActionsTaskTest, PerformsAllButTheLastStepAndReportsTwoSecondsLater) {
  addButton("a");
  addButton("b");
  addButton("c");
  start({step("a"), step("b"), step("c")});
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(1.5, "press a"), Pair(5.0, "press b"), Pair(7.0, "success")));
  EXPECT_EQ(results_.at(0).resultValue, "b");
  EXPECT_FALSE(task_.lock()) << "nothing keeps a finished run";
}

TEST_F(TLActionsTaskTest, DoesNothingWithOneStepOrNone) {
  addButton("a");
  start({step("a")});
  start({});
  RunLoop::advance(60);
  EXPECT_THAT(events_, IsEmpty());
  EXPECT_FALSE(task_.lock());
}

TEST_F(TLActionsTaskTest, NeedsNobodyToReportTo) {
  addButton("a");
  make<TLActionsTask>(std::vector{step("a"), step("x")})->start();
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(testing::_, "press a")));
}

TEST_F(TLActionsTaskTest, StopsAtTheFirstStepThatFails) {
  addButton("b");
  UIPasteboard::general().setString("copied");
  run({step("nowhere"), step("b")});
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(6.5, "failure")));
  EXPECT_EQ(results_.at(0), (TLTaskResult{false, "", "copied"}));
}

TEST_F(TLActionsTaskTest, LooksForAScreenThatNeverComesFourTimesASecondApart) {
  TLAction other = step("a");
  other.viewName = "ThanksScreen";
  run({other});
  RunLoop::advance(1.4);
  EXPECT_EQ(screen_->lookups, 0);
  for (int lookups = 1; lookups <= 4; ++lookups) {
    RunLoop::advance(lookups == 1 ? 0.2 : 1.0);
    EXPECT_EQ(screen_->lookups, lookups);
  }
  RunLoop::advance(60);
  EXPECT_EQ(screen_->lookups, 4);
  EXPECT_THAT(events_, ElementsAre(Pair(6.5, "failure")));
}

TEST_F(TLActionsTaskTest, GoesOnOnceTheScreenIsThere) {
  addButton("a");
  Lumicor::shared().setCurrentViewController(make<UIViewController>());
  run({step("a")});
  RunLoop::advance(3.0);
  Lumicor::shared().setCurrentViewController(screen_);
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(3.5, "press a"), Pair(5.5, "success")));
}

TEST_F(TLActionsTaskTest, ActsOnWhatItFoundAlsoWhenThatWasTakenAwayMeanwhile) {
  addButton("a");
  const Ref<UIView> button = screen_->view()->subviews()[0];
  screen_->onLookup = [button] { DispatchQueue::main().async([button] { button->removeFromSuperview(); }); };
  run({step("a")});
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(1.5, "press a"), Pair(3.5, "success")));
}

TEST_F(TLActionsTaskTest, ReadsThePasteboardWhenTheStepBegins) {
  addButton("a");
  UIPasteboard::general().setString("copied");
  run({step("a")});
  RunLoop::advance(60);
  EXPECT_EQ(results_.at(0), (TLTaskResult{true, "a", "copied"}));
}

TEST_F(TLActionsTaskTest, ReadsThePasteboardAgainAtEveryLookup) {
  UIPasteboard::general().setString("at first");
  run({step("a")});
  RunLoop::advance(2);
  UIPasteboard::general().setString("later");
  addButton("a");
  RunLoop::advance(60);
  EXPECT_EQ(results_.at(0), (TLTaskResult{true, "a", "later"}));
}

TEST_F(TLActionsTaskTest, TakesATargetAtTheFourthLookupAndNoLater) {
  for (const double appears : {4.4, 4.6}) {
    SCOPED_TRACE(appears);
    events_.clear();
    run({step("late")});
    DispatchQueue::main().asyncAfter(appears, [this] { addButton("late"); });
    RunLoop::advance(60);
    if (appears < 4.5) {
      EXPECT_THAT(events_, ElementsAre(Pair(4.5, "press late"), Pair(6.5, "success")));
    } else {
      EXPECT_THAT(events_, ElementsAre(Pair(6.5, "failure")));
    }
    for (const Ref<UIView>& view : std::vector(screen_->view()->subviews())) view->removeFromSuperview();
  }
}

TEST_F(TLActionsTaskTest, FailsWhenTheScreenChangesDuringTheRun) {
  addButton("a");
  run({step("a"), step("a")});
  RunLoop::advance(2);
  const auto other = make<UIViewController>();
  Lumicor::shared().setCurrentViewController(other);
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(1.5, "press a"), Pair(10.0, "failure")));
}

TEST_F(TLActionsTaskTest, TwoRunsGoOnBesideEachOther) {
  addButton("a");
  addButton("b");
  run({step("a"), step("a")});
  RunLoop::advance(1);
  const double first = start_;
  run({step("b")});
  start_ = first;
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(1.5, "press a"), Pair(2.5, "press b"), Pair(4.5, "success"),
                                   Pair(5.0, "press a"), Pair(7.0, "success")));
}

TEST_F(TLActionsTaskTest, RunsThousandsOfSteps) {
  addButton("a");
  run(std::vector<TLAction>(10000, step("a")));
  RunLoop::advance(36000);
  EXPECT_EQ(events_.size(), 10001U);
  EXPECT_EQ(results_.size(), 1U);
}

TEST_F(TLActionsTaskDeathTest, StopsWithoutACurrentScreen) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Lumicor::shared().setCurrentViewController(nullptr);
  EXPECT_DEATH(start({step("a"), step("b")}), "fatal error: steps were started without a current screen");
}

// ---- Going back

TEST_F(TLActionsTaskTest, GoesBackAndSucceedsEvenWithoutAnywhereToGo) {
  run({step("", "TYPE_SYSTEM_BACK")});
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(3.5, "success")));

  const auto navigation = make<UINavigationController>(make<UIViewController>());
  navigation->pushViewController(make<UIViewController>(), false);
  navigation->pushViewController(screen_, false);
  show(navigation);
  run({step("", "TYPE_SYSTEM_BACK")});
  RunLoop::advance(1.6);
  EXPECT_EQ(navigation->viewControllers().size(), 2U);
}

/// Notes whether it was taken back with an animation.
struct NotingNavigation : Object<NotingNavigation, UINavigationController> {
  Ref<UIViewController> popViewControllerAnimated(bool animated) override {
    wasAnimated = wasAnimated || animated;
    return Super::popViewControllerAnimated(animated);
  }
  std::vector<Ref<UIViewController>> popToRootViewControllerAnimated(bool animated) override {
    wasAnimated = wasAnimated || animated;
    return Super::popToRootViewControllerAnimated(animated);
  }
  bool wasAnimated = false;
};

TEST_F(TLActionsTaskTest, GoesBackFromTheCurrentScreenAtOnceWhateverTheStepCallsIt) {
  const auto root = make<NotingNavigation>(make<UIViewController>());
  root->pushViewController(make<UIViewController>(), false);
  show(root);
  const auto modal = make<NotingNavigation>(make<UIViewController>());
  modal->pushViewController(screen_, false);
  root->presentViewController(modal, false);
  RunLoop::advance(1);
  TLAction back = step("", "TYPE_SYSTEM_BACK");
  back.viewName = "ThanksScreen";
  run({back});
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(3.5, "success"))) << "it waits for no screen";
  EXPECT_EQ(modal->viewControllers().size(), 1U);
  EXPECT_FALSE(modal->wasAnimated);
  EXPECT_EQ(root->viewControllers().size(), 2U) << "not the navigation controller at the root";
}

TEST_F(TLActionsTaskTest, TakesEveryTabBackToItsRootFirst) {
  const auto first = make<NotingNavigation>(screen_);
  first->pushViewController(make<UIViewController>(), false);
  const auto plain = make<UIViewController>();
  const auto inner = make<UINavigationController>(make<UIViewController>());
  inner->pushViewController(make<UIViewController>(), false);
  plain->addChildViewController(inner);  // leads to the same tab bar controller again
  const auto tabs = make<UITabBarController>();
  const auto second = make<UINavigationController>(make<UIViewController>());
  second->pushViewController(make<UIViewController>(), false);
  tabs->setViewControllers({plain, first, second});
  show(tabs);
  start({});
  EXPECT_EQ(first->viewControllers().size(), 1U);
  EXPECT_FALSE(first->wasAnimated);
  EXPECT_EQ(second->viewControllers().size(), 1U);
  EXPECT_EQ(inner->viewControllers().size(), 2U) << "only tabs are reset, not what lies inside their screens";
}

TEST_F(TLActionsTaskTest, TakesTheNavigationAroundATabAndTheTabsOfChildrenBackToo) {
  struct Embedding : Object<Embedding, UIViewController> {  // a child that belongs to other tabs
    Ref<UITabBarController> tabs;
    Ref<UITabBarController> tabBarController() const override { return tabs; }
  };
  const auto embedded = make<UINavigationController>(make<UIViewController>());
  embedded->pushViewController(make<UIViewController>(), false);
  const auto child = make<Embedding>();
  child->tabs = make<UITabBarController>();
  child->tabs->setViewControllers({embedded});
  const auto plain = make<UIViewController>();
  plain->addChildViewController(child);
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({screen_, plain});
  show(tabs);
  start({});
  EXPECT_EQ(embedded->viewControllers().size(), 1U);

  const auto around = make<UINavigationController>(tabs);
  show(around);
  around->pushViewController(make<UIViewController>(), false);
  Lumicor::shared().setCurrentViewController(plain);
  start({});
  EXPECT_EQ(around->viewControllers().size(), 1U);
}

TEST_F(TLActionsTaskTest, ResetsNothingWithoutATabBar) {
  const auto navigation = make<UINavigationController>(make<UIViewController>());
  navigation->pushViewController(screen_, false);
  show(navigation);
  start({});
  EXPECT_EQ(navigation->viewControllers().size(), 2U);
}

// ---- Scroll positions

class ScrollStepTest : public TLActionsTaskTest {
 protected:
  TLAction scrolling(std::vector<TLScrollActionDetails> details) {
    TLAction action = step("a");
    action.scrollDetails = std::move(details);
    return action;
  }
  Ref<UIScrollView> addScroll(const char* identifier) {
    const auto scroll = add<UIScrollView>(identifier, CGRect{0, 0, 100, 100});
    scroll->setContentSize({1000, 1000});
    return scroll;
  }
  /// A grid of 20 items side by side, 100 points each, in a window of 300.
  Ref<UICollectionView> addGrid() {
    struct Source : Object<Source, NSObject> {
      std::int64_t items(Ref<UICollectionView>, std::int64_t) { return 20; }
      Ref<UICollectionViewCell> item(Ref<UICollectionView> grid, IndexPath path) {
        auto cell = grid->dequeueReusableCell("cell", path);
        cell->setAccessibilityIdentifier("item-" + std::to_string(path.item()));
        return cell;
      }
      static void exportMethods(MethodTable<Source>& table) {
        table.add<&Source::items>("collectionView:numberOfItemsInSection:");
        table.add<&Source::item>("collectionView:cellForItemAtIndexPath:");
      }
    };
    const auto layout = make<UICollectionViewFlowLayout>();
    layout->setScrollDirection(UICollectionViewScrollDirection::horizontal);
    layout->setItemSize({100, 100});
    layout->setMinimumLineSpacing(0);
    const auto grid = add<UICollectionView>("list", CGRect{0, 300, 300, 100}, layout);
    grid->registerClass<UICollectionViewCell>("cell");
    source_ = make<Source>();
    grid->setDataSource(source_);
    grid->layoutIfNeeded();
    return grid;
  }
  TLScrollOutcome restore(const std::string& viewId) { return restoreScrollPosition({viewId, {0, 0}}, "CartScreen"); }

  Ref<NSObject> source_;
};
using ScrollStepDeathTest = ScrollStepTest;

TEST_F(ScrollStepTest, RestoresEveryPositionBeforeTheLookup) {
  addButton("a");
  const auto feed = addScroll("feed");
  const auto table = add<UITableView>("table", CGRect{0, 0, 100, 100}, UITableViewStyle::plain);
  run({scrolling({{"feed", {12, 340}}, {"table", {0, -20}}})});
  RunLoop::advance(60);
  EXPECT_EQ(feed->contentOffset(), (CGPoint{12, 340}));
  EXPECT_EQ(table->contentOffset(), (CGPoint{0, -20}));
  EXPECT_THAT(events_, ElementsAre(Pair(1.5, "press a"), Pair(3.5, "success")));
}

TEST_F(ScrollStepTest, PrefersATableOverAScrollViewOfTheSameName) {
  const auto scroll = addScroll("feed");
  const auto table = add<UITableView>("feed", CGRect{0, 0, 100, 100}, UITableViewStyle::plain);
  window()->layoutIfNeeded();
  const CGPoint before = scroll->contentOffset();
  EXPECT_EQ(restoreScrollPosition({"feed", {0, 7}}, "CartScreen"), TLScrollOutcome::restored);
  EXPECT_EQ(scroll->contentOffset(), before);
  EXPECT_EQ(table->contentOffset(), (CGPoint{0, 7}));
}

TEST_F(ScrollStepTest, FindsTheCellThatCameIntoView) {
  const auto grid = addGrid();
  TLAction choose = step("item-14");
  choose.scrollDetails = {{"LumicorCollectionView-list-0-14", {0, 0}}};
  TLAction back = step("item-2");
  back.scrollDetails = {{"list", {200, 0}}};
  run({choose, back});
  RunLoop::advance(1.6);
  EXPECT_EQ(grid->indexPathsForSelectedItems(), std::vector{IndexPath(14, 0)}) << "at the first look-up";
  RunLoop::advance(3.5);
  EXPECT_EQ(grid->indexPathsForSelectedItems(), std::vector{IndexPath(2, 0)});
}

TEST_F(ScrollStepTest, FailsBeforeAnyLookupWhenNothingGoesByTheName) {
  addButton("a");
  UIPasteboard::general().setString("copied");
  const auto feed = addScroll("feed");
  run({scrolling({{"a", {0, 0}}, {"feed", {0, 5}}})});
  RunLoop::advance(60);
  EXPECT_THAT(events_, ElementsAre(Pair(3.5, "failure")));
  EXPECT_EQ(results_.at(0), (TLTaskResult{false, "", ""})) << "the pasteboard was not read yet";
  EXPECT_EQ(feed->contentOffset(), (CGPoint{0, 5})) << "the other entries are restored all the same";
  EXPECT_EQ(screen_->lookups, 0);
}

TEST_F(ScrollStepTest, StallsForGoodAtATextViewOutsideTheScreensOwnView) {
  addButton("a");
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({screen_});
  show(tabs);
  const auto text = make<UITextView>(CGRect{0, 0, 100, 50});
  text->setAccessibilityIdentifier("terms");
  tabs->view()->addSubview(text);
  run({scrolling({{"terms", {0, 30}}})});
  RunLoop::advance(3600);
  EXPECT_EQ(text->contentOffset(), (CGPoint{0, 30}));
  EXPECT_THAT(events_, IsEmpty());
  EXPECT_FALSE(task_.lock()) << "a run that goes nowhere is not kept";
}

TEST_F(ScrollStepTest, ScrollsAnItemIntoTheHorizontalCentre) {
  const auto grid = addGrid();
  EXPECT_EQ(restore("LumicorCollectionView-list-0-5"), TLScrollOutcome::restored);
  EXPECT_EQ(grid->contentOffset(), (CGPoint{400, 0}));
  for (const char* id :
       {"LumicorCollectionView-list-0-99", "LumicorCollectionView-list-7-0", "LumicorCollectionView-list-0--1",
        "LumicorCollectionView-list-x-1", "LumicorCollectionView-list-0-99999999999999999999",
        "LumicorCollectionView-other-0-1", "LumicorCollectionView-other"}) {
    EXPECT_EQ(restore(id), TLScrollOutcome::restored) << id;
    EXPECT_EQ(grid->contentOffset(), (CGPoint{400, 0})) << id;
  }
}

TEST_F(ScrollStepDeathTest, StopsAtACollectionTargetWithTooFewParts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  addGrid();
  EXPECT_DEATH(restore("LumicorCollectionView"), "fatal error: a collection scroll target has fewer than two parts");
  EXPECT_DEATH(restore("LumicorCollectionView-list-0"),
               "fatal error: a collection scroll target has fewer than four parts");
}

}  // namespace lumicor::test
