#include <cmath>
#include <gtest/gtest.h>

#include "platform/uikit/lists/ScrollMotion.h"

namespace platform::test {
namespace {

constexpr double rate = 0.998;
constexpr ScrollMotion::Limits range{0, 1000, true};

double endOf(const ScrollMotion& motion) {
  double seconds = 0;
  while (!motion.isOver(seconds) && seconds < 20) seconds += 0.01;
  EXPECT_LT(seconds, 20);
  return motion.position(seconds);
}

/// No frame jumps further than the greatest speed allows.
void expectSmooth(const ScrollMotion& motion, double fastest) {
  constexpr double step = 1.0 / 240;
  for (double t = 0; !motion.isOver(t); t += step) {
    EXPECT_LE(std::abs(motion.position(t + step) - motion.position(t)), fastest * step + 0.3) << "at " << t;
  }
}

TEST(ScrollMotion, GlidesToWhereTheSpeedCarriesIt) {
  const ScrollMotion motion = ScrollMotion::glide(100, 800, range, rate);
  EXPECT_NEAR(motion.position(0), 100, 1e-9);
  EXPECT_NEAR(endOf(motion), ScrollMotion::restingPlace(100, 800, rate), 8);
  expectSmooth(motion, 800);
}

TEST(ScrollMotion, GoesBeyondAnEdgeAndComesBackToIt) {
  for (const double speed : {-1500.0, 4000.0}) {
    const double start = speed < 0 ? 200 : 800;
    const double edge = speed < 0 ? 0 : 1000;
    const ScrollMotion motion = ScrollMotion::glide(start, speed, range, rate);
    double furthest = 0;
    for (double t = 0; !motion.isOver(t); t += 0.005) {
      furthest = std::max(furthest, speed < 0 ? -motion.position(t) : motion.position(t) - 1000);
    }
    EXPECT_GT(furthest, 5);
    EXPECT_LT(furthest, 200);
    EXPECT_EQ(endOf(motion), edge);
    expectSmooth(motion, std::abs(speed));
  }
}

TEST(ScrollMotion, StopsAtTheEdgeWhereNothingBounces) {
  const ScrollMotion motion = ScrollMotion::glide(800, 5000, {0, 1000, false}, rate);
  for (double t = 0; t < 3; t += 0.01) EXPECT_LE(motion.position(t), 1000 + 1e-6);
  EXPECT_EQ(endOf(motion), 1000);
  EXPECT_EQ(endOf(ScrollMotion::glide(1100, 100, {0, 1000, false}, rate)), 1000);
}

TEST(ScrollMotion, SpringsBackFromOutsideAndSwingsPastTheEdgeOnlyWhenPushedIn) {
  const ScrollMotion back = ScrollMotion::glide(-80, 0, range, rate);
  for (double t = 0; t < 3; t += 0.01) EXPECT_LE(back.position(t), 1e-9);
  EXPECT_EQ(endOf(back), 0);
  EXPECT_EQ(endOf(ScrollMotion::glide(-80, 100, range, rate)), 0);
  EXPECT_GT(endOf(ScrollMotion::glide(-80, 1200, range, rate)), 400);
}

TEST(ScrollMotion, RestsWhenItIsTooSlowOrHasNoRoom) {
  EXPECT_TRUE(ScrollMotion::glide(50, 5, range, rate).isOver(0));
  EXPECT_EQ(endOf(ScrollMotion::glide(0, 900, {0, 0, true}, rate)), 0);
  EXPECT_EQ(endOf(ScrollMotion::glide(0, 900, {0, -50, true}, rate)), 0);
}

TEST(ScrollMotion, TravelsInItsTimeAndNeverBackwards) {
  const ScrollMotion motion = ScrollMotion::travel(10, 90, 0.3);
  double last = 10;
  for (double t = 0; t < 0.3; t += 0.01) {
    EXPECT_GE(motion.position(t), last - 1e-9);
    last = motion.position(t);
  }
  EXPECT_NEAR(motion.position(0.15), 50, 1e-9);
  EXPECT_EQ(motion.position(0.3), 90);
  EXPECT_TRUE(motion.isOver(0.3));
}

TEST(ScrollMotion, ShiftsAsAWhole) {
  ScrollMotion motion = ScrollMotion::glide(100, 900, range, rate);
  const double before = motion.position(0.4);
  motion.shift(33);
  EXPECT_NEAR(motion.position(0.4), before + 33, 1e-9);
}

TEST(ScrollMotion, TheRubberBandGivesLessTheFurtherItIsPulledAndCanBeUndone) {
  double last = 0;
  for (double pull = 10; pull < 2000; pull += 10) {
    const double shown = ScrollMotion::rubberBand(pull, 600);
    EXPECT_GT(shown, last);
    EXPECT_LT(shown, std::min(pull, 600.0));
    EXPECT_NEAR(ScrollMotion::rubberBandInverse(shown, 600), pull, 1e-6);
    EXPECT_EQ(ScrollMotion::rubberBand(-pull, 600), -shown);
    last = shown;
  }
  EXPECT_EQ(ScrollMotion::rubberBand(50, 0), 0);
}

}  // namespace
}  // namespace platform::test
