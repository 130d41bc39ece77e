#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/UINavigationItem.h"
#include "platform/uikit/bars/UITabBar.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controllers/UITabBarController.h"
#include "platform/uikit/controls/UIButton.h"
#include "tests/support/AppFixture.h"
#include "tools/inspect/Annotation.h"
#include "tools/inspect/Inspection.h"

namespace inspect::test {

using namespace platform;
using namespace lumicor;
using testing::ElementsAre;

struct CartScreen : Object<CartScreen, UIViewController> {};

/// A screen in a navigation controller in a tab bar controller.
class InspectionTest : public platform::test::AppFixture {
 protected:
  InspectionTest() {
    const auto pay = make<UIButton>(CGRect{20, 300, 350, 50});
    pay->setAccessibilityIdentifier("pay");
    screen_->view()->addSubview(pay);
    trash_->setAccessibilityIdentifier("clear");
    screen_->navigationItem()->setRightBarButtonItem(trash_);
    tabs_->setViewControllers({make<UINavigationController>(screen_)});
    tabs_->tabBar()->setAccessibilityIdentifier("tabs");
    show(tabs_);
  }
  static std::vector<std::string> names(const std::vector<LumicroElement>& elements) {
    std::vector<std::string> names;
    for (const LumicroElement& element : elements) names.push_back(element.elementId());
    return names;
  }
  Ref<CartScreen> screen_ = make<CartScreen>();
  Ref<UIBarButtonItem> trash_ = make<UIBarButtonItem>("Clear", UIBarButtonItemStyle::plain, nullptr, sel("clear"));
  Ref<UITabBarController> tabs_ = make<UITabBarController>();
};

TEST_F(InspectionTest, HoldsTheScreenAndTellsApartWhatLiesAroundIt) {
  const auto inspection = inspectionOf(screen_, "");
  ASSERT_TRUE(inspection);
  EXPECT_EQ(inspection->snapshot.viewName(), "CartScreen");
  EXPECT_THAT(names(inspection->snapshot.elements()), ElementsAre("pay"));
  EXPECT_EQ(inspection->snapshot.actionElement().elementId(), "");
  EXPECT_THAT(names(inspection->around), ElementsAre("tabs", "clear"));
  EXPECT_EQ(inspection->around[0].type(), LumicorType::TYPE_TABBAR);
  const LumicroElement& clear = inspection->around[1];
  EXPECT_EQ(clear.type(), LumicorType::TYPE_BAR_BUTTON_ITEM);
  EXPECT_EQ(clear.value(), "Clear");
  EXPECT_NEAR(static_cast<double>(clear.x() + clear.width()), 382, 1);
  EXPECT_NEAR(static_cast<double>(clear.y()), 47, 1);
}

TEST_F(InspectionTest, KnowsTheElementActedOnWhereverItIsAndNoOther) {
  EXPECT_EQ(inspectionOf(screen_, "pay")->snapshot.actionElement().y(), 300);
  EXPECT_EQ(inspectionOf(screen_, "tabs")->snapshot.actionElement().value(), "0");
  EXPECT_FALSE(inspectionOf(screen_, "nobody"));
}

TEST_F(InspectionTest, MeasuresTheScreenInWholePoints) {
  screen_->view()->setFrame({0, 0, 393.6, 852.9});
  const auto inspection = inspectionOf(screen_, "");
  EXPECT_EQ(inspection->snapshot.viewWidth(), 393);
  EXPECT_EQ(inspection->snapshot.viewHeight(), 852);
  EXPECT_EQ(inspection->snapshot.viewOrientation(), "PORTRAIT");
}

TEST_F(InspectionTest, ThePictureFramesTheElementActedOn) {
  const auto picture = annotated(*UIApplication::shared().screenshot(), *inspectionOf(screen_, "pay"), "cart");
  const auto plain = annotated(*UIApplication::shared().screenshot(), *inspectionOf(screen_, ""), "cart");
  // The screen stands 40 points from the left and 104 from the top, two pixels to a point.
  const auto inside = [](const Ref<UIImage>& image) {
    return image->cgImage()->pixel(2 * (40 + 195), 2 * (104 + 325));
  };
  EXPECT_NE(inside(picture), inside(plain));
  EXPECT_EQ(picture->size().height, 844 + 2 * 40 + 64);
}

}  // namespace inspect::test
