#include "lumicor/actions/TLStepTarget.h"
#include "lumicor/core/Lumicor.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UISearchController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "tests/lumicor/actions/StepTest.h"

namespace lumicor::test {

using testing::ElementsAre;

using StepTargetTest = StepTest;

TEST_F(StepTargetTest, FindsTheSearchControllerOfAParentPresenterOrChild) {
  const auto searching = [] {
    const auto controller = make<UIViewController>();
    controller->navigationItem()->setSearchController(make<UISearchController>());
    return controller;
  };
  const auto found = [] { return TLStepTarget::find(step("x")).searchController; };
  const auto child = searching();
  screen_->addChildViewController(child);
  EXPECT_EQ(found(), child->navigationItem()->searchController());
  const auto presenter = searching();
  show(presenter);
  presenter->presentViewController(screen_, false);
  RunLoop::advance(1);
  EXPECT_EQ(found(), presenter->navigationItem()->searchController());
  presenter->dismissViewController(false);
  RunLoop::advance(1);
  const auto parent = searching();
  parent->addChildViewController(screen_);
  EXPECT_EQ(found(), parent->navigationItem()->searchController());
  screen_->navigationItem()->setSearchController(make<UISearchController>());
  EXPECT_EQ(found(), screen_->navigationItem()->searchController());
}

TEST_F(StepTargetTest, FindsTheTabBarHolderBehindAModal) {
  const auto tabs = make<UITabBarController>();
  const auto presenter = make<UIViewController>();
  tabs->setViewControllers({presenter});
  show(tabs);
  presenter->presentViewController(screen_, false);
  RunLoop::advance(1);
  EXPECT_EQ(TLStepTarget::find(step("x")).tabBarHolder, tabs);
}

TEST_F(StepTargetTest, FindsTheTabBarHolderAmongChildren) {
  const auto tabs = make<UITabBarController>();
  screen_->addChildViewController(tabs);
  EXPECT_EQ(TLStepTarget::find(step("x")).tabBarHolder, tabs);
}

TEST_F(StepTargetTest, FindsTheItemsOfEveryBarAroundTheScreen) {
  const auto named = [&](const char* name) {
    const auto item = make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, host_, sel("onTap:"));
    item->setAccessibilityIdentifier(name);
    return item;
  };
  const auto own = add<UIToolbar>("bar", CGRect{0, 300, 390, 44});
  own->setItems({named("own")});
  screen_->navigationItem()->setLeftBarButtonItem(named("left"));
  screen_->navigationItem()->setRightBarButtonItem(named("right"));
  screen_->setToolbarItems({UIBarButtonItem::flexibleSpaceItem(), named("toolbar")});
  const auto navigation = make<UINavigationController>(screen_);
  show(navigation);
  navigation->setToolbarHidden(false);
  for (const char* name : {"own", "left", "right", "toolbar"}) {
    host_->heard.clear();
    EXPECT_TRUE(perform(step(name)).success) << name;
    EXPECT_THAT(host_->heard, ElementsAre("tap by UIBarButtonItem")) << name;
  }
}

TEST_F(StepTargetTest, PressesAnItemOnceWhereverItsButtonStands) {
  const auto named = [&](const char* name) {
    const auto item = make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, host_, sel("onTap:"));
    item->setAccessibilityIdentifier(name);
    return item;
  };
  add<UIToolbar>("bar", CGRect{0, 300, 390, 44})->setItems({named("own")});
  const auto sameName = add<UIView>("own");
  screen_->navigationItem()->setRightBarButtonItem(named("right"));
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({make<UINavigationController>(screen_)});
  show(tabs);
  EXPECT_FALSE(TLStepTarget::find(step("right")).view);
  EXPECT_EQ(TLStepTarget::find(step("own")).view, sameName) << "the item's button in front of it does not count";
  EXPECT_TRUE(perform(step("right")).success);
  EXPECT_EQ(host_->heard.size(), 1U);
}

TEST_F(StepTargetTest, PressesATabThatIsNamed) {
  const auto tabs = make<UITabBarController>();
  const auto other = make<UIViewController>();
  other->tabBarItem()->setAccessibilityIdentifier("second");
  tabs->setViewControllers({screen_, other});
  show(tabs);
  EXPECT_TRUE(perform(step("second")).success);
  EXPECT_EQ(tabs->selectedIndex(), 1);
}

