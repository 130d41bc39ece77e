#include "platform/uikit/constraints/LayoutEngine.h"
#include "platform/uikit/constraints/ViewLayout.h"
#include "tests/platform/uikit/constraints/LayoutFixture.h"

namespace platform {
namespace {

using namespace layouttest;
using testing::IsEmpty;
using testing::SizeIs;

/// A box in the middle of a root with something placed inside it.
class LayoutTreeTest : public testing::Test {
 protected:
  LayoutTreeTest() {
    activate({inside[0], inside[1], inside[2], across[0], across[1], across[2], across[3]});
    outer->layoutIfNeeded();
  }
  std::size_t constraintsIn(const Ref<UIView>& view) {
    const LayoutEngine* const engine = ViewLayout::engineOf(*view);
    return engine ? engine->solver().constraintCount() : 0;
  }
  Ref<UIView> outer = root(300, 200);
  Ref<UIView> box = placed(outer, "box");
  Ref<UIView> mark = placed(box, "mark");
  const std::vector<Ref<NSLayoutConstraint>> inside{mark->rightAnchor().constraintEqualToAnchor(box->rightAnchor(), -5),
                                                    mark->topAnchor().constraintEqualToAnchor(box->topAnchor()),
                                                    mark->widthAnchor().constraintEqualToConstant(10)};
  const std::vector<Ref<NSLayoutConstraint>> across{
      box->centerXAnchor().constraintEqualToAnchor(outer->centerXAnchor()),
      box->topAnchor().constraintEqualToAnchor(outer->topAnchor(), 4),
      box->widthAnchor().constraintEqualToConstant(100),
      mark->bottomAnchor().constraintEqualToAnchor(outer->bottomAnchor(), -6)};
};

TEST_F(LayoutTreeTest, TakesASubtreeOutWithItsOwnConstraintsAndCutsTheRest) {
  EXPECT_EQ(text(mark->frame()), "85 0  10 x 190");
  box->removeFromSuperview();
  for (const auto& constraint : inside) EXPECT_TRUE(constraint->isActive());
  EXPECT_FALSE(across[0]->isActive());
  EXPECT_FALSE(across[1]->isActive());
  EXPECT_TRUE(across[2]->isActive());
  EXPECT_FALSE(across[3]->isActive());
  EXPECT_THAT(outer->constraints(), IsEmpty());
  EXPECT_EQ(constraintsIn(outer), 2u);  // its own size
  outer->layoutIfNeeded();

  inside[0]->setConstant(-20);  // it is a tree of its own now
  box->layoutIfNeeded();
  EXPECT_EQ(mark->frame().minX(), 70);
}

TEST_F(LayoutTreeTest, TakesItBackWhereverItIsAddedAgain) {
  for (int round = 0; round < 5; ++round) {
    box->removeFromSuperview();
    if (round % 2 == 0) box->layoutIfNeeded();
    outer->addSubview(box);
    activate(across);
    outer->layoutIfNeeded();
    ASSERT_EQ(text(box->frame()), "100 4  100 x 0") << round;
    ASSERT_EQ(text(mark->frame()), "85 0  10 x 190") << round;
  }
  const auto other = root(50, 50);
  other->addSubview(box);  // without removing it first
  EXPECT_FALSE(across[0]->isActive());
  across[1]->setActive(false);
  activate({box->leftAnchor().constraintEqualToAnchor(other->leftAnchor(), 7)});
  other->layoutIfNeeded();
  EXPECT_EQ(box->frame().minX(), 7);
  EXPECT_EQ(mark->frame().minX(), 85);
}

TEST_F(LayoutTreeTest, LeavesNothingBehindInTheEngine) {
  const std::size_t before = constraintsIn(outer);
  for (int round = 0; round < 20; ++round) {
    const auto extra = placed<Letters>(outer, "extra", std::size_t{30});
    const auto child = placed(extra, "child");
    const auto guide = make<UILayoutGuide>();
    extra->addLayoutGuide(guide);
    activate({extra->leftAnchor().constraintEqualToAnchor(mark->rightAnchor()),
              child->leftAnchor().constraintEqualToAnchor(guide->rightAnchor()),
              child->topAnchor().constraintEqualToAnchor(extra->safeAreaLayoutGuide()->topAnchor()),
              guide->leftAnchor().constraintEqualToAnchor(extra->leftAnchor())});
    outer->layoutIfNeeded();
    EXPECT_GT(constraintsIn(outer), before);
    extra->removeFromSuperview();
  }
  EXPECT_EQ(constraintsIn(outer), before);
}

TEST_F(LayoutTreeTest, SurvivesTheDeathOfTheRootAndOfItems) {
  const auto kept = across[0];
  Ref<UIView> survivor = mark;
  mark = nullptr;
  outer = nullptr;
  box = nullptr;  // with it the constraints that it held
  EXPECT_FALSE(kept->isActive());
  EXPECT_FALSE(inside[0]->isActive());
  EXPECT_TRUE(inside[2]->isActive());
  EXPECT_EQ(survivor->superview(), nullptr);
  inside[2]->setConstant(44);
  survivor->layoutIfNeeded();
  EXPECT_EQ(survivor->bounds().width(), 44);  // a root that translates nothing takes the size it wishes
  EXPECT_THAT(kept->description(), testing::HasSubstr("(gone)"));
  kept->setConstant(3);
}

TEST_F(LayoutTreeTest, JoinsTreesThatWereSolvedBefore) {
  const auto island = root(80, 40);
  const auto palm = placed(island, "palm");
  activate({palm->rightAnchor().constraintEqualToAnchor(island->rightAnchor()),
            palm->widthAnchor().constraintEqualToConstant(8)});
  island->layoutIfNeeded();
  EXPECT_EQ(palm->frame().minX(), 72);
  outer->addSubview(island);
  island->setTranslatesAutoresizingMaskIntoConstraints(false);
  activate({island->leftAnchor().constraintEqualToAnchor(outer->leftAnchor()),
            island->rightAnchor().constraintEqualToAnchor(box->leftAnchor(), -10)});
  outer->layoutIfNeeded();
  EXPECT_EQ(island->frame().width(), 90);
  EXPECT_EQ(palm->frame().minX(), 82);
}

TEST_F(LayoutTreeTest, WalksAVeryDeepTree) {
  const auto leaf = placed(nullptr, "leaf");
  Ref<UIView> top = leaf;
  for (int depth = 0; depth < 20000; ++depth) {
    const auto above = make<UIView>(CGRect{0, 0, 10, 10});
    above->addSubview(top);
    if (depth == 0) activate({leaf->leftAnchor().constraintEqualToAnchor(above->rightAnchor(), 3)});
    top = above;
  }
  box->addSubview(top);
  outer->layoutIfNeeded();
  EXPECT_EQ(leaf->frame().minX(), 13);
  EXPECT_FALSE(ViewLayout::needsPass(*outer));
}

}  // namespace
}  // namespace platform
