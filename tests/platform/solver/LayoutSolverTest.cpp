#include <cmath>
#include <limits>

#include "platform/solver/LayoutSolver.h"

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LayoutSolverTest : public testing::Test {
 protected:
  LinearExpression var() { return solver.addVariable(); }
  double value(const LinearExpression& expression) {
    solver.solve();
    return solver.valueOf(expression);
  }
  LayoutConstraintId add(const LinearConstraint& constraint) { return solver.addConstraint(constraint, ++rank); }
  LayoutSolver solver;
  std::uint64_t rank = 0;
};

TEST_F(LayoutSolverTest, KeepsDefinitionsOutOfTheTableauAndFollowsThemWhenTheyMove) {
  constexpr int rows = 2000;
  std::vector<LinearExpression> tops, heights;
  std::vector<LayoutConstraintId> wishes;
  for (int i = 0; i < rows; ++i) {
    tops.push_back(var());
    heights.push_back(var());
    add(i == 0 ? tops[0] == 10 : tops.back() == tops[tops.size() - 2] + heights[heights.size() - 2] + 1);
    wishes.push_back(add((heights.back() == 20) | 750));
    add((heights.back() <= 30) | 900);
  }
  EXPECT_DOUBLE_EQ(value(tops[rows - 1]), 10 + 21.0 * (rows - 1));
  EXPECT_EQ(solver.tableauCount(), 0u);
  solver.setConstant(wishes[5], -25);
  EXPECT_DOUBLE_EQ(value(tops[rows - 1]), 15 + 21.0 * (rows - 1));
  solver.setConstant(wishes[5], -50);
  EXPECT_DOUBLE_EQ(value(tops[6]), 10 + 21 * 6 + 10);
  EXPECT_EQ(solver.pivotCount(), 0u);
  // Something that hangs on all of them makes them compete; without it they stand alone again.
  const auto end = add((tops[9] + heights[9] <= 100) | 800);
  EXPECT_DOUBLE_EQ(value(tops[9] + heights[9]), 100);
  EXPECT_GT(solver.tableauCount(), 0u);
  solver.removeConstraint(end);
  EXPECT_DOUBLE_EQ(value(tops[9] + heights[9]), 10 + 21 * 10 - 1 + 10);
  EXPECT_EQ(solver.tableauCount(), 0u);
}

TEST_F(LayoutSolverTest, SolvesRingsOfEquations) {
  const auto a = var(), b = var(), c = var(), x = var(), y = var();
  add(a == b);
  add(b == c * 2);
  add(x == a);
  add(y == x + b);
  add(y + c == 100);
  EXPECT_DOUBLE_EQ(value(c), 20);
  EXPECT_DOUBLE_EQ(value(y), 80);
}

TEST_F(LayoutSolverTest, LetsTheHighestRankYieldWheneverItIsSolved) {
  const auto build = [](bool solvesInBetween, bool backwards) {
    LayoutSolver solver;
    const LinearExpression top = solver.addVariable(), height = solver.addVariable(), bottom = solver.addVariable();
    std::vector<LinearConstraint> all{bottom == top + height, top == 0, bottom == 844, height == 50, height >= 60};
    std::vector<LayoutConstraintId> ids(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
      const std::size_t at = backwards ? all.size() - 1 - i : i;
      ids[at] = solver.addConstraint(all[at], at + 1);
      if (solvesInBetween) solver.solve();
    }
    solver.solve();
    EXPECT_TRUE(solver.yields(ids[3]));
    EXPECT_FALSE(solver.yields(ids[4]));
    EXPECT_THAT(solver.takeConflicts(), testing::SizeIs(testing::Ge(1u)));
    const double first = solver.valueOf(height);
    solver.removeConstraint(ids[2]);  // now the other two contradict each other
    solver.solve();
    EXPECT_FALSE(solver.yields(ids[3]));
    EXPECT_TRUE(solver.yields(ids[4]));
    EXPECT_DOUBLE_EQ(solver.valueOf(height), 50);
    return first;
  };
  for (const bool solvesInBetween : {false, true}) {
    for (const bool backwards : {false, true}) EXPECT_DOUBLE_EQ(build(solvesInBetween, backwards), 844);
  }
}

TEST_F(LayoutSolverTest, TellsOnceWhatBeginsToYieldAndWhy) {
  const auto a = var(), b = var(), unrelated = var();
  const auto other = add(unrelated == 5);
  const auto first = add(a >= 100);
  const auto second = add(b == a + 20);
  const auto wish = add((b == 0) | 10);
  const auto third = add(b <= 110);
  EXPECT_DOUBLE_EQ(value(b), 120);
  const auto told = solver.takeConflicts();
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].yielding, third);
  EXPECT_THAT(told[0].others, ElementsAre(first, second));
  solver.setConstant(other, -6);
  solver.setConstant(wish, -1);
  solver.setConstant(first, -95);  // still too much
  EXPECT_DOUBLE_EQ(value(b), 115);
  EXPECT_THAT(solver.takeConflicts(), IsEmpty());
  solver.setConstant(first, -80);
  EXPECT_DOUBLE_EQ(value(b), 100);
  EXPECT_FALSE(solver.yields(third));
  solver.setConstant(first, -95);
  EXPECT_DOUBLE_EQ(value(b), 115);
  EXPECT_EQ(solver.takeConflicts().size(), 1u);
}

