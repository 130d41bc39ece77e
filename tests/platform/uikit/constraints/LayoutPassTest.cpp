#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "tests/platform/uikit/constraints/LayoutFixture.h"

namespace platform {
namespace {

using namespace layouttest;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string>& journal() {
  static std::vector<std::string> entries;
  return entries;
}

/// Writes down what it is asked to do.
class Witness : public Object<Witness, UIView> {
 public:
  void updateConstraints() override {
    journal().push_back("update " + *accessibilityIdentifier());
    if (onUpdate) std::exchange(onUpdate, nullptr)();
    UIView::updateConstraints();
  }
  void layoutSubviews() override {
    journal().push_back("layout " + *accessibilityIdentifier() + " " + number(bounds().width()));
    UIView::layoutSubviews();
    if (onLayout) onLayout();
  }
  std::function<void()> onUpdate;
  std::function<void()> onLayout;
};

class LayoutPassTest : public testing::Test {
 protected:
  void SetUp() override {
    outer->setTranslatesAutoresizingMaskIntoConstraints(true);
    outer->setFrame({0, 0, 200, 100});
    fill(inner, outer);
    fill(leaf, inner);
    outer->layoutIfNeeded();
    journal().clear();
  }
  static void fill(const Ref<UIView>& view, const Ref<UIView>& superview) {
    activate({view->leftAnchor().constraintEqualToAnchor(superview->leftAnchor(), 10),
              view->rightAnchor().constraintEqualToAnchor(superview->rightAnchor(), -10),
              view->topAnchor().constraintEqualToAnchor(superview->topAnchor()),
              view->heightAnchor().constraintEqualToConstant(20)});
  }
  const Ref<Witness> outer = placed<Witness>(nullptr, "outer");
  const Ref<Witness> inner = placed<Witness>(outer, "inner");
  const Ref<Witness> leaf = placed<Witness>(inner, "leaf");
};

TEST_F(LayoutPassTest, VisitsOnlyWhatWaitsAndSuperviewsFirst) {
  outer->layoutIfNeeded();
  EXPECT_THAT(journal(), IsEmpty());
  leaf->setNeedsLayout();
  outer->layoutIfNeeded();
  EXPECT_THAT(journal(), ElementsAre("layout leaf 160"));
  journal().clear();
  outer->setFrame({0, 0, 120, 100});
  EXPECT_TRUE(ViewLayout::needsPass(*outer));
  outer->layoutIfNeeded();
  EXPECT_THAT(journal(), ElementsAre("layout outer 120", "layout inner 100", "layout leaf 80"));
  EXPECT_FALSE(ViewLayout::needsPass(*outer));
}

TEST_F(LayoutPassTest, UpdatesConstraintsOfSubviewsFirstAndThenSolvesOnce) {
  inner->setNeedsUpdateConstraints();
  leaf->setNeedsUpdateConstraints();
  leaf->onUpdate = [this] { inner->constraints()[1]->setConstant(30); };
  outer->layoutIfNeeded();
  EXPECT_THAT(journal(), ElementsAre("update leaf", "update inner", "layout inner 180", "layout leaf 140"));
  EXPECT_EQ(text(leaf->frame()), "30 0  140 x 20");
}

TEST_F(LayoutPassTest, LaysOutASuperviewThatWaitsWhenTheSubviewIsAsked) {
  outer->constraints()[0]->setConstant(50);
  inner->layoutIfNeeded();
  EXPECT_EQ(text(inner->frame()), "50 0  140 x 20");
  EXPECT_EQ(text(leaf->frame()), "10 0  120 x 20");
}

TEST_F(LayoutPassTest, SettlesWhenLayingOutChangesConstraints) {
  const Ref<NSLayoutConstraint> height = leaf->constraints()[0];
  leaf->onLayout = [&] { height->setConstant(leaf->bounds().width() / 2); };
  outer->setFrame({0, 0, 100, 100});
  outer->layoutIfNeeded();
  EXPECT_EQ(text(leaf->frame()), "10 0  60 x 30");
}

TEST_F(LayoutPassTest, LeavesAViewThatNeverSettlesWaitingAndSaysSo) {
  leaf->onLayout = [this] { leaf->setNeedsLayout(); };
  leaf->setNeedsLayout();
  testing::internal::CaptureStderr();
  outer->layoutIfNeeded();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("does not come to rest"));
  EXPECT_LT(journal().size(), 50u);
}

TEST_F(LayoutPassTest, TellsTheControllerBeforeAndAfter) {
  class Screen : public Object<Screen, UIViewController> {
   public:
    void loadView() override { setView(placed<Witness>(nullptr, "screen")); }
    void viewWillLayoutSubviews() override { journal().push_back("will"); }
    void viewDidLayoutSubviews() override { journal().push_back("did"); }
  };
  const auto screen = make<Screen>();
  screen->view()->setNeedsLayout();
  screen->view()->layoutIfNeeded();
  EXPECT_THAT(journal(), ElementsAre("update screen", "will", "layout screen 0", "did"));
}

TEST_F(LayoutPassTest, CopesWithAViewThatRemovesAnotherWhileLaidOut) {
  const auto doomed = placed<Witness>(outer, "doomed");
  fill(doomed, outer);
  inner->onLayout = [&] { doomed->removeFromSuperview(); };
  inner->setNeedsLayout();
  doomed->setNeedsLayout();
  outer->layoutIfNeeded();
  EXPECT_THAT(journal(), testing::Not(testing::Contains("layout doomed 180")));
  EXPECT_EQ(text(leaf->frame()), "10 0  160 x 20");
}

// ---- Masks

struct MaskCase {
  const char* name;
  unsigned mask;
  const char* frame;
};

TEST(AutoresizingMask, SplitsTheGrowthOfTheSuperview) {
  using Mask = UIViewAutoresizing;
  constexpr unsigned allHorizontal = Mask::flexibleLeftMargin | Mask::flexibleWidth | Mask::flexibleRightMargin;
  const MaskCase cases[] = {
      {"nothing", Mask::none, "20 10  60 x 30"},
      {"left", Mask::flexibleLeftMargin, "120 10  60 x 30"},
      {"width and height", Mask::flexibleWidth | Mask::flexibleHeight, "20 10  160 x 80"},
      {"right and bottom", Mask::flexibleRightMargin | Mask::flexibleBottomMargin, "20 10  60 x 30"},
      {"both margins by their lengths", Mask::flexibleLeftMargin | Mask::flexibleRightMargin, "70 10  60 x 30"},
      {"all by their lengths", allHorizontal, "40 10  120 x 30"},
      {"top", Mask::flexibleTopMargin, "20 60  60 x 30"},
  };
  for (const MaskCase& each : cases) {
    SCOPED_TRACE(each.name);
    const auto box = make<UIView>(CGRect{0, 0, 100, 50});
    const auto view = make<UIView>(CGRect{20, 10, 60, 30});
    view->setAutoresizingMask(each.mask);
    box->addSubview(view);
    box->setFrame({5, 5, 200, 100});
    EXPECT_EQ(text(view->frame()), each.frame);
    box->setBounds({0, 0, 100, 50});
    EXPECT_EQ(text(view->frame()), "20 10  60 x 30");
  }
}

TEST(AutoresizingMask, MovesViewsThatOthersAreConstrainedTo) {
  const auto box = root(100, 50);
  const auto bar = make<UIView>(CGRect{0, 40, 100, 10});
  bar->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleTopMargin);
  box->addSubview(bar);
  const auto above = placed(box, "above");
  activate({above->bottomAnchor().constraintEqualToAnchor(bar->topAnchor(), -5),
            above->heightAnchor().constraintEqualToConstant(10),
            above->leftAnchor().constraintEqualToAnchor(bar->leftAnchor()),
            above->widthAnchor().constraintEqualToAnchor(bar->widthAnchor(), 0.5, 0)});
  box->layoutIfNeeded();
  EXPECT_EQ(text(above->frame()), "0 25  50 x 10");
  box->setFrame({0, 0, 300, 200});
  box->layoutIfNeeded();
  EXPECT_EQ(text(bar->frame()), "0 190  300 x 10");
  EXPECT_EQ(text(above->frame()), "0 175  150 x 10");
  bar->setFrame({0, 100, 200, 20});
  box->layoutIfNeeded();
  EXPECT_EQ(text(above->frame()), "0 85  100 x 10");
}

