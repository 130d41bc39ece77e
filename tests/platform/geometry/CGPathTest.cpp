#include <numbers>

#include "platform/geometry/CGPath.h"

namespace platform {
namespace {

constexpr double pi = std::numbers::pi;

void expectNear(const CGRect& actual, const CGRect& expected, double tolerance = 0.01) {
  EXPECT_NEAR(actual.minX(), expected.minX(), tolerance);
  EXPECT_NEAR(actual.minY(), expected.minY(), tolerance);
  EXPECT_NEAR(actual.maxX(), expected.maxX(), tolerance);
  EXPECT_NEAR(actual.maxY(), expected.maxY(), tolerance);
}

CGPath arc(double start, double end, bool clockwise) {
  CGPath path;
  path.arc({0, 0}, 10, start, end, clockwise);
  return path;
}

TEST(CGPath, ArcsGoTheWayTheyAreTold) {
  // From the right: clockwise passes the bottom, the other way the top (y grows downwards).
  expectNear(arc(0, pi, true).bounds(), {-10, 0, 20, 10});
  expectNear(arc(0, pi, false).bounds(), {-10, -10, 20, 10});
  EXPECT_NEAR(arc(0, pi / 2, true).length(), 10 * pi / 2, 0.01);
  EXPECT_NEAR(arc(0, pi / 2, false).length(), 10 * pi * 1.5, 0.02);
  EXPECT_NEAR(arc(pi / 2, 0, false).length(), 10 * pi / 2, 0.01);
}

TEST(CGPath, AnArcOfATurnOrMoreIsOneCircle) {
  for (const bool clockwise : {true, false}) {
    EXPECT_NEAR(arc(0, 2 * pi, clockwise).length(), 20 * pi, 0.02);
    EXPECT_NEAR(arc(-pi / 2, 2 * pi, clockwise).length(), 20 * pi, 0.02);
  }
  EXPECT_NEAR(arc(1, 1, true).length(), 0, 1e-9);
}

TEST(CGPath, AnArcIsJoinedToWhatIsThereByALine) {
  CGPath path;
  path.move({-30, 0});
  path.arc({0, 0}, 10, pi, 1.5 * pi, true);
  EXPECT_NEAR(path.length(), 20 + 10 * pi / 2, 0.01);
  CGPath pointless;
  pointless.move({3, 4});
  pointless.arc({0, 0}, 0, 0, pi, true);
  EXPECT_NEAR(pointless.length(), 5, 1e-9);
  pointless.arc({0, 0}, 5, std::nan(""), pi, true);
  EXPECT_NEAR(pointless.length(), 5, 1e-9) << "an angle that is no number draws nothing";
}

TEST(CGPath, BoundsAreThoseOfTheOutlineNotOfControlPoints) {
  CGPath path;
  path.move({0, 0});
  path.curve({0, 40}, {100, 40}, {100, 0});
  expectNear(path.bounds(), {0, 0, 100, 30});
  expectNear(CGPath::oval({5, 5, 20, 10}).bounds(), {5, 5, 20, 10});
  EXPECT_EQ(CGPath().bounds(), CGRectZero);
}

TEST(CGPath, ContainsByWindingOrByEvenOdd) {
  CGPath ring = CGPath::rect({0, 0, 30, 30});
  ring.append(CGPath::rect({10, 10, 10, 10}));
  EXPECT_TRUE(ring.contains({15, 15}));
  EXPECT_FALSE(ring.contains({15, 15}, true));
  EXPECT_TRUE(ring.contains({5, 15}, true));
  EXPECT_FALSE(ring.contains({31, 15}));
  CGPath open;
  open.move({0, 0});
  open.line({10, 0});
  open.line({0, 10});
  EXPECT_TRUE(open.contains({2, 2})) << "an open subpath counts as closed";
  const CGPath circle = CGPath::oval({0, 0, 20, 20});
  EXPECT_TRUE(circle.contains({10, 0.1}));
  EXPECT_FALSE(circle.contains({1, 1}));
}

TEST(CGPath, RoundedRectanglesHoldTheirRadiusAndAlwaysHaveTheSamePieces) {
  const CGPath circle = CGPath::roundedRect({0, 0, 60, 60}, 100);
  EXPECT_NEAR(circle.length(), 60 * pi, 0.05);
  const CGPath screen = CGPath::roundedRect({0, 0, 390, 844}, 0.1);
  ASSERT_EQ(circle.elements().size(), screen.elements().size());
  expectNear(circle.blendedTo(screen, 0.5).bounds(), {0, 0, 225, 452});
  EXPECT_EQ(circle.blendedTo(screen, 0), circle);
  EXPECT_TRUE(CGPath::roundedRect({0, 0, 10, 10}, -3).contains({0.1, 0.1}));
}

TEST(CGPath, ContinuousCornersStayInsideTheRectangleAndNearTheRoundOnes) {
  for (const double radius : {0.0, 4.0, 16.0, 25.0, 30.0, 90.0}) {
    SCOPED_TRACE(radius);
    const CGRect rect(0, 0, 120, 60);
    const CGPath smooth = CGPath::continuousRoundedRect(rect, radius), round = CGPath::roundedRect(rect, radius);
    expectNear(smooth.bounds(), rect);
    EXPECT_NEAR(smooth.length(), round.length(), 1 + radius * 0.1);
    EXPECT_TRUE(smooth.contains({60, 0.5}));
    EXPECT_EQ(smooth.contains({0.5, 0.5}), round.contains({0.5, 0.5}));
  }
}

TEST(CGPath, PathsOfDifferentPiecesJumpAtTheEndInsteadOfMixing) {
  const CGPath a = CGPath::rect({0, 0, 1, 1}), b = CGPath::oval({0, 0, 9, 9});
  EXPECT_EQ(a.blendedTo(b, 0.9), a);
  EXPECT_EQ(a.blendedTo(b, 1), b);
}

TEST(CGPath, TrimsByLengthAcrossLinesAndCurves) {
  CGPath path;
  path.move({0, 0});
  path.line({10, 0});
  path.line({10, 30});
  EXPECT_EQ(path.trimmed(0, 0.5).bounds(), CGRect(0, 0, 10, 10));
  EXPECT_EQ(path.trimmed(0.5, 1).bounds(), CGRect(10, 10, 0, 20));
  EXPECT_TRUE(path.trimmed(0.7, 0.7).isEmpty());
  EXPECT_TRUE(path.trimmed(0.7, 0.2).isEmpty());
  EXPECT_EQ(path.trimmed(-1, 2), path);

  const CGPath circle = arc(-pi / 2, 2 * pi, true);
  const CGPath part = circle.trimmed(0, 0.25);
  EXPECT_NEAR(part.length(), 5 * pi, 0.05);
  expectNear(part.bounds(), {0, -10, 10, 10}, 0.05);
  EXPECT_NEAR(circle.trimmed(0.1, 0.5).length(), 8 * pi, 0.05);
}

TEST(CGPath, DrawingOnAfterACloseStartsWhereTheSubpathStarted) {
  CGPath path = CGPath::rect({2, 3, 10, 10});
  path.line({2, 0});
  EXPECT_EQ(path.currentPoint(), (CGPoint{2, 0}));
  EXPECT_NEAR(path.length(), 43, 1e-9);
}

}  // namespace
}  // namespace platform
