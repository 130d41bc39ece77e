#include <limits>

#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "tests/platform/uikit/constraints/LayoutFixture.h"

namespace platform {
namespace {

using namespace layouttest;
using testing::ElementsAre;
using testing::HasSubstr;

class NSLayoutConstraintTest : public testing::Test {
 protected:
  const Ref<UIView> container = root(300, 200);
  const Ref<UIView> a = placed(container, "a");
  const Ref<UIView> b = placed(container, "b");
  CGRect frameOf(const Ref<UIView>& view) {
    container->layoutIfNeeded();
    return view->frame();
  }
  /// Pins the top left corner and the height, so that only the width is open.
  void pin(const Ref<UIView>& view, double x, double y, double height) {
    activate({view->leftAnchor().constraintEqualToAnchor(container->leftAnchor(), x),
              view->topAnchor().constraintEqualToAnchor(container->topAnchor(), y),
              view->heightAnchor().constraintEqualToConstant(height)});
  }
};

TEST_F(NSLayoutConstraintTest, PlacesByEveryPositionAttribute) {
  activate({a->centerXAnchor().constraintEqualToAnchor(container->centerXAnchor(), 10),
            a->centerYAnchor().constraintEqualToAnchor(container->centerYAnchor()),
            a->widthAnchor().constraintEqualToConstant(100), a->heightAnchor().constraintEqualToConstant(40),
            b->leadingAnchor().constraintEqualToAnchor(a->leadingAnchor(), 5),
            b->trailingAnchor().constraintEqualToAnchor(container->rightAnchor(), -20),
            b->topAnchor().constraintEqualToAnchor(a->bottomAnchor(), 8),
            b->bottomAnchor().constraintEqualToAnchor(container->bottomAnchor(), -12)});
  EXPECT_EQ(text(frameOf(a)), "110 80  100 x 40");
  EXPECT_EQ(text(frameOf(b)), "115 128  165 x 60");
}

TEST_F(NSLayoutConstraintTest, ScalesByMultipliersOfSizesAndOfPositions) {
  pin(a, 0, 0, 30);
  activate({a->widthAnchor().constraintEqualToAnchor(container->widthAnchor(), 0.5, -10),
            b->heightAnchor().constraintEqualToAnchor(a->widthAnchor(), 0.25, 0),
            b->widthAnchor().constraintEqualToAnchor(b->heightAnchor(), 2, 0),
            NSLayoutConstraint::constraintWithItem(b, NSLayoutAttribute::centerX, NSLayoutRelation::equal, container,
                                                   NSLayoutAttribute::right, 0.75, 0),
            b->topAnchor().constraintEqualToAnchor(a->bottomAnchor())});
  EXPECT_EQ(text(frameOf(a)), "0 0  140 x 30");
  EXPECT_EQ(text(frameOf(b)), "190 30  70 x 35");
}

TEST_F(NSLayoutConstraintTest, RelatesViewsAcrossLevelsInTheCoordinatesOfTheirAncestor) {
  const auto box = make<UIView>(CGRect{40, 30, 100, 100});
  container->addSubview(box);
  const auto inner = placed(box, "inner");
  activate({inner->rightAnchor().constraintEqualToAnchor(container->rightAnchor(), -10),
            inner->topAnchor().constraintEqualToAnchor(container->topAnchor(), 50),
            inner->widthAnchor().constraintEqualToConstant(60), inner->heightAnchor().constraintEqualToConstant(20)});
  EXPECT_EQ(text(frameOf(inner)), "190 20  60 x 20");
  box->setFrame({70, 20, 100, 100});  // what holds is where it is in the container
  EXPECT_EQ(text(frameOf(inner)), "160 30  60 x 20");
  box->setBounds({0, 5, 100, 100});  // scrolled inside
  EXPECT_EQ(text(frameOf(inner)), "160 35  60 x 20");
}

TEST_F(NSLayoutConstraintTest, MovesWithItsConstantAndRanksByItsPriority) {
  pin(a, 0, 0, 10);
  const auto wish = at(a->widthAnchor().constraintEqualToConstant(80), 750);
  const auto limit = at(a->widthAnchor().constraintLessThanOrEqualToConstant(50), 749);
  activate({wish, limit});
  EXPECT_EQ(frameOf(a).width(), 80);
  limit->setPriority(751);
  EXPECT_EQ(frameOf(a).width(), 50);
  limit->setConstant(66);
  EXPECT_EQ(frameOf(a).width(), 66);
  limit->setPriority(0);  // no wish at all
  EXPECT_EQ(frameOf(a).width(), 80);
  limit->setPriority(999);
  EXPECT_EQ(frameOf(a).width(), 66);
}

TEST_F(NSLayoutConstraintTest, SwitchesSidesLikeASpeechBubble) {
  activate({a->topAnchor().constraintEqualToAnchor(container->topAnchor()),
            a->heightAnchor().constraintEqualToConstant(20), a->widthAnchor().constraintEqualToConstant(120)});
  const auto leading = a->leadingAnchor().constraintEqualToAnchor(container->leadingAnchor(), 32);
  const auto trailing = a->trailingAnchor().constraintEqualToAnchor(container->trailingAnchor(), -32);
  for (int turn = 0; turn < 50; ++turn) {
    const bool isRemote = turn % 2 == 0;
    trailing->setActive(false);
    leading->setActive(isRemote);
    trailing->setActive(!isRemote);
    ASSERT_EQ(frameOf(a).minX(), isRemote ? 32 : 148) << turn;
  }
  EXPECT_FALSE(leading->isActive());
  EXPECT_THAT(container->constraints(), testing::SizeIs(2));
}

TEST_F(NSLayoutConstraintTest, NeverLetsAWishMakeASizeNegative) {
  pin(a, 0, 0, 10);
  activate({at(a->widthAnchor().constraintEqualToConstant(400), 999),
            b->topAnchor().constraintEqualToAnchor(a->bottomAnchor()), b->heightAnchor().constraintEqualToConstant(10),
            b->leftAnchor().constraintEqualToAnchor(a->rightAnchor()),
            b->rightAnchor().constraintEqualToAnchor(container->rightAnchor())});
  EXPECT_EQ(frameOf(a).width(), 300);
  EXPECT_EQ(text(frameOf(b)), "300 10  0 x 10");
}

TEST_F(NSLayoutConstraintTest, BreaksTheLastOfContradictingRequirementsWithOneLineAndGoesOn) {
  pin(a, 0, 0, 10);
  const auto first = a->widthAnchor().constraintGreaterThanOrEqualToConstant(100);
  const auto second = a->widthAnchor().constraintLessThanOrEqualToConstant(60);
  first->setIdentifier("wide");
  second->setIdentifier("narrow");
  activate({first, second, at(a->widthAnchor().constraintEqualToConstant(0), 1)});
  testing::internal::CaptureStderr();
  EXPECT_EQ(frameOf(a).width(), 100);
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_THAT(log, HasSubstr("Unable to satisfy <NSLayoutConstraint 'narrow' UIView.width <= 60> together with "
                             "<NSLayoutConstraint 'wide' UIView.width >= 100>; it yields\n"));
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1);
  testing::internal::CaptureStderr();
  first->setConstant(40);  // both hold again
  activate({at(a->widthAnchor().constraintEqualToConstant(500), 2)});
  EXPECT_EQ(frameOf(a).width(), 60);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(NSLayoutConstraintTest, LetsTheOneActivatedLastYieldWheneverLayoutRan) {
  const auto build = [](bool heightIsFirst, int layoutsAfter) {
    const auto screen = root(390, 844);
    const auto box = placed(screen, "box");
    const auto height = box->heightAnchor().constraintEqualToConstant(50);
    const auto top = box->topAnchor().constraintEqualToAnchor(screen->topAnchor());
    const auto bottom = box->bottomAnchor().constraintEqualToAnchor(screen->bottomAnchor());
    std::vector<Ref<NSLayoutConstraint>> order{top, bottom, height};
    if (heightIsFirst) order = {height, top, bottom};
    testing::internal::CaptureStderr();
    for (std::size_t i = 0; i < order.size(); ++i) {
      order[i]->setActive(true);
      if (static_cast<int>(i) < layoutsAfter) screen->layoutIfNeeded();
    }
    screen->layoutIfNeeded();
    const double found = box->frame().height();
    box->removeFromSuperview();  // and back: what was active stays in its order
    screen->addSubview(box);
    activate({top, bottom});
    screen->layoutIfNeeded();
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2);
    EXPECT_EQ(box->frame().height(), 50);
    return found;
  };
  for (int layoutsAfter = 0; layoutsAfter < 3; ++layoutsAfter) {
    EXPECT_EQ(build(true, layoutsAfter), 50) << layoutsAfter;
    EXPECT_EQ(build(false, layoutsAfter), 844) << layoutsAfter;
  }
}

TEST_F(NSLayoutConstraintTest, LetsTheHostsConstraintYieldToAGivenFrameThatContradictsIt) {
  activate({a->leftAnchor().constraintEqualToAnchor(container->leftAnchor()),
            a->rightAnchor().constraintEqualToAnchor(container->rightAnchor()),
            a->widthAnchor().constraintGreaterThanOrEqualToConstant(250)});
  EXPECT_EQ(frameOf(a).width(), 300);
  testing::internal::CaptureStderr();
  container->setFrame({0, 0, 200, 200});
  EXPECT_EQ(frameOf(a).width(), 200);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("together with what views themselves require"));
  container->setFrame({0, 0, 280, 200});
  EXPECT_EQ(frameOf(a).width(), 280);
}