TEST(AutoresizingMask, YieldsToConstraintsWhenItIsNoLongerTranslated) {
  const auto box = root(100, 50);
  const auto view = make<UIView>(CGRect{10, 10, 20, 20});
  box->addSubview(view);
  const auto follower = placed(box, "follower");
  activate({follower->leftAnchor().constraintEqualToAnchor(view->rightAnchor()),
            follower->widthAnchor().constraintEqualToConstant(5)});
  box->layoutIfNeeded();
  EXPECT_EQ(follower->frame().minX(), 30);
  view->setTranslatesAutoresizingMaskIntoConstraints(false);
  activate({view->rightAnchor().constraintEqualToAnchor(box->rightAnchor(), -20),
            view->widthAnchor().constraintEqualToConstant(40)});
  box->layoutIfNeeded();
  EXPECT_EQ(view->frame().minX(), 40);
  EXPECT_EQ(follower->frame().minX(), 80);
}

// ---- Guides and scrolling

TEST(LayoutGuide, FollowsMarginsAndGivesRoomOfItsOwn) {
  const auto box = root(200, 100);
  const auto inside = placed(box, "inside");
  const auto right = placed(box, "right");
  const auto gap = make<UILayoutGuide>();
  box->addLayoutGuide(gap);
  activate({inside->leftAnchor().constraintEqualToAnchor(box->layoutMarginsGuide()->leftAnchor()),
            inside->topAnchor().constraintEqualToAnchor(box->layoutMarginsGuide()->topAnchor()),
            NSLayoutConstraint::constraintWithItem(inside, NSLayoutAttribute::bottom, NSLayoutRelation::equal, box,
                                                   NSLayoutAttribute::bottomMargin, 1, 0),
            inside->widthAnchor().constraintEqualToConstant(50),
            gap->leftAnchor().constraintEqualToAnchor(inside->rightAnchor()),
            gap->rightAnchor().constraintEqualToAnchor(right->leftAnchor()),
            gap->widthAnchor().constraintEqualToAnchor(box->widthAnchor(), 0.1, 0),
            right->widthAnchor().constraintEqualToConstant(5)});
  box->layoutIfNeeded();
  EXPECT_EQ(text(inside->frame()), "8 8  50 x 84");
  EXPECT_EQ(right->frame().minX(), 78);
  EXPECT_EQ(text(gap->layoutFrame()), "58 0  20 x 0");
  box->setLayoutMargins({1, 20, 3, 4});
  box->layoutIfNeeded();
  EXPECT_EQ(text(inside->frame()), "20 1  50 x 96");
  EXPECT_EQ(text(box->layoutMarginsGuide()->layoutFrame()), "20 1  176 x 96");
  box->removeLayoutGuide(gap);
  EXPECT_EQ(gap->owningView(), nullptr);
  right->layoutIfNeeded();
}

