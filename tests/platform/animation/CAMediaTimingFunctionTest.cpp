#include <cmath>

#include "platform/animation/CAMediaTimingFunction.h"

namespace platform {
namespace {

TEST(CAMediaTimingFunction, StartsAtNothingAndEndsAtAllWhateverItsShape) {
  for (const CAMediaTimingFunction& f :
       {CAMediaTimingFunction(), CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseInEaseOut),
        CAMediaTimingFunction(0.3, -0.5, 0.7, 1.6), CAMediaTimingFunction::spring(0.4, 3),
        CAMediaTimingFunction::spring(1, 0), CAMediaTimingFunction::spring(2, 0)}) {
    EXPECT_EQ(f.valueAt(0), 0);
    EXPECT_EQ(f.valueAt(1), 1);
    EXPECT_EQ(f.valueAt(-5), 0);
    EXPECT_EQ(f.valueAt(5), 1);
    EXPECT_NEAR(f.valueAt(0.999), 1, 0.02);
  }
}

TEST(CAMediaTimingFunction, KnowsTheNamedCurves) {
  EXPECT_EQ(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear).valueAt(0.3), 0.3);
  EXPECT_EQ(CAMediaTimingFunction::functionWithName("no such curve").valueAt(0.3), 0.3);
  const auto in = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseIn);
  const auto out = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseOut);
  const auto both = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseInEaseOut);
  EXPECT_LT(in.valueAt(0.3), 0.25);
  EXPECT_NEAR(in.valueAt(0.3), 1 - out.valueAt(0.7), 1e-6);
  EXPECT_NEAR(both.valueAt(0.5), 0.5, 1e-6);
  EXPECT_NEAR(both.valueAt(0.25), 0.1291, 1e-3);
}

TEST(CAMediaTimingFunction, SpringsSwingOnlyWhenTheyAreLoose) {
  const auto highest = [](const CAMediaTimingFunction& f) {
    double most = 0;
    for (int i = 0; i <= 1000; ++i) most = std::max(most, f.valueAt(i / 1000.0));
    return most;
  };
  EXPECT_GT(highest(CAMediaTimingFunction::spring(0.3, 0)), 1.2);
  EXPECT_GT(highest(CAMediaTimingFunction::spring(0.7, 0)), 1.01);
  EXPECT_LT(highest(CAMediaTimingFunction::spring(1, 0)), 1.0001);
  EXPECT_LT(highest(CAMediaTimingFunction::spring(3, 0)), 1.0001);
  EXPECT_GT(CAMediaTimingFunction::spring(1, 8).valueAt(0.05), CAMediaTimingFunction::spring(1, 0).valueAt(0.05));
  EXPECT_TRUE(std::isfinite(CAMediaTimingFunction::spring(0, std::nan("")).valueAt(0.5)));
}

}  // namespace
}  // namespace platform