TEST_F(StepTargetTest, LeavesBarButtonsOfACoveredScreenAlone) {
  const auto below = make<UIViewController>();
  const auto item = make<UIBarButtonItem>("Add", UIBarButtonItemStyle::plain, host_, sel("onTap:"));
  item->setAccessibilityIdentifier("add");
  below->navigationItem()->setRightBarButtonItem(item);
  const auto navigation = make<UINavigationController>(below);
  show(navigation);
  navigation->pushViewController(screen_, false);
  RunLoop::advance(1);
  EXPECT_EQ(TLStepTarget::find(step("add")).barButtonItem, nullptr);
}

TEST_F(StepTargetTest, FindsANamedViewInsideABarAsTheTarget) {
  const auto button = make<UIButton>();
  button->setTitle("Sort", UIControlState::normal);
  button->setAccessibilityIdentifier("sort");
  screen_->navigationItem()->setLeftBarButtonItem(make<UIBarButtonItem>(button));
  show(make<UINavigationController>(screen_));
  EXPECT_EQ(TLStepTarget::find(step("sort")).view, button);
  EXPECT_FALSE(TLStepTarget::find(step("sort")).barButtonItem);
  EXPECT_EQ(perform(step("sort")).resultValue, "Sort");
}

TEST_F(StepTargetTest, LooksForViewsInBarsOnlyWhenTheScreenIsInNoTabs) {
  const auto button = make<UIButton>();
  button->setAccessibilityIdentifier("sort");
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({screen_});
  tabs->navigationItem()->setLeftBarButtonItem(make<UIBarButtonItem>(button));
  show(make<UINavigationController>(tabs));
  ASSERT_EQ(screen_->navigationController()->navigationBar()->topItem(), tabs->navigationItem());
  EXPECT_FALSE(TLStepTarget::find(step("sort")).view);
}

TEST_F(StepTargetTest, FindsTheFirstViewDepthFirstOnTheNamedScreenAlone) {
  const auto box = add<UIView>("box");
  const auto first = make<UIView>();
  first->setAccessibilityIdentifier("pay");
  box->addSubview(first);
  add<UIView>("pay");
  EXPECT_EQ(TLStepTarget::findView("pay", "CartScreen"), first);
  for (const char* name : {"OtherScreen", "Cart", "Screen", "CartScreens", "cartscreen", ""}) {
    EXPECT_FALSE(TLStepTarget::findView("pay", name)) << name;
  }
  screen_->view()->setAccessibilityIdentifier("pay");
  EXPECT_EQ(TLStepTarget::findView("pay", "CartScreen"), screen_->view());
  Lumicor::shared().setCurrentViewController(nullptr);
  EXPECT_FALSE(TLStepTarget::findView("pay", "CartScreen"));
}

TEST_F(StepTargetTest, SearchesTheTabBarControllersViewWhenTheScreenIsInOne) {
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({screen_});
  show(tabs);
  tabs->tabBar()->setAccessibilityIdentifier("tabs");
  EXPECT_EQ(TLStepTarget::findView("tabs", "CartScreen"), tabs->tabBar());
}

TEST(StepTargets, IsThereWhenSomethingFitsTheKindOfStep) {
  struct Found {
    bool view, item, tabs, search;
  };
  const auto there = [](Found found, const char* type) {
    TLStepTarget target;
    if (found.view) target.view = make<UIView>();
    if (found.item) target.barButtonItem = make<UIBarButtonItem>();
    if (found.tabs) target.tabBarHolder = make<UITabBarController>();
    if (found.search) target.searchController = make<UISearchController>();
    return target.isThereFor(type);
  };
  const char* const kinds[] = {"TYPE_BUTTON", "TYPE_TABBAR", "TYPE_SEARCH", "TYPE_SEARCH_CANCEL"};
  const struct {
    Found found;
    bool expected[4];
  } rows[] = {
      {{false, false, false, false}, {false, false, false, false}},
      {{true, false, false, false}, {true, false, true, true}},
      {{false, true, false, false}, {true, false, false, false}},
      {{false, false, true, false}, {true, true, false, false}},
      {{false, false, false, true}, {true, false, true, true}},
      {{true, false, true, false}, {true, true, true, true}},
  };
  for (const auto& row : rows) {
    for (int kind = 0; kind < 4; ++kind) {
      EXPECT_EQ(there(row.found, kinds[kind]), row.expected[kind])
          << kinds[kind] << row.found.view << row.found.item << row.found.tabs << row.found.search;
    }
  }
}

}  // namespace lumicor::test
