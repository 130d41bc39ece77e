#include <gmock/gmock.h>

#include "lumicor/core/Lumicor.h"
#include "lumicor/screen/LumicorLabel.h"
#include "platform/declarative/UIHostingController.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "tests/support/AppFixture.h"

namespace lumicor::test {

using namespace platform::declarative;
using testing::HasSubstr;

class LumicorLabelTest : public platform::test::AppFixture {
 protected:
  SwiftUICoordinates region() { return Lumicor::shared().getSwiftUICoordinates().at("price"); }
  double top_ = 100;
  Ref<UIHostingController> screen_ = make<UIHostingController>([this] {
    return VStack({Color(UIColor::systemRed()).frame(10, top_),
                   lumicorLabel(Color(UIColor::systemBlue()).frame(80, 40), "price"), Spacer()},
                  0);
  });
};

TEST_F(LumicorLabelTest, KeepsTheRegionWhereTheViewIsAndWhetherItShows) {
  Lumicor::shared().setShouldEnableDebug(true);
  testing::internal::CaptureStdout();
  const auto navigation = make<UINavigationController>(screen_);
  navigation->setNavigationBarHidden(true, false);
  show(navigation);
  advance(1);
  EXPECT_EQ(region().rect, (CGRect{155, 147, 80, 40}));
  EXPECT_TRUE(region().isVisible);
  top_ = 130;
  screen_->setNeedsUpdate();
  advance(0.1);
  EXPECT_EQ(region().rect, (CGRect{155, 177, 80, 40}));

  navigation->pushViewController(make<UIViewController>(), false);
  advance(1);
  EXPECT_FALSE(region().isVisible);
  EXPECT_EQ(region().rect, (CGRect{155, 177, 80, 40})) << "the place is kept";
  navigation->popViewControllerAnimated(false);
  advance(1);
  EXPECT_TRUE(region().isVisible);
  const std::string log = testing::internal::GetCapturedStdout();
  Lumicor::shared().setShouldEnableDebug(false);
  EXPECT_THAT(log, HasSubstr(", Remove Position price\n"));
  EXPECT_THAT(log, HasSubstr(", Add back Position price\n"));
}

TEST_F(LumicorLabelTest, TellsNothingOfAScreenThatIsNotShown) {
  const auto isVisible = [](const char* label) {
    const auto all = Lumicor::shared().getSwiftUICoordinates();
    return all.contains(label) && all.at(label).isVisible;
  };
  // Laid out, as a host does that wants to know its size, and never shown.
  auto preview = make<UIHostingController>([] { return lumicorLabel(Text("Sencha"), "preview"); });
  preview->view()->layoutIfNeeded();
  EXPECT_FALSE(isVisible("preview"));
  preview = nullptr;
  EXPECT_FALSE(isVisible("preview"));

  show(screen_);
  advance(1);
  ASSERT_TRUE(isVisible("price"));
  const auto modal = make<UIViewController>();
  modal->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
  screen_->presentViewController(modal, false);
  advance(1);
  ASSERT_FALSE(isVisible("price"));
  // Laid out again where nobody sees it: it changed, and the device was turned meanwhile.
  top_ = 130;
  screen_->setNeedsUpdate();
  screen_->view()->setFrame({0, 0, 844, 390});
  screen_->view()->layoutIfNeeded();
  EXPECT_FALSE(isVisible("price"));
  EXPECT_EQ(region().rect, (CGRect{155, 147, 80, 40}));
  screen_->view()->setFrame({0, 0, 390, 844});
  modal->dismissViewController(false);
  advance(1);
  EXPECT_TRUE(isVisible("price"));
  EXPECT_EQ(region().rect, (CGRect{155, 177, 80, 40})) << "measured anew when it came back";

  auto window = make<UIWindow>(CGRect{0, 0, 390, 844});
  window->setRootViewController(make<UIHostingController>([] { return lumicorLabel(Text("Matcha"), "removed"); }));
  window->setHidden(false);
  advance(0.1);
  ASSERT_TRUE(isVisible("removed"));
  window->setRootViewController(nullptr);
  EXPECT_FALSE(isVisible("removed"));
}

TEST_F(LumicorLabelTest, AScreenThatDoesNotComeAfterAllShowsNoRegion) {
  const auto navigation = make<UINavigationController>(screen_);
  show(navigation);
  navigation->pushViewController(make<UIViewController>(), false);
  advance(1);
  top_ = 130;
  screen_->setNeedsUpdate();
  drag({{5, 400}, {150, 400}, {60, 400}}, 0.6);  // back, and then not
  advance(1);
  ASSERT_EQ(navigation->viewControllers().size(), 2u);
  EXPECT_FALSE(region().isVisible);
}

}  // namespace lumicor::test
