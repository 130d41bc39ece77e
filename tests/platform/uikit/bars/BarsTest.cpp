#include "platform/animation/CALayer.h"
#include "platform/runtime/Exchangeable.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/bars/UITabBarItem.h"
#include "platform/uikit/bars/UIToolbar.h"
#include "platform/uikit/bars/_UIButtonBarButton.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/views/UIImageView.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UISystemSymbol.h"
#include "tests/platform/uikit/controllers/JournalScreen.h"
#include "tests/support/AppFixture.h"

namespace platform::test {
namespace {

class Target : public Object<Target, NSObject> {
 public:
  void pressed(Ref<NSObject> by) {
    ++presses;
    sender = by;
  }
  static void exportMethods(MethodTable<Target>& table) { table.add<&Target::pressed>("pressed:"); }
  int presses = 0;
  Ref<NSObject> sender;
};

class BarsTest : public AppFixture {
 protected:
  BarsTest() {
    a = make<JournalScreen>("A", journal);
    b = make<JournalScreen>("B", journal);
    a->setTitle("Teas");
    b->setTitle("Oolong");
    navigation = make<UINavigationController>(a);
    show(navigation);
  }
  const Ref<UINavigationBar> bar() { return navigation->navigationBar(); }
  void tapView(const Ref<UIView>& view) {
    ASSERT_NE(view, nullptr);
    tap(view->convertRect(view->bounds(), nullptr).center());
  }
  Ref<UIBarButtonItem> addItem(UIBarButtonSystemItem kind = UIBarButtonSystemItem::add) {
    return make<UIBarButtonItem>(kind, target, sel("pressed:"));
  }
  Journal journal;
  Ref<JournalScreen> a, b;
  Ref<UINavigationController> navigation;
  Ref<Target> target = make<Target>();
};

// ---- Items of the navigation bar

TEST_F(BarsTest, TheTitleStandsInTheMiddleAndFollowsTheItem) {
  const Ref<UILabel> title = bar()->titleLabel();
  ASSERT_NE(title, nullptr);
  EXPECT_EQ(title->superview(), bar());
  EXPECT_EQ(title->text(), "Teas");
  EXPECT_NEAR(title->frame().midX(), 195, 0.5);
  a->navigationItem()->setTitle("All teas");
  settle();
  EXPECT_EQ(bar()->titleLabel()->text(), "All teas");
  const auto own = make<UIView>(CGRect{0, 0, 100, 30});
  a->navigationItem()->setTitleView(own);
  settle();
  EXPECT_EQ(bar()->titleLabel(), nullptr);
  EXPECT_EQ(own->frame(), (CGRect{145, 7, 100, 30}));
  a->navigationItem()->setTitleView(nullptr);
  EXPECT_EQ(own->superview(), nullptr);
}

TEST_F(BarsTest, ATapOnABarButtonSendsItsActionInTheItemsName) {
  const auto item = addItem();
  EXPECT_EQ(item->view(), nullptr);
  a->navigationItem()->setRightBarButtonItem(item);
  settle();
  const Ref<UIView> button = item->view();
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(NSStringFromClass(button->classForCoder()), "_UIButtonBarButton");
  EXPECT_NEAR(button->frame().maxX(), 382, 0.5);
  tapView(button);
  EXPECT_EQ(target->presses, 1);
  EXPECT_EQ(target->sender, item);
  item->setEnabled(false);
  tapView(button);
  EXPECT_EQ(target->presses, 1);
}

TEST_F(BarsTest, TheBarsOwnViewOfAnItemCarriesTheItemsName) {
  const auto add = addItem();
  add->setAccessibilityIdentifier("add");
  const auto search = addItem(UIBarButtonSystemItem::search);
  const auto own = make<UIView>(CGRect{0, 0, 40, 20});
  own->setAccessibilityIdentifier("own");
  const auto custom = make<UIBarButtonItem>(own);
  custom->setAccessibilityIdentifier("custom");
  a->navigationItem()->setRightBarButtonItems({add, search, custom});
  const auto tab = make<UITabBarItem>("Shop", nullptr, 0);
  tab->setAccessibilityIdentifier("shop");
  const auto tabBar = make<UITabBar>();
  tabBar->setItems({tab});
  const auto shown = tabBar->viewForItem(tab);
  EXPECT_EQ(add->view()->accessibilityIdentifier(), "add");
  EXPECT_EQ(search->view()->accessibilityIdentifier(), std::nullopt);
  EXPECT_EQ(custom->view()->accessibilityIdentifier(), "own") << "a host's view has a name of its own";
  EXPECT_EQ(shown->accessibilityIdentifier(), "shop");

  search->setAccessibilityIdentifier("find");
  custom->setAccessibilityIdentifier("other");
  tab->setAccessibilityIdentifier("teas");
  EXPECT_EQ(search->view()->accessibilityIdentifier(), "find");
  EXPECT_EQ(own->accessibilityIdentifier(), "own");
  EXPECT_EQ(shown->accessibilityIdentifier(), "teas");
  add->setAccessibilityIdentifier(std::nullopt);
  tab->setAccessibilityIdentifier(std::nullopt);
  EXPECT_EQ(add->view()->accessibilityIdentifier(), std::nullopt);
  EXPECT_EQ(shown->accessibilityIdentifier(), std::nullopt);
}

TEST_F(BarsTest, TellsWhichItemAViewOfTheBarStandsFor) {
  const auto add = addItem();
  const auto own = make<UIView>(CGRect{0, 0, 40, 20});
  a->navigationItem()->setRightBarButtonItems({add, make<UIBarButtonItem>(own)});
  EXPECT_EQ(UIBarButtonItem::itemShownBy(*add->view()), add);
  EXPECT_EQ(UIBarButtonItem::itemShownBy(*own), nullptr);
  EXPECT_EQ(UIBarButtonItem::itemShownBy(*bar()), nullptr);
}

TEST_F(BarsTest, AnActionWithoutTargetGoesUpTheChainAndOneWhoseTargetDiedGoesNowhere) {
  class Answering : public Object<Answering, UINavigationController> {
   public:
    void pressed(Ref<NSObject> by) { sender = by; }
    static void exportMethods(MethodTable<Answering>& table) { table.add<&Answering::pressed>("pressed:"); }
    Ref<NSObject> sender;
  };
  const auto answering = make<Answering>(make<UIViewController>());
  show(answering);
  const auto item = make<UIBarButtonItem>("Go", UIBarButtonItemStyle::plain, nullptr, sel("pressed:"));
  answering->viewControllers()[0]->navigationItem()->setLeftBarButtonItem(item);
  settle();
  tapView(item->view());
  EXPECT_EQ(answering->sender, item);
  answering->sender = nullptr;
  item->setTarget(target);
  target = nullptr;
  tapView(item->view());
  EXPECT_EQ(answering->sender, nullptr);
}

TEST_F(BarsTest, SeveralItemsStandFromTheOutsideInwards) {
  const auto first = addItem();
  const auto second = addItem(UIBarButtonSystemItem::search);
  const auto own = make<UIView>(CGRect{0, 0, 40, 20});
  const auto custom = make<UIBarButtonItem>(own);
  a->navigationItem()->setRightBarButtonItems({first, second});
  a->navigationItem()->setLeftBarButtonItems({custom, nullptr});
  settle();
  EXPECT_GT(first->view()->frame().minX(), second->view()->frame().minX());
  EXPECT_EQ(custom->view(), own);
  EXPECT_EQ(own->frame(), (CGRect{16, 12, 40, 20}));
  a->navigationItem()->setRightBarButtonItems({second});
  settle();
  EXPECT_EQ(first->view()->superview(), nullptr);
  EXPECT_EQ(a->navigationItem()->rightBarButtonItem(), second);
}

/// What takes the place of the system item's initialiser: the item becomes its own target.
void hookedInit(UIBarButtonItem& self, UIBarButtonSystemItem kind, Ref<NSObject>, SEL) {
  const Ref<NSObject> me = self.NSObject::self(static_cast<NSObject*>(&self));
  self.perform(sel("hooked_initWithSystemItem:"), kind, me, sel("invokeOriginalAction:"));
}

TEST_F(BarsTest, TheInitialisersOfItemsCanBeExchanged) {
  Class& cls = UIBarButtonItem::cls();
  class_addMethod<&hookedInit>(cls, sel("hooked_initWithSystemItem:"));
  Method* const own = class_getInstanceMethod(cls, sel("hooked_initWithSystemItem:"));
  Method* const original = class_getInstanceMethod(cls, sel("initWithBarButtonSystemItem:target:action:"));
  method_exchangeImplementations(original, own);
  const auto item = addItem(UIBarButtonSystemItem::trash);
  const auto space = UIBarButtonItem::flexibleSpaceItem();
  method_exchangeImplementations(original, own);
  EXPECT_EQ(item->target(), item);
  EXPECT_EQ(item->action(), sel("invokeOriginalAction:"));
  EXPECT_EQ(item->systemItem(), UIBarButtonSystemItem::trash);
  EXPECT_NE(item->image(), nullptr);
  EXPECT_EQ(space->target(), nullptr) << "spaces are no buttons";
}

// ---- The way back

TEST_F(BarsTest, TheBackButtonCarriesThePreviousTitleAndLeadsBack) {
  EXPECT_EQ(bar()->backButtonView(), nullptr);
  navigation->pushViewController(b, true);
  advance(0.5);
  EXPECT_EQ(bar()->titleLabel()->text(), "Oolong");
  EXPECT_EQ(bar()->items().size(), 2u);
  EXPECT_EQ(bar()->backItem(), a->navigationItem());
  const auto back = as<_UIButtonBarButton>(bar()->backButtonView());
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->item()->title(), "Teas");
  tapView(back);
  EXPECT_EQ(navigation->topViewController(), a);
  advance(0.5);
  EXPECT_EQ(bar()->titleLabel()->text(), "Teas");
  EXPECT_EQ(bar()->backButtonView(), nullptr);
  EXPECT_EQ(back->superview(), nullptr);
}

TEST_F(BarsTest, ALongBackTitleBecomesBackAndThenOnlyTheChevron) {
  const auto backTitle = [this] { return *as<_UIButtonBarButton>(bar()->backButtonView())->item()->title(); };
  a->setTitle("A very long title of the first screen of them all");
  navigation->pushViewController(b, false);
  settle();
  EXPECT_EQ(backTitle(), "Back");
  b->setTitle("Another title that takes nearly all room");
  settle();
  EXPECT_EQ(backTitle(), "");
  b->setTitle("Oolong");
  a->navigationItem()->setBackButtonTitle("Shop");
  settle();
  EXPECT_EQ(backTitle(), "Shop");
  b->navigationItem()->setHidesBackButton(true);
  EXPECT_EQ(bar()->backButtonView(), nullptr);
}

TEST_F(BarsTest, OwnLeftItemsTakeThePlaceOfTheBackButtonUnlessTheySupplementIt) {
  b->navigationItem()->setLeftBarButtonItem(addItem());
  navigation->pushViewController(b, false);
  EXPECT_EQ(bar()->backButtonView(), nullptr);
  b->navigationItem()->setLeftItemsSupplementBackButton(true);
  settle();
  ASSERT_NE(bar()->backButtonView(), nullptr);
  EXPECT_GT(b->navigationItem()->leftBarButtonItem()->view()->frame().minX(), bar()->backButtonView()->frame().maxX());
}

TEST_F(BarsTest, ABarOfTheHostsOwnGoesBackByItself) {
  const auto own = make<UINavigationBar>(CGRect{0, 400, 390, 44});
  a->view()->addSubview(own);
  own->pushNavigationItem(make<UINavigationItem>("One"), false);
  own->pushNavigationItem(make<UINavigationItem>("Two"), false);
  settle();
  tapView(own->backButtonView());
  advance(0.5);
  EXPECT_EQ(own->topItem()->title(), "One");
  EXPECT_EQ(own->popNavigationItem(false), nullptr);
}

// ---- Room for the screens

TEST_F(BarsTest, TheBarTakesItsRoomFromTheSafeArea) {
  EXPECT_EQ(bar()->frame(), (CGRect{0, 47, 390, 44}));
  EXPECT_EQ(a->view()->safeAreaInsets(), (UIEdgeInsets{91, 0, 34, 0}));
  EXPECT_EQ(a->view()->frame(), (CGRect{0, 0, 390, 844}));
  navigation->setNavigationBarHidden(true, false);
  settle();
  EXPECT_TRUE(navigation->isNavigationBarHidden());
  EXPECT_TRUE(bar()->isHidden());
  EXPECT_EQ(a->view()->safeAreaInsets().top, 47);
  navigation->setNavigationBarHidden(false, false);
  settle();
  EXPECT_FALSE(bar()->isHidden());
  EXPECT_EQ(bar()->frame().minY(), 47);
  EXPECT_EQ(a->view()->safeAreaInsets().top, 91);
}

TEST_F(BarsTest, AnAnimatedHidingSlidesTheBarOutBeforeItIsHidden) {
  navigation->setNavigationBarHidden(true, true);
  EXPECT_TRUE(navigation->isNavigationBarHidden());
  EXPECT_EQ(a->view()->safeAreaInsets().top, 47);
  advance(0.1);
  EXPECT_FALSE(bar()->isHidden());
  const double y = bar()->layer()->presentationLayer()->frame().minY();
  EXPECT_TRUE(y < 40 && y > -40) << y;
  advance(0.2);
  EXPECT_TRUE(bar()->isHidden());
  navigation->setNavigationBarHidden(false, true);
  navigation->setNavigationBarHidden(true, true);
  advance(0.5);
  EXPECT_TRUE(bar()->isHidden());
}

TEST_F(BarsTest, AScreenThatHidesTheBarAsItComesKeepsTheSafeAreaOfTheOneThatLeaves) {
  b->onWillAppear = [this] { navigation->setNavigationBarHidden(true, false); };
  navigation->pushViewController(b, true);
  EXPECT_TRUE(bar()->isHidden());
  EXPECT_EQ(b->view()->safeAreaInsets().top, 47);
  EXPECT_EQ(a->view()->safeAreaInsets().top, 91);
  advance(0.5);
  a->onWillAppear = [this] { navigation->setNavigationBarHidden(false, true); };
  navigation->popViewControllerAnimated(true);
  EXPECT_FALSE(bar()->isHidden());
  advance(0.5);
  EXPECT_EQ(a->view()->safeAreaInsets().top, 91);
  EXPECT_EQ(bar()->frame().minY(), 47);
}

TEST_F(BarsTest, LargeTitlesMakeTheRootsBarTaller) {
  bar()->setPrefersLargeTitles(true);
  settle();
  EXPECT_EQ(bar()->frame().height(), 96);
  EXPECT_EQ(a->view()->safeAreaInsets().top, 143);
  navigation->pushViewController(b, false);
  settle();
  EXPECT_EQ(bar()->frame().height(), 44);
  EXPECT_EQ(b->view()->safeAreaInsets().top, 91);
}

// ---- Toolbars

TEST_F(BarsTest, TheToolbarShowsTheItemsOfTheTopScreenAboveTheHomeIndicator) {
  const auto left = addItem();
  const auto right = addItem(UIBarButtonSystemItem::trash);
  a->setToolbarItems({left, UIBarButtonItem::flexibleSpaceItem(), right});
  EXPECT_TRUE(navigation->isToolbarHidden());
  navigation->setToolbarHidden(false);
  settle();
  const Ref<UIToolbar> toolbar = navigation->toolbar();
  EXPECT_EQ(toolbar->frame(), (CGRect{0, 766, 390, 44}));
  EXPECT_EQ(a->view()->safeAreaInsets().bottom, 78);
  EXPECT_EQ(toolbar->items().size(), 3u);
  EXPECT_NEAR(left->view()->frame().minX(), 8, 0.5);
  EXPECT_NEAR(right->view()->frame().maxX(), 382, 0.5);
  tapView(right->view());
  EXPECT_EQ(target->sender, right);
  navigation->pushViewController(b, false);
  EXPECT_TRUE(toolbar->items().empty());
  EXPECT_EQ(left->view()->superview(), nullptr);
}

TEST_F(BarsTest, AButtonGrowsWithItsTitleWhereverItStands) {
  const auto inBar = make<UIBarButtonItem>("Go", UIBarButtonItemStyle::plain, target, sel("pressed:"));
  const auto inToolbar = make<UIBarButtonItem>("Go", UIBarButtonItemStyle::plain, target, sel("pressed:"));
  a->navigationItem()->setRightBarButtonItem(inBar);
  a->setToolbarItems({UIBarButtonItem::flexibleSpaceItem(), inToolbar});
  navigation->setToolbarHidden(false);
  settle();
  for (const auto& item : {inBar, inToolbar}) {
    const double width = item->view()->bounds().size.width;
    item->setTitle("Go on and on");
    settle();
    EXPECT_GT(item->view()->bounds().size.width, width + 40);
    EXPECT_NEAR(item->view()->frame().maxX(), 382, 0.5);
    item->setTitle("Go");
    settle();
    EXPECT_EQ(item->view()->bounds().size.width, width);
  }
}

TEST_F(BarsTest, ACustomViewCanTakeTheButtonsPlace) {
  const auto inBar = addItem();
  const auto inToolbar = addItem();
  a->navigationItem()->setRightBarButtonItem(inBar);
  a->setToolbarItems({UIBarButtonItem::flexibleSpaceItem(), inToolbar});
  navigation->setToolbarHidden(false);
  settle();
  for (const auto& item : {inBar, inToolbar}) {
    const Ref<UIView> button = item->view();
    const Ref<UIView> bar = button->superview();
    const auto spinner = make<UIView>(CGRect{0, 0, 30, 30});
    item->setCustomView(spinner);
    settle();
    EXPECT_EQ(spinner->superview(), bar);
    EXPECT_EQ(button->superview(), nullptr);
    EXPECT_NEAR(spinner->frame().midY(), 22, 0.5);
    EXPECT_GT(spinner->frame().minX(), 300);
    a->view()->addSubview(spinner);  // the host wants it elsewhere
    item->setCustomView(nullptr);
    settle();
    EXPECT_EQ(spinner->superview(), a->view());
    EXPECT_EQ(button->superview(), bar);
  }
}

TEST_F(BarsTest, TheBackButtonIsPressedEvenIfTheTitleChangesMeanwhile) {
  navigation->pushViewController(b, false);
  settle();
  const CGPoint back = bar()->backButtonView()->convertRect(bar()->backButtonView()->bounds(), nullptr).center();
  window()->deliverTouch(1, UITouchPhase::began, back, Clock::mediaTime());
  advance(0.05);
  b->setTitle("Oolong, steeped for 3 s");
  settle();
  window()->deliverTouch(1, UITouchPhase::ended, back, Clock::mediaTime());
  advance(1);
  EXPECT_EQ(navigation->topViewController(), a);
}

// ---- Pictures

TEST_F(BarsTest, ThePictureOfTheBars) {
  bar()->setBarTintColor(std::nullopt);
  b->navigationItem()->setRightBarButtonItems(
      {make<UIBarButtonItem>(UIBarButtonSystemItem::done, target, sel("pressed:")),
       addItem(UIBarButtonSystemItem::action)});
  b->setToolbarItems({addItem(UIBarButtonSystemItem::refresh), UIBarButtonItem::flexibleSpaceItem(),
                      addItem(UIBarButtonSystemItem::compose), UIBarButtonItem::flexibleSpaceItem(),
                      addItem(UIBarButtonSystemItem::trash)});
  navigation->setToolbarHidden(false);
  navigation->pushViewController(b, false);
  picture("bars");
}

TEST_F(BarsTest, ThePictureOfAPushHalfway) {
  a->view()->setBackgroundColor(UIColor::systemGray6());
  navigation->pushViewController(b, true);
  advance(0.175);
  picture("push_halfway");
}

TEST_F(BarsTest, ThePictureOfTheSymbols) {
  navigation->setNavigationBarHidden(true);
  double x = 15;
  double y = 60;
  for (const std::string& name : UISystemSymbol::names()) {
    const auto view = make<UIImageView>(UISystemSymbol::image(name, 30));
    view->setFrame({x, y, 36, 36});
    view->setTintColor(UIColor::label());
    a->view()->addSubview(view);
    x += 60;
    if (x > 340) {
      x = 15;
      y += 60;
    }
  }
  picture("symbols");
  EXPECT_EQ(UISystemSymbol::image("no such symbol"), nullptr);
  EXPECT_EQ(UISystemSymbol::image("cart"), UISystemSymbol::image("cart"));
}

}  // namespace
}  // namespace platform::test