TEST_F(NSLayoutConstraintTest, IsKeptByTheTreeWhileActiveAndByNobodyElse) {
  Weak<NSLayoutConstraint> forgotten;
  {
    const auto constraint = a->widthAnchor().constraintEqualToConstant(70);
    forgotten = constraint;
    constraint->setActive(true);
    constraint->setActive(true);
  }
  ASSERT_FALSE(forgotten.expired());
  EXPECT_THAT(a->constraints(), ElementsAre(forgotten.lock()));
  EXPECT_EQ(frameOf(a).width(), 70);
  forgotten.lock()->setActive(false);
  EXPECT_TRUE(forgotten.expired());
  container->layoutIfNeeded();
}

TEST_F(NSLayoutConstraintTest, AlignsBaselines) {
  const auto big = placed<Letters>(container, "big", std::size_t{3});
  const auto small = placed<Letters>(container, "small", std::size_t{2});
  activate({big->leftAnchor().constraintEqualToAnchor(container->leftAnchor()),
            big->topAnchor().constraintEqualToAnchor(container->topAnchor(), 30),
            big->widthAnchor().constraintEqualToConstant(10),
            small->leftAnchor().constraintEqualToAnchor(big->rightAnchor()),
            small->firstBaselineAnchor().constraintEqualToAnchor(big->lastBaselineAnchor()),
            a->bottomAnchor().constraintEqualToAnchor(small->firstBaselineAnchor()),
            a->leftAnchor().constraintEqualToAnchor(small->rightAnchor()),
            a->widthAnchor().constraintEqualToConstant(4), a->heightAnchor().constraintEqualToConstant(4)});
  EXPECT_EQ(text(frameOf(big)), "0 30  10 x 60");
  EXPECT_EQ(text(frameOf(small)), "10 70  20 x 20");  // 30 + 60 - 5 - 15
  EXPECT_EQ(text(frameOf(a)), "30 81  4 x 4");
}

