#include <gmock/gmock.h>

#include "lumicor/actions/TLActionsTask.h"
#include "lumicor/capture/LumicorHooks.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/text/UISearchBar.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;

/// A screen that hears of its own life, to see that the platform's part still happens.
template <class Screen>
struct HostScreen : Object<Screen, UIViewController> {
  std::vector<std::string> heard;
  void viewDidAppear(bool animated) override {
    heard.push_back("will call");
    UIViewController::viewDidAppear(animated);
    heard.push_back("appeared");
  }
  void prepareForSegue(Ref<UIStoryboardSegue> segue, Ref<NSObject> sender) override {
    UIViewController::prepareForSegue(segue, sender);
    heard.push_back("segue " + segue->identifier());
  }
};
struct HomeScreen : HostScreen<HomeScreen> {};
struct DetailScreen : HostScreen<DetailScreen> {};
/// A container by its name: such screens are passed over.
struct MyUINavigationHelper : HostScreen<MyUINavigationHelper> {};

/// Containers that a host made its own, by names that are no container's.
struct ShopNav : Object<ShopNav, UINavigationController> {};
struct ShopTabs : Object<ShopTabs, UITabBarController> {};

class LumicorHooksTest : public SessionTest {
 protected:
  LumicorHooksTest() {
    LumicorHooks::install();
    LumicorHooks::install();  // a second time does nothing
    Lumicor::shared().setCurrentViewListener([this](const std::string& name) { views_.push_back(name); });
  }
  void appear(const Ref<UIViewController>& root) {
    show(root);
    RunLoop::advance(1);
  }
  Ref<UIViewController> current() const { return Lumicor::shared().getCurrentViewController(); }

  StubService service_;
  std::vector<std::string> views_;
};

TEST_F(LumicorHooksTest, FollowsTheScreenThatAppears) {
  const auto home = make<HomeScreen>();
  appear(home);
  EXPECT_EQ(current(), home);
  EXPECT_THAT(views_, ElementsAre("HomeScreen"));
  EXPECT_THAT(home->heard, ElementsAre("will call", "appeared"));
}

std::vector<std::string> reached;
void countedAppear(UIViewController&, bool) { reached.push_back("appear"); }
void countedDisappear(UIViewController&, bool) { reached.push_back("disappear"); }
void countedSegue(UIViewController&, Ref<UIStoryboardSegue>, Ref<NSObject>) { reached.push_back("segue"); }

TEST_F(LumicorHooksTest, CallsThroughToWhateverThePlatformsMethodsAre) {
  Class& cls = UIViewController::cls();
  class_addMethod<&countedAppear>(cls, sel("counted appear"));
  class_addMethod<&countedDisappear>(cls, sel("counted disappear"));
  class_addMethod<&countedSegue>(cls, sel("counted segue"));
  // The platform's implementations stand behind the selectors of the replacements; others take their place for a while.
  const auto exchangeAll = [&] {
    for (const auto& [replaced, counted] : {std::pair("swizzled_viewDidAppear:", "counted appear"),
                                            std::pair("swizzled_viewWillDisappear:", "counted disappear"),
                                            std::pair("swizzled_prepareFor:sender:", "counted segue")}) {
      method_exchangeImplementations(class_getInstanceMethod(cls, sel(replaced)),
                                     class_getInstanceMethod(cls, sel(counted)));
    }
  };
  exchangeAll();
  reached.clear();
  const auto home = make<HomeScreen>();
  home->viewDidAppear(false);
  home->viewWillDisappear(false);
  home->prepareForSegue(make<UIStoryboardSegue>("x", UIStoryboardSegue::Kind::show, home, make<DetailScreen>()),
                        nullptr);
  exchangeAll();
  EXPECT_THAT(reached, ElementsAre("appear", "disappear", "segue"));
}

TEST_F(LumicorHooksTest, IsInstalledWhenASessionStarts) {
  service_.answer("/sdk/init", json(R"({"statusCode":500})"));
  Lumicor::shared().initialize("key", "ada");
  RunLoop::settle();
  appear(make<HomeScreen>());
  EXPECT_EQ(Lumicor::shared().getCurrentView(), "HomeScreen") << "also before the session is initialised";
}

TEST_F(LumicorHooksTest, PassesContainersOver) {
  const auto home = make<HomeScreen>();
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({make<UINavigationController>(home), make<DetailScreen>()});
  appear(tabs);
  EXPECT_EQ(current(), home);
  home->presentViewController(make<MyUINavigationHelper>(), false);
  RunLoop::advance(1);
  EXPECT_EQ(current(), home);
  EXPECT_EQ(Lumicor::shared().getCurrentView(), "HomeScreen");
}

TEST_F(LumicorHooksTest, LeavesTheScreenInFrontOfContainersThatTheHostMadeItsOwn) {
  const auto home = make<HomeScreen>();
  const auto detail = make<DetailScreen>();
  const auto tabs = make<ShopTabs>();
  tabs->setViewControllers({make<ShopNav>(home), make<ShopNav>(detail)});
  appear(tabs);
  EXPECT_EQ(current(), home);
  EXPECT_THAT(views_, ElementsAre("ShopTabs", "ShopNav", "HomeScreen")) << "the containers come first";
  tabs->setSelectedIndex(1);
  EXPECT_EQ(current(), detail);

  const auto modal = make<HomeScreen>();
  detail->presentViewController(make<ShopNav>(modal), true);
  RunLoop::advance(1);
  EXPECT_EQ(current(), modal);
  modal->dismissViewController(true);
  RunLoop::advance(3);
  EXPECT_EQ(current(), detail);
  EXPECT_EQ(Lumicor::shared().getCurrentView(), "DetailScreen");
}