TEST(LayoutGuide, KeepsClearOfTheSafeArea) {
  class Notched : public Object<Notched, UIViewController> {};
  const auto controller = make<Notched>();
  controller->setView(root(390, 844));
  const Ref<UIView> view = controller->view();
  const auto bar = placed(view, "bar");
  activate({bar->leftAnchor().constraintEqualToAnchor(view->leftAnchor()),
            bar->rightAnchor().constraintEqualToAnchor(view->rightAnchor()),
            bar->heightAnchor().constraintEqualToConstant(60),
            bar->bottomAnchor().constraintEqualToAnchor(view->safeAreaLayoutGuide()->bottomAnchor())});
  view->layoutIfNeeded();
  EXPECT_EQ(text(bar->frame()), "0 784  390 x 60");
  controller->setAdditionalSafeAreaInsets({47, 0, 34, 0});
  view->layoutIfNeeded();
  EXPECT_EQ(text(bar->frame()), "0 750  390 x 60");
  EXPECT_EQ(text(view->safeAreaLayoutGuide()->layoutFrame()), "0 47  390 x 763");
}

TEST(ScrollingContent, IsSizedByConstraintsToTheEdgesAndScrollsUnderAFloatingHeader) {
  class Scroller : public Object<Scroller, UIView> {
   public:
    bool sizesContentByConstraints() const override { return true; }
    void setContentSizeFromConstraints(CGSize size) override { content = size; }
    CGSize content;
  };
  const auto box = root(200, 100);
  const auto scroller = make<Scroller>(CGRect{0, 20, 200, 80});
  box->addSubview(scroller);
  const auto page = placed(scroller, "page");
  const auto header = placed(scroller, "header");
  activate({page->leftAnchor().constraintEqualToAnchor(scroller->leftAnchor(), 10),
            page->rightAnchor().constraintEqualToAnchor(scroller->rightAnchor(), -10),
            page->topAnchor().constraintEqualToAnchor(scroller->topAnchor()),
            page->bottomAnchor().constraintEqualToAnchor(scroller->bottomAnchor(), -30),
            page->widthAnchor().constraintEqualToAnchor(scroller->widthAnchor(), -20),
            page->heightAnchor().constraintEqualToConstant(500),
            header->topAnchor().constraintEqualToAnchor(box->topAnchor(), 25),
            header->heightAnchor().constraintEqualToConstant(10)});
  box->layoutIfNeeded();
  EXPECT_EQ(scroller->content, (CGSize{200, 530}));
  EXPECT_EQ(text(page->frame()), "10 0  180 x 500");
  EXPECT_EQ(header->frame().minY(), 5);
  scroller->setBounds({0, 120, 200, 80});
  box->layoutIfNeeded();
  EXPECT_EQ(text(page->frame()), "10 0  180 x 500");
  EXPECT_EQ(header->frame().minY(), 125);
}

}  // namespace
}  // namespace platform
