#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/platform/uikit/constraints/LayoutFixture.h"

namespace platform {
namespace {

using namespace layouttest;

class LayoutContentTest : public testing::Test {
 protected:
  const Ref<UIView> container = root(300, 200);
  std::string layOut(const Ref<UIView>& view) {
    container->layoutIfNeeded();
    return text(view->frame());
  }
  void pinTopLeft(const Ref<UIView>& view) {
    activate({view->leftAnchor().constraintEqualToAnchor(container->leftAnchor()),
              view->topAnchor().constraintEqualToAnchor(container->topAnchor())});
  }
};

TEST_F(LayoutContentTest, GivesAViewTheSizeOfItsContentAndFollowsIt) {
  const auto letters = placed<Letters>(container, "letters", std::size_t{6});
  pinTopLeft(letters);
  EXPECT_EQ(layOut(letters), "0 0  60 x 20");
  letters->setCount(9);
  EXPECT_EQ(layOut(letters), "0 0  90 x 20");
}

TEST_F(LayoutContentTest, LetsTheViewThatHugsLessStretchAndTheOneThatResistsLessShrink) {
  const auto left = placed<Letters>(container, "left", std::size_t{10});
  const auto right = placed<Letters>(container, "right", std::size_t{8});
  left->setWraps(false);
  right->setWraps(false);
  pinTopLeft(left);
  activate({right->topAnchor().constraintEqualToAnchor(container->topAnchor()),
            right->leftAnchor().constraintEqualToAnchor(left->rightAnchor(), 20),
            right->rightAnchor().constraintEqualToAnchor(container->rightAnchor())});
  left->setContentHuggingPriority(249, UILayoutAxis::horizontal);
  EXPECT_EQ(layOut(left), "0 0  200 x 20");
  left->setContentHuggingPriority(251, UILayoutAxis::horizontal);
  EXPECT_EQ(layOut(left), "0 0  100 x 20");
  left->setContentCompressionResistancePriority(749, UILayoutAxis::horizontal);
  container->setFrame({0, 0, 150, 200});
  EXPECT_EQ(layOut(left), "0 0  50 x 20");
  EXPECT_EQ(layOut(right), "70 0  80 x 20");
  left->setContentCompressionResistancePriority(751, UILayoutAxis::horizontal);
  EXPECT_EQ(layOut(right), "120 0  30 x 20");
}

TEST_F(LayoutContentTest, WrapsAtALimitOfTheSamePriorityAsItsResistance) {
  const auto letters = placed<Letters>(container, "letters", std::size_t{60});  // 600 points on one line
  pinTopLeft(letters);
  const auto limit = at(letters->widthAnchor().constraintLessThanOrEqualToConstant(250), 750);
  activate({limit});
  EXPECT_EQ(layOut(letters), "0 0  250 x 60");
  letters->setCount(12);
  EXPECT_EQ(layOut(letters), "0 0  120 x 20");
  letters->setCount(60);
  limit->setConstant(100);
  EXPECT_EQ(layOut(letters), "0 0  100 x 120");
  limit->setConstant(1000);  // wide again: the height is that of one line again
  EXPECT_EQ(layOut(letters), "0 0  600 x 20");
  activate({letters->rightAnchor().constraintLessThanOrEqualToAnchor(container->rightAnchor())});
  EXPECT_EQ(layOut(letters), "0 0  300 x 40");
  container->setFrame({0, 0, 200, 200});
  EXPECT_EQ(layOut(letters), "0 0  200 x 60");
}

TEST_F(LayoutContentTest, WrapsBetweenItsNeighboursWhoseHeightFollows) {
  const auto letters = placed<Letters>(container, "letters", std::size_t{50});
  const auto below = placed(container, "below");
  activate({letters->leadingAnchor().constraintEqualToAnchor(container->leadingAnchor(), 20),
            letters->trailingAnchor().constraintEqualToAnchor(container->trailingAnchor(), -80),
            letters->topAnchor().constraintEqualToAnchor(container->topAnchor(), 10),
            below->topAnchor().constraintEqualToAnchor(letters->bottomAnchor(), 5),
            below->heightAnchor().constraintEqualToAnchor(letters->heightAnchor()),
            below->leftAnchor().constraintEqualToAnchor(letters->leftAnchor()),
            below->widthAnchor().constraintEqualToConstant(1)});
  EXPECT_EQ(layOut(letters), "20 10  200 x 60");
  EXPECT_EQ(layOut(below), "20 75  1 x 60");
}

TEST_F(LayoutContentTest, MeasuresRealTextAtTheWidthThatItGets) {
  const auto label = placed<UILabel>(container, "label");
  const auto below = placed(container, "below");
  label->setNumberOfLines(0);
  label->setText("A very long message wraps where its bubble ends, and the rows below it make room for its lines.");
  pinTopLeft(label);
  activate({at(label->widthAnchor().constraintLessThanOrEqualToConstant(250), 750),
            below->topAnchor().constraintEqualToAnchor(label->bottomAnchor(), 7),
            below->leftAnchor().constraintEqualToAnchor(container->leftAnchor())});
  container->layoutIfNeeded();
  EXPECT_EQ(label->frame().width(), 250);
  EXPECT_EQ(label->frame().height(), label->sizeThatFits({250, 0}).height);
  EXPECT_GT(label->frame().height(), 1.5 * label->sizeThatFits({10000, 0}).height);
  EXPECT_EQ(below->frame().minY(), label->frame().maxY() + 7);
  label->setText("Short.");
  container->layoutIfNeeded();
  EXPECT_EQ(label->frame().size, label->sizeThatFits({10000, 0}));
}

TEST_F(LayoutContentTest, FitsASubtreeToAWidthWithoutMovingIt) {
  const Ref<UIView> cell = make<UIView>(CGRect{0, 0, 320, 44});
  const auto letters = placed<Letters>(cell, "letters", std::size_t{40});
  activate({letters->topAnchor().constraintEqualToAnchor(cell->topAnchor(), 16),
            letters->bottomAnchor().constraintEqualToAnchor(cell->bottomAnchor(), -16),
            letters->leadingAnchor().constraintEqualToAnchor(cell->leadingAnchor(), 32),
            at(letters->widthAnchor().constraintLessThanOrEqualToConstant(250), 750),
            letters->trailingAnchor().constraintLessThanOrEqualToAnchor(cell->trailingAnchor(), -8)});
  const auto fitted = [&](double width, float priority) {
    return cell->systemLayoutSizeFitting({width, 0}, priority, UILayoutPriorityFittingSizeLevel);
  };
  EXPECT_EQ(fitted(320, 1000), (CGSize{320, 72}));
  EXPECT_EQ(fitted(140, 1000), (CGSize{140, 112}));
  EXPECT_EQ(fitted(0, 50), (CGSize{290, 72}));  // as small as the text at its limit allows
  EXPECT_EQ(cell->bounds().size, (CGSize{320, 44}));
  EXPECT_EQ(letters->bounds().size, (CGSize{0, 0}));
}

TEST_F(LayoutContentTest, FitsViewsThatFollowTheMask) {
  const Ref<UIView> cell = make<UIView>(CGRect{0, 0, 200, 50});
  const Ref<UIView> content = make<UIView>(CGRect{10, 0, 180, 50});
  content->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
  cell->addSubview(content);
  const auto letters = placed<Letters>(content, "letters", std::size_t{28});
  activate({letters->leftAnchor().constraintEqualToAnchor(content->leftAnchor()),
            letters->rightAnchor().constraintEqualToAnchor(content->rightAnchor()),
            letters->topAnchor().constraintEqualToAnchor(content->topAnchor(), 4),
            letters->bottomAnchor().constraintEqualToAnchor(content->bottomAnchor())});
  EXPECT_EQ(cell->systemLayoutSizeFitting({160, 0}, 1000, 50), (CGSize{160, 44}));
}

TEST_F(LayoutContentTest, TakesWishesAgainstTheFittingTarget) {
  const Ref<UIView> box = make<UIView>();
  const auto inner = placed(box, "inner");
  activate({inner->leftAnchor().constraintEqualToAnchor(box->leftAnchor()),
            inner->rightAnchor().constraintEqualToAnchor(box->rightAnchor()),
            at(inner->widthAnchor().constraintEqualToConstant(120), 49),
            at(inner->widthAnchor().constraintGreaterThanOrEqualToConstant(33.3), 51)});
  EXPECT_EQ(box->systemLayoutSizeFitting({0, 0}).width, 33.5);
  EXPECT_EQ(box->systemLayoutSizeFitting({500, 0}).width, 500);
  EXPECT_EQ(box->systemLayoutSizeFitting({0, 70}, 50, 1000).height, 70);
}

TEST_F(LayoutContentTest, SolvesOnlyWhatChanged) {
  std::vector<Ref<Letters>> rows;
  for (std::size_t i = 0; i < 40; ++i) {
    const auto row = placed<Letters>(container, "row", i);
    const Ref<UIView> above = rows.empty() ? container : rows.back();
    activate({row->leftAnchor().constraintEqualToAnchor(container->leftAnchor()),
              rows.empty() ? row->topAnchor().constraintEqualToAnchor(container->topAnchor())
                           : row->topAnchor().constraintEqualToAnchor(above->bottomAnchor())});
    rows.push_back(row);
  }
  container->layoutIfNeeded();
  const LayoutSolver& solver = ViewLayout::engineOf(*container)->solver();
  const auto before = solver.pivotCount();
  rows[3]->setCount(30);
  container->layoutIfNeeded();
  EXPECT_LE(solver.pivotCount() - before, 4u);
  EXPECT_EQ(text(rows[39]->frame()), "0 780  390 x 20");
}

}  // namespace
}  // namespace platform
