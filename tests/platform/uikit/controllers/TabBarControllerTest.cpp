#include "platform/animation/CALayer.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/views/UISystemSymbol.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class TabDelegate : public Object<TabDelegate, NSObject> {
 public:
  explicit TabDelegate(Journal journal) : journal_(std::move(journal)) {}
  bool should(Ref<UITabBarController>, Ref<UIViewController> screen) {
    journal_.write("(should " + screen->title() + ")");
    return allows;
  }
  void did(Ref<UITabBarController>, Ref<UIViewController> screen) { journal_.write("(did " + screen->title() + ")"); }
  static void exportMethods(MethodTable<TabDelegate>& table) {
    table.add<&TabDelegate::should>("tabBarController:shouldSelectViewController:")
        .add<&TabDelegate::did>("tabBarController:didSelectViewController:");
  }
  bool allows = true;

 private:
  Journal journal_;
};

class TabBarControllerTest : public AppFixture {
 protected:
  TabBarControllerTest() {
    a = screen("A");
    b = screen("B");
    c = screen("C");
    delegate = make<TabDelegate>(journal);
    tabs = make<UITabBarController>();
    tabs->setDelegate(delegate);
  }
  Ref<JournalScreen> screen(const std::string& name) { return make<JournalScreen>(name, journal); }
  void showTabs() {
    tabs->setViewControllers({a, b, c});
    show(tabs);
    journal.take();
  }
  void tapTab(std::size_t index) {
    const Ref<UITabBar> bar = tabs->tabBar();
    const Ref<UIView> button = bar->viewForItem(bar->items().at(index));
    tap(button->convertRect(button->bounds(), nullptr).center());
  }
  Journal journal;
  Ref<JournalScreen> a, b, c;
  Ref<TabDelegate> delegate;
  Ref<UITabBarController> tabs;
};

TEST_F(TabBarControllerTest, ScreensGetTheirParentAtOnceAndTheirViewsWhenTheyAreFirstSelected) {
  tabs->setViewControllers({a, b, c});
  EXPECT_EQ(journal.take(), "A.will+ B.will+ C.will+ A.did+ B.did+ C.did+");
  EXPECT_EQ(tabs->selectedViewController(), a);
  show(tabs);
  EXPECT_EQ(journal.take(), "A.load A.willAppear A.didAppear");
  tabs->setSelectedIndex(1);
  EXPECT_EQ(journal.take(), "B.load B.willAppear A.willDisappear A.didDisappear B.didAppear");
  EXPECT_EQ(a->view()->window(), nullptr);
  EXPECT_EQ(b->view()->window(), window());
  tabs->setSelectedViewController(a);
  EXPECT_EQ(journal.take(), "A.willAppear B.willDisappear B.didDisappear A.didAppear");
  EXPECT_FALSE(c->isViewLoaded());
  EXPECT_EQ(c->tabBarController(), tabs);
}

TEST_F(TabBarControllerTest, AnIndexOutsideSelectsNothing) {
  showTabs();
  for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{3}, INT64_MAX, INT64_MIN}) {
    tabs->setSelectedIndex(index);
    EXPECT_EQ(tabs->selectedIndex(), 0);
  }
  tabs->setSelectedViewController(screen("stranger"));
  tabs->setSelectedViewController(nullptr);
  EXPECT_EQ(tabs->selectedViewController(), a);
  EXPECT_EQ(journal.take(), "");
  const auto empty = make<UITabBarController>();
  empty->setSelectedIndex(0);
  EXPECT_EQ(empty->selectedIndex(), -1);
  EXPECT_EQ(empty->selectedViewController(), nullptr);
  show(empty);
}

TEST_F(TabBarControllerTest, OnlyAPersonsTapsReachTheDelegate) {
  showTabs();
  tabs->setSelectedIndex(2);
  EXPECT_THAT(journal.take(), testing::Not(testing::HasSubstr("(")));
  tapTab(1);
  EXPECT_EQ(journal.take(), "(should B) B.load B.willAppear C.willDisappear C.didDisappear B.didAppear (did B)");
  EXPECT_EQ(tabs->selectedIndex(), 1);
  EXPECT_EQ(tabs->tabBar()->selectedItem(), b->tabBarItem());
  delegate->allows = false;
  tapTab(0);
  EXPECT_EQ(journal.take(), "(should A)");
  EXPECT_EQ(tabs->selectedIndex(), 1);
  delegate = nullptr;
  tapTab(0);
  EXPECT_EQ(tabs->selectedIndex(), 0);
}

