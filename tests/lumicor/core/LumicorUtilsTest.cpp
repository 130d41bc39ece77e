#include <gmock/gmock.h>
#include <limits>

#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/device/UIScreen.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

using LumicorUtilsTest = SessionTest;
using LumicorUtilsDeathTest = SessionTest;

struct PlainScreen : Object<PlainScreen, UIViewController> {};

TEST_F(LumicorUtilsTest, TellsWholeMilliseconds) {
  EXPECT_EQ(LumicorUtils::millisecondsSinceEpoch(), 1714564800000);
  RunLoop::advance(0.25);
  EXPECT_EQ(LumicorUtils::millisecondsSinceEpoch(), 1714564800250);
  RunLoop::advance(0.0009);
  EXPECT_EQ(LumicorUtils::millisecondsSinceEpoch(), 1714564800250) << "nine tenths of one are none";
}

TEST_F(LumicorUtilsTest, TruncatesTowardZeroUpToTheEndsOfTheRange) {
  EXPECT_EQ(LumicorUtils::truncated(12.9), 12);
  EXPECT_EQ(LumicorUtils::truncated(-3.7), -3);
  EXPECT_EQ(LumicorUtils::truncated(-0.5), 0);
  EXPECT_EQ(LumicorUtils::truncated(-9223372036854775808.0), std::numeric_limits<std::int64_t>::min());
}

TEST_F(LumicorUtilsDeathTest, StopsAtNumbersThatNoIntegerHolds) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(LumicorUtils::truncated(std::numeric_limits<double>::quiet_NaN()), "fatal error: a number cannot");
  EXPECT_DEATH(LumicorUtils::truncated(std::numeric_limits<double>::infinity()), "fatal error: a number cannot");
  EXPECT_DEATH(LumicorUtils::truncated(9223372036854775808.0), "fatal error: a number cannot");
}