TEST_F(LumicorHooksTest, LetsStepsFindTheirTargetsInContainersThatTheHostMadeItsOwn) {
  const auto home = make<HomeScreen>();
  const auto button = make<UIButton>();
  button->setAccessibilityIdentifier("pay");
  home->view()->addSubview(button);
  const auto tabs = make<ShopTabs>();
  tabs->setViewControllers({make<ShopNav>(home)});
  appear(tabs);
  std::optional<bool> succeeded;
  const TLAction pay{"pay", 0, "", {}, "HomeScreen", "TYPE_BUTTON"};
  make<TLActionsTask>(std::vector{pay, pay}, [&](const TLTaskResult& result) { succeeded = result.success; })->start();
  RunLoop::advance(10);
  EXPECT_EQ(succeeded, true);
}

TEST_F(LumicorHooksTest, LeavesTheScreenInFrontAfterASegueToAContainerThatTheHostMadeItsOwn) {
  const auto home = make<HomeScreen>();
  const auto detail = make<DetailScreen>();
  appear(home);
  home->registerSegue("more", UIViewController::SegueKind::present, [&] { return make<ShopNav>(detail); });
  home->performSegue("more", home);
  EXPECT_EQ(Lumicor::shared().getCurrentSegueController(), home);
  RunLoop::advance(1);
  EXPECT_EQ(current(), detail);
  EXPECT_FALSE(Lumicor::shared().getCurrentSegueController()) << "it has arrived";
  RunLoop::advance(5);
  EXPECT_EQ(current(), detail);
  EXPECT_THAT(views_, ElementsAre("HomeScreen", "ShopNav", "DetailScreen"));
}

TEST_F(LumicorHooksTest, GoesBackToTheScreenBehindASecondAfterAPopOrADismissal) {
  const auto home = make<HomeScreen>();
  const auto navigation = make<UINavigationController>(home);
  appear(navigation);
  const auto detail = make<DetailScreen>();
  detail->setModalPresentationStyle(UIModalPresentationStyle::overCurrentContext);
  home->presentViewController(detail, false);
  RunLoop::advance(1);
  EXPECT_EQ(current(), detail);
  views_.clear();
  detail->dismissViewController(false);
  RunLoop::advance(0.9);
  EXPECT_THAT(views_, IsEmpty()) << "a screen that stayed visible behind does not appear again by itself";
  RunLoop::advance(0.2);
  EXPECT_EQ(current(), home);
  EXPECT_THAT(views_, ElementsAre("HomeScreen"));

  navigation->pushViewController(make<DetailScreen>(), false);
  RunLoop::advance(1);
  navigation->popViewControllerAnimated(false);
  RunLoop::advance(2);
  EXPECT_EQ(current(), home);
}

TEST_F(LumicorHooksTest, NotesASeguesDestinationWhenItsTimeHasCome) {
  const auto home = make<HomeScreen>();
  appear(home);
  const auto detail = make<DetailScreen>();
  const auto segue = make<UIStoryboardSegue>("to-detail", UIStoryboardSegue::Kind::show, home, detail);
  home->prepareForSegue(segue, nullptr);
  EXPECT_THAT(home->heard, ElementsAre("will call", "appeared", "segue to-detail"));
  EXPECT_EQ(Lumicor::shared().getCurrentSegueController(), home);
  RunLoop::advance(2.4);
  EXPECT_EQ(current(), home);
  RunLoop::advance(0.2);
  EXPECT_EQ(current(), detail);
  EXPECT_FALSE(Lumicor::shared().getCurrentSegueController());
  EXPECT_THAT(views_, ElementsAre("HomeScreen", "DetailScreen"));
}

TEST_F(LumicorHooksTest, ChangesNothingForASegueToAContainer) {
  const auto home = make<HomeScreen>();
  appear(home);
  home->prepareForSegue(make<UIStoryboardSegue>("to-more", UIStoryboardSegue::Kind::present, home,
                                                make<UINavigationController>(make<DetailScreen>())),
                        nullptr);
  EXPECT_FALSE(Lumicor::shared().getCurrentSegueController());
  RunLoop::advance(5);
  EXPECT_EQ(current(), home);
}

TEST_F(LumicorHooksTest, TellsScreenChangesOfAnInitialisedSessionAlone) {
  const auto screenWithSearch = [] {
    const auto screen = make<MyUINavigationHelper>();
    screen->view()->addSubview(make<UISearchBar>(CGRect{0, 0, 390, 52}));
    return screen;
  };
  auto& looked = Lumicor::shared().searchBarDelegates;
  Lumicor::isTracking = true;
  appear(screenWithSearch());
  EXPECT_THAT(looked, IsEmpty());
  Lumicor::shared().setInitialized(true);
  appear(screenWithSearch());
  EXPECT_EQ(looked.size(), 1U) << "also of screens that are passed over";
  appear(make<HomeScreen>());
}

}  // namespace lumicor::test