TEST_F(TabBarControllerTest, TappingTheSelectedTabGoesBackToItsRoot) {
  const auto navigation = make<UINavigationController>(a);
  navigation->setTitle("N");
  tabs->setViewControllers({navigation, b});
  show(tabs);
  navigation->pushViewController(c, false);
  journal.take();
  tapTab(0);
  advance(0.5);
  EXPECT_EQ(navigation->topViewController(), a);
  EXPECT_EQ(journal.take(),
            "(should N) C.will- C.willDisappear~ A.willAppear~ (did N) C.didDisappear~ A.didAppear~ C.did-");
}

TEST_F(TabBarControllerTest, SelectingInACallbackEndsOnTheLastChoice) {
  showTabs();
  b->onWillAppear = [this] { tabs->setSelectedIndex(2); };
  tabs->setSelectedIndex(1);
  EXPECT_EQ(journal.take(),
            "B.load B.willAppear A.willDisappear A.didDisappear B.didAppear C.load C.willAppear B.willDisappear "
            "B.didDisappear C.didAppear");
  EXPECT_EQ(tabs->selectedIndex(), 2);
  EXPECT_EQ(c->view()->window(), window());
}

TEST_F(TabBarControllerTest, AScreenMaySelectAnotherAsItFirstAppears) {
  tabs->setViewControllers({a, b, c});
  a->onWillAppear = [this] { tabs->setSelectedIndex(1); };
  show(tabs);
  EXPECT_EQ(tabs->selectedIndex(), 1);
  EXPECT_EQ(b->view()->window(), window());
  EXPECT_EQ(a->view()->window(), nullptr);
}

TEST_F(TabBarControllerTest, NewScreensKeepTheSelectedOneWhenItIsAmongThem) {
  showTabs();
  tabs->setSelectedIndex(1);
  journal.take();
  tabs->setViewControllers({c, b});
  EXPECT_EQ(journal.take(), "A.will- A.did-");
  EXPECT_EQ(tabs->selectedIndex(), 1);
  EXPECT_EQ(tabs->tabBar()->items().size(), 2u);
  tabs->setViewControllers({c, a});
  EXPECT_EQ(journal.take(),
            "B.will- A.will+ C.load C.willAppear B.willDisappear B.didDisappear C.didAppear A.did+ B.did-");
  c->removeFromParentViewController();
  EXPECT_EQ(tabs->selectedViewController(), a);
  tabs->setViewControllers({});
  EXPECT_EQ(tabs->selectedIndex(), -1);
  EXPECT_EQ(a->view()->superview(), nullptr);
}

TEST_F(TabBarControllerTest, SelectionOutOfSightIsShownOnceTheControllerIs) {
  tabs->setViewControllers({a, b, c});
  tabs->setSelectedIndex(2);
  journal.take();
  show(tabs);
  EXPECT_EQ(journal.take(), "C.load C.willAppear C.didAppear");
  show(make<UIViewController>());
  tabs->setSelectedIndex(0);
  EXPECT_EQ(journal.take(), "C.willDisappear C.didDisappear");
  show(tabs);
  EXPECT_EQ(journal.take(), "A.load A.willAppear A.didAppear");
  EXPECT_EQ(c->view()->superview(), nullptr);
}

TEST_F(TabBarControllerTest, TheTabBarTakesItsRoomWhileItIsVisible) {
  const auto navigation = make<UINavigationController>(a);
  tabs->setViewControllers({navigation, b});
  show(tabs);
  EXPECT_EQ(tabs->tabBar()->frame(), (CGRect{0, 761, 390, 83}));
  EXPECT_EQ(a->view()->safeAreaInsets(), (UIEdgeInsets{91, 0, 83, 0}));
  tabs->tabBar()->setHidden(true);
  EXPECT_EQ(a->view()->safeAreaInsets(), (UIEdgeInsets{91, 0, 34, 0}));
  tabs->setSelectedIndex(1);
  settle();
  EXPECT_EQ(b->view()->safeAreaInsets(), (UIEdgeInsets{47, 0, 34, 0}));
  tabs->tabBar()->setHidden(false);
  EXPECT_EQ(b->view()->safeAreaInsets(), (UIEdgeInsets{47, 0, 83, 0}));
}