TEST_F(LumicorUtilsTest, ReadsDecimalIntegersAndNothingElse) {
  EXPECT_EQ(LumicorUtils::decimalInteger("12"), 12);
  EXPECT_EQ(LumicorUtils::decimalInteger("-3"), -3);
  EXPECT_EQ(LumicorUtils::decimalInteger("+3"), 3);
  EXPECT_EQ(LumicorUtils::decimalInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  for (const char* text :
       {"", "x", "2x", " 2", "2 ", "1.0", "+-3", "--3", "0x2", "9223372036854775808", "99999999999999999999"}) {
    EXPECT_FALSE(LumicorUtils::decimalInteger(text)) << text;
  }
}

TEST_F(LumicorUtilsTest, FindsTheScreenInFrontThroughEveryContainer) {
  EXPECT_FALSE(LumicorUtils::getCurrentViewController());

  const auto home = make<PlainScreen>();
  const auto detail = make<PlainScreen>();
  const auto navigation = make<UINavigationController>(home);
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({make<PlainScreen>(), navigation});
  tabs->setSelectedIndex(1);
  show(tabs);
  EXPECT_EQ(LumicorUtils::getCurrentViewController(), home);
  navigation->pushViewController(detail, false);
  EXPECT_EQ(LumicorUtils::getCurrentViewController(), detail);

  const auto modal = make<PlainScreen>();
  detail->presentViewController(modal, false);
  RunLoop::advance(1);
  EXPECT_EQ(LumicorUtils::getCurrentViewController(), modal);

  const auto noTabs = make<UITabBarController>();
  show(noTabs);
  EXPECT_EQ(LumicorUtils::getCurrentViewController(), noTabs);
}

/// Shows nothing as often as it is told, then its top.
struct LateNavigation : Object<LateNavigation, UINavigationController> {
  Ref<UIViewController> visibleViewController() const override {
    return asked++ < empty ? nullptr : Super::visibleViewController();
  }
  int empty = 0;
  mutable int asked = 0;
};

TEST_F(LumicorUtilsTest, AsksANavigationControllerThatShowsNothingAgainAsOftenAsItTakes) {
  const auto home = make<PlainScreen>();
  const auto navigation = make<LateNavigation>(home);
  show(navigation);
  navigation->empty = 1'000'000;
  navigation->asked = 0;
  EXPECT_EQ(LumicorUtils::getCurrentViewController(), home);
  EXPECT_EQ(navigation->asked, 1'000'001);
}

TEST_F(LumicorUtilsTest, FindsANavigationControllerFromTheRootInItsOrder) {
  EXPECT_FALSE(LumicorUtils::getNavigationControllerFromRoot());
  const auto plain = make<PlainScreen>();
  show(plain);
  EXPECT_FALSE(LumicorUtils::getNavigationControllerFromRoot());

  const auto inChild = make<UINavigationController>(make<PlainScreen>());
  plain->addChildViewController(make<PlainScreen>());
  plain->addChildViewController(inChild);
  EXPECT_EQ(LumicorUtils::getNavigationControllerFromRoot(), inChild);

  const auto presented = make<UINavigationController>(make<PlainScreen>());
  plain->presentViewController(presented, false);
  RunLoop::advance(1);
  EXPECT_EQ(LumicorUtils::getNavigationControllerFromRoot(), presented) << "a presented one comes before children";

  const auto selected = make<UINavigationController>(make<PlainScreen>());
  const auto tabs = make<UITabBarController>();
  tabs->setViewControllers({make<UINavigationController>(make<PlainScreen>()), selected});
  tabs->setSelectedIndex(1);
  show(tabs);
  EXPECT_EQ(LumicorUtils::getNavigationControllerFromRoot(), selected);
}

TEST_F(LumicorUtilsTest, CallsOnlyTheLongSidesLandscape) {
  using enum UIDeviceOrientation;
  UIDevice& device = UIDevice::current();
  for (const auto orientation : {unknown, portrait, portraitUpsideDown, faceUp, faceDown}) {
    device.setOrientation(orientation);
    EXPECT_EQ(LumicorUtils::getViewOrientation(), "PORTRAIT");
  }
  for (const auto orientation : {landscapeLeft, landscapeRight}) {
    device.setOrientation(orientation);
    EXPECT_EQ(LumicorUtils::getViewOrientation(), "LANDSCAPE");
  }
  device.setOrientation(portrait);
}

TEST_F(LumicorUtilsTest, TellsASimulatorByItsMachine) {
  EXPECT_FALSE(LumicorUtils::isRunningOnSimulator());
  UIDevice::setProfile(DeviceProfile::simulator());
  EXPECT_TRUE(LumicorUtils::isRunningOnSimulator());
  for (const auto& [machine, isSimulator] :
       std::map<std::string, bool>{{"x86_64", true}, {"i386", true}, {"arm64", true}, {"arm64e", false}, {"", false}}) {
    DeviceProfile profile = DeviceProfile::phone();
    profile.machine = machine;
    UIDevice::setProfile(profile);
    EXPECT_EQ(LumicorUtils::isRunningOnSimulator(), isSimulator) << machine;
  }
  UIDevice::setProfile(DeviceProfile::phone());
}

TEST_F(LumicorUtilsTest, TracksWhatNoSystemNameIsPartOf) {
  for (const char* name : {"", "CheckoutViewController", "uinavigation", "MyTabBar"}) {
    EXPECT_TRUE(LumicorUtils::shouldTrack(name)) << name;
  }
  for (const char* name :
       {"UIHostingController", "SwiftUI.View", "UISystemThing", "_TtGC7SwiftUIx", "UICompatibilityInputViewController",
        "UIPredictionViewController", "UIInputWindowController", "_UICursorAccessoryView",
        "NotifyingMulticolumnSplitViewController", "StyleContextSplitViewNavigationController", "MyUINavigationHelper",
        "UITransitionView", "MyUITabBarCell", "UIEditingOverlayViewController"}) {
    EXPECT_FALSE(LumicorUtils::shouldTrack(name)) << name;
  }
}

}  // namespace lumicor::test