TEST_F(LayoutSolverTest, MovesConstantsTogetherThatCouldNotMoveOneByOne) {
  const auto x = var(), y = var();
  const auto low = add(x + y >= 10);
  const auto high = add(x + y <= 20);
  add((x == 3) | 5);
  add((y == 3) | 4);
  EXPECT_DOUBLE_EQ(value(x + y), 10);
  solver.setConstant(low, -50);
  solver.setConstant(high, -60);
  EXPECT_DOUBLE_EQ(value(x + y), 50);
  EXPECT_THAT(solver.takeConflicts(), IsEmpty());
}

TEST_F(LayoutSolverTest, SettlesALoneUnknownByItsLevels) {
  const auto x = var();
  add((x >= 10) | 900);
  add((x * 2 <= 80) | 900);
  const auto pull = add((x == 60) | 500);
  for (int i = 0; i < 3; ++i) add((x == 20) | 300);
  EXPECT_DOUBLE_EQ(value(x), 40);
  solver.removeConstraint(pull);
  EXPECT_DOUBLE_EQ(value(x), 20);
  const auto least = add(x >= 35);
  EXPECT_DOUBLE_EQ(value(x), 35);
  solver.removeConstraint(least);
  EXPECT_DOUBLE_EQ(value(x), 20);
}

TEST_F(LayoutSolverTest, LeavesWhatNothingDecidesAtZeroAgain) {
  const auto x = var(), y = var();
  const auto same = add(x == y + 4);
  const auto fixed = add(y == 7);
  EXPECT_DOUBLE_EQ(value(x), 11);
  solver.removeConstraint(fixed);
  EXPECT_DOUBLE_EQ(value(x - y), 4);
  solver.removeConstraint(same);
  EXPECT_DOUBLE_EQ(value(x), 0);
  EXPECT_DOUBLE_EQ(value(y), 0);
  EXPECT_EQ(solver.constraintCount(), 0u);
}

// ---- Numbers that lie far apart, and more than can hold

TEST_F(LayoutSolverTest, HoldsWhatIsRequiredWhenCoefficientsLieFarApart) {
  const auto a = var(), b = var(), c = var();
  const auto least = a * 1000 + c * 0.001 - 46;
  const auto same = a * -1 + c + b * 0.001 - 31;
  add(least >= 0);
  add((a + b >= 46) | 999);
  add(same == 0);
  add((c == -6) | 250);
  EXPECT_GE(value(least), -1e-6);
  EXPECT_NEAR(value(same), 0, 1e-9);
  EXPECT_GE(value(a + b), 46 - 1e-6);
  EXPECT_NEAR(value(c), -6, 1e-6);
  EXPECT_THAT(solver.takeConflicts(), IsEmpty());
}

TEST_F(LayoutSolverTest, CountsTheViolationsOfAWishInItsOwnUnitsHoweverLargeTheyAre) {
  const auto x = var(), y = var();
  add(x + y == 100);
  add((x * 1e6 == 10e6) | 250);
  add((y * 1e-6 == 10e-6) | 250);
  EXPECT_NEAR(value(x), 10, 1e-6);
}

TEST_F(LayoutSolverTest, PublishesOnlyFiniteNumbersAndKeepsTheMeaningOfOthers) {
  constexpr double huge = 1e308;
  const double infinity = std::numeric_limits<double>::infinity(), none = std::nan("");
  const auto x = var(), y = var(), z = var(), far = var(), last = var();
  add(x <= huge);
  add(x >= -infinity);
  add((x == 20) | 250);
  add((y * (huge / 10) == 4 * (huge / 10)) | 250);
  add(x + z == 50);
  add((z == huge) | 100);
  add(z * none == 1);
  add(z * infinity == 1);
  add((far == huge) | 999);
  add(last == far * huge);
  const auto moved = add((y >= 1) | 100);
  EXPECT_NEAR(value(x), 20, 1e-9);
  EXPECT_NEAR(value(y), 4, 1e-9);
  EXPECT_NEAR(value(z), 30, 1e-9);
  for (const double constant : {none, -infinity, huge}) {
    solver.setConstant(moved, constant);
    for (const auto& each : {x, y, z, far, last}) EXPECT_TRUE(std::isfinite(value(each))) << constant;
  }
  EXPECT_NEAR(value(z), 30, 1e-9);
}

}  // namespace
}  // namespace platform