TEST_F(TabBarControllerTest, AScreenThatHidesTheBottomBarPushesTheTabBarAway) {
  const auto navigation = make<UINavigationController>(a);
  tabs->setViewControllers({navigation, b});
  show(tabs);
  c->setHidesBottomBarWhenPushed(true);
  navigation->pushViewController(c, true);
  advance(0.1);
  EXPECT_EQ(c->view()->safeAreaInsets().bottom, 34) << "laid out for where it will stand";
  EXPECT_EQ(a->view()->safeAreaInsets().bottom, 83) << "keeps what it had";
  EXPECT_GT(tabs->tabBar()->layer()->presentationLayer()->frame().maxX(), 200);
  advance(0.4);
  EXPECT_EQ(tabs->tabBar()->frame().maxX(), 0);
  EXPECT_EQ(c->view()->safeAreaInsets().bottom, 34);
  EXPECT_FALSE(tabs->tabBar()->isHidden());
  tabs->setSelectedIndex(1);
  EXPECT_EQ(tabs->tabBar()->frame().minX(), 0);
  EXPECT_EQ(b->view()->safeAreaInsets().bottom, 83);
  tabs->setSelectedIndex(0);
  navigation->popViewControllerAnimated(true);
  advance(0.5);
  EXPECT_EQ(tabs->tabBar()->frame().minX(), 0);
  EXPECT_EQ(a->view()->safeAreaInsets().bottom, 83);
}

TEST_F(TabBarControllerTest, SwitchingTabsEndsATransitionInTheTabThatIsLeft) {
  const auto navigation = make<UINavigationController>(a);
  tabs->setViewControllers({navigation, b});
  show(tabs);
  navigation->pushViewController(c, true);
  journal.take();
  tabs->setSelectedIndex(1);
  EXPECT_EQ(journal.take(),
            "B.load B.willAppear A.didDisappear~ C.didAppear~ C.did+ C.willDisappear C.didDisappear B.didAppear");
  advance(1);
  EXPECT_EQ(journal.take(), "");
}

TEST_F(TabBarControllerTest, ANavigationControllerShowsTheItemOfItsRootAndTitlesFollow) {
  a->tabBarItem()->setBadgeValue("3");
  const auto navigation = make<UINavigationController>(a);
  tabs->setViewControllers({navigation, b});
  EXPECT_EQ(tabs->tabBar()->items()[0], a->tabBarItem());
  b->setTitle("Basket");
  EXPECT_EQ(tabs->tabBar()->items()[1]->title(), "Basket");
  const auto other = make<UITabBarItem>("Other", UISystemSymbol::image("leaf"), 7);
  b->setTabBarItem(other);
  EXPECT_EQ(tabs->tabBar()->items()[1], other);
  EXPECT_EQ(other->tag(), 7);
}

TEST_F(TabBarControllerTest, ATabBarOfTheHostsOwnTellsItsDelegateOfTaps) {
  class BarDelegate : public Object<BarDelegate, NSObject> {
   public:
    void selected(Ref<UITabBar>, Ref<UITabBarItem> item) { last = item; }
    static void exportMethods(MethodTable<BarDelegate>& table) {
      table.add<&BarDelegate::selected>("tabBar:didSelectItem:");
    }
    Ref<UITabBarItem> last;
  };
  const auto bar = make<UITabBar>(CGRect{0, 300, 390, 49});
  const auto receiver = make<BarDelegate>();
  const auto one = make<UITabBarItem>("One", nullptr, 0);
  const auto two = make<UITabBarItem>("Two", nullptr, 1);
  bar->setItems({one, two});
  bar->setDelegate(receiver);
  show(a);
  a->view()->addSubview(bar);
  settle();
  bar->setSelectedItem(one);
  EXPECT_EQ(receiver->last, nullptr);
  tap(CGPoint{290, 320});
  EXPECT_EQ(receiver->last, two);
  EXPECT_EQ(bar->selectedItem(), two);
  bar->setSelectedItem(make<UITabBarItem>());
  EXPECT_EQ(bar->selectedItem(), two);
}

TEST_F(TabBarControllerTest, EverythingIsFreedWithTheController) {
  showTabs();
  a->writesDeath = b->writesDeath = true;
  a = b = nullptr;
  const Weak<UITabBarController> watched = tabs;
  tabs = nullptr;
  show(make<UIViewController>());
  EXPECT_TRUE(watched.expired());
  EXPECT_THAT(journal.take(), testing::EndsWith("A.gone B.gone"));
}

TEST_F(TabBarControllerTest, ThePictureOfTheTabs) {
  const auto item = [](const char* title, const char* symbol, const char* selected) {
    return make<UITabBarItem>(title, UISystemSymbol::image(symbol), UISystemSymbol::image(selected));
  };
  a->setTabBarItem(item("Shop", "storefront", "storefront.fill"));
  b->setTabBarItem(item("Cart", "cart", "cart.fill"));
  c->setTabBarItem(item("Account", "person", "person.fill"));
  b->tabBarItem()->setBadgeValue("2");
  a->setTitle("Shop");
  const auto navigation = make<UINavigationController>(a);
  tabs->setViewControllers({navigation, b, c});
  show(tabs);
  picture("tabs");
}

}  // namespace
}  // namespace platform::test
