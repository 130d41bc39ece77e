#include <numbers>

#include "platform/geometry/CGGeometry.h"
#include "platform/geometry/UIColor.h"

namespace platform {
namespace {

void expectNear(CGPoint actual, CGPoint expected) {
  EXPECT_NEAR(actual.x, expected.x, 1e-9);
  EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

TEST(CGRect, ContainsItsLeftAndTopEdgesButNotItsRightAndBottomOnes) {
  const CGRect rect(10, 20, 30, 40);
  EXPECT_TRUE(rect.contains(CGPoint{10, 20}));
  EXPECT_TRUE(rect.contains(CGPoint{39.999, 59.999}));
  EXPECT_FALSE(rect.contains(CGPoint{40, 30}));
  EXPECT_FALSE(rect.contains(CGPoint{20, 60}));
  EXPECT_TRUE(rect.contains(rect));
  EXPECT_FALSE(rect.contains(CGRect(10, 20, 30.1, 40)));
}

TEST(CGRect, MeetsAndJoinsOthers) {
  const CGRect a(0, 0, 10, 10), b(5, 6, 10, 10), apart(10, 0, 5, 5);
  EXPECT_EQ(a.intersection(b), CGRect(5, 6, 5, 4));
  EXPECT_EQ(a.unionWith(b), CGRect(0, 0, 15, 16));
  EXPECT_FALSE(a.intersects(apart)) << "touching is not meeting";
  EXPECT_EQ(a.intersection(apart), CGRectZero);
  EXPECT_EQ(CGRectZero.unionWith(b), b) << "an empty rectangle must not drag the origin in";
  EXPECT_EQ(b.unionWith(CGRect(100, 100, 0, 50)), b);
}

TEST(CGRect, IsEmptyWithASideThatIsZeroNegativeOrNoNumber) {
  EXPECT_TRUE(CGRect(0, 0, 0, 5).isEmpty());
  EXPECT_TRUE(CGRect(0, 0, 5, -1).isEmpty());
  EXPECT_TRUE(CGRect(0, 0, std::nan(""), 5).isEmpty());
}

TEST(CGRect, InsetsNeverTurnItInsideOut) {
  EXPECT_EQ(CGRect(0, 0, 10, 10).insetBy(UIEdgeInsets{1, 2, 3, 4}), CGRect(2, 1, 4, 6));
  EXPECT_EQ(CGRect(0, 0, 10, 10).insetBy(-5, 0), CGRect(-5, 0, 20, 10));
  const CGRect none = CGRect(0, 0, 10, 10).insetBy(6, 6);
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ(none.size, CGSizeZero);
}

TEST(CGRect, IntegralIsTheSmallestWholeRectangleAround) {
  EXPECT_EQ(CGRect(0.2, -0.2, 1, 1).integral(), CGRect(0, -1, 2, 2));
}

TEST(CGAffineTransform, RotatesClockwiseOnTheScreen) {
  expectNear(CGAffineTransform::rotation(std::numbers::pi / 2).apply(CGPoint{1, 0}), {0, 1});
}

TEST(CGAffineTransform, ThenAppliesTheReceiverFirstAndByAppliesItLast) {
  const auto scale = CGAffineTransform::scale(2, 3);
  expectNear(scale.then(CGAffineTransform::translation(10, 0)).apply(CGPoint{1, 1}), {12, 3});
  expectNear(scale.translatedBy(10, 0).apply(CGPoint{1, 1}), {22, 3});
}

TEST(CGAffineTransform, InvertsWhatCanBeInverted) {
  const auto transform = CGAffineTransform::rotation(0.7).scaledBy(2, 5).translatedBy(3, -4);
  expectNear(transform.inverted().apply(transform.apply(CGPoint{7, 9})), {7, 9});
  EXPECT_TRUE(CGAffineTransform::scale(0, 1).inverted().isIdentity());
}

TEST(CGAffineTransform, MapsARectangleToTheUprightOneAroundIt) {
  const CGRect turned = CGAffineTransform::rotation(std::numbers::pi / 4).apply(CGRect(-1, -1, 2, 2));
  EXPECT_NEAR(turned.width(), 2 * std::numbers::sqrt2, 1e-9);
  expectNear(turned.center(), {0, 0});
  EXPECT_EQ(CGAffineTransform::scale(-1, 1).apply(CGRect(1, 0, 2, 1)), CGRect(-3, 0, 2, 1));
}

TEST(UIColor, BlendsAllFourComponents) {
  const UIColor middle = UIColor(1, 0, 0, 1).blendedTo(UIColor(0, 0, 1, 0), 0.25);
  EXPECT_EQ(middle, UIColor(0.75, 0, 0.25, 0.75));
}

}  // namespace
}  // namespace platform