TEST_F(NSLayoutConstraintTest, RoundsEdgesToWholePixelsSoThatNeighboursTouch) {
  container->setFrame({0, 0, 100, 50});
  const auto c = placed(container, "c");
  pin(a, 0, 0, 10);
  activate({b->leftAnchor().constraintEqualToAnchor(a->rightAnchor()),
            c->leftAnchor().constraintEqualToAnchor(b->rightAnchor()),
            c->rightAnchor().constraintEqualToAnchor(container->rightAnchor()),
            a->widthAnchor().constraintEqualToAnchor(b->widthAnchor()),
            b->widthAnchor().constraintEqualToAnchor(c->widthAnchor())});
  EXPECT_EQ(text(frameOf(a)), "0 0  33.5 x 10");
  EXPECT_EQ(text(frameOf(b)), "33.5 0  33 x 0");
  EXPECT_EQ(text(frameOf(c)), "66.5 0  33.5 x 0");
}

TEST_F(NSLayoutConstraintTest, DescribesItself) {
  const auto constraint =
      at(NSLayoutConstraint::constraintWithItem(a, NSLayoutAttribute::trailing, NSLayoutRelation::greaterThanOrEqual,
                                                container, NSLayoutAttribute::centerX, 0.5, -8),
         750);
  EXPECT_EQ(constraint->description(), "<NSLayoutConstraint UIView.trailing >= UIView.centerX * 0.5 - 8 @750>");
}

using NSLayoutConstraintDeathTest = NSLayoutConstraintTest;

TEST_F(NSLayoutConstraintDeathTest, DiesOfNumbersThatAreNotFinite) {
  const double bad[] = {std::nan(""), std::numeric_limits<double>::infinity()};
  const auto width = a->widthAnchor().constraintEqualToConstant(1);
  for (const double value : bad) {
    EXPECT_DEATH(width->setConstant(value), "the constant is not finite");
    EXPECT_DEATH(a->widthAnchor().constraintEqualToConstant(value), "the constant is not finite");
    EXPECT_DEATH(a->widthAnchor().constraintEqualToAnchor(b->widthAnchor(), value, 0), "the multiplier is not finite");
  }
}

TEST_F(NSLayoutConstraintDeathTest, DiesOfPairsThatMeanNothing) {
  const auto stranger = make<UIView>();
  EXPECT_DEATH(a->leftAnchor().constraintEqualToAnchor(stranger->leftAnchor())->setActive(true), "no common ancestor");
  EXPECT_DEATH(NSLayoutConstraint::constraintWithItem(a, NSLayoutAttribute::left, NSLayoutRelation::equal, b,
                                                      NSLayoutAttribute::top, 1, 0),
               "left cannot be compared with top");
  EXPECT_DEATH(NSLayoutConstraint::constraintWithItem(a, NSLayoutAttribute::left, NSLayoutRelation::equal, nullptr,
                                                      NSLayoutAttribute::notAnAttribute, 1, 0),
               "left cannot be compared");
}

TEST_F(NSLayoutConstraintDeathTest, DiesWhenAnActiveRequirementBecomesAWish) {
  const auto width = a->widthAnchor().constraintEqualToConstant(1);
  width->setPriority(500);
  width->setPriority(1000);
  width->setActive(true);
  EXPECT_DEATH(width->setPriority(999), "cannot change between required and optional");
}

}  // namespace
}  // namespace platform
