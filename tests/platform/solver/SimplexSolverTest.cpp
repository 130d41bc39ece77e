#include <cmath>

#include "platform/solver/SimplexSolver.h"

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class SimplexSolverTest : public testing::Test {
 protected:
  LinearExpression var() { return solver.addVariable(); }
  double value(const LinearExpression& expression) {
    solver.solve();
    return solver.valueOf(expression);
  }
  LayoutConstraintId add(const LinearConstraint& constraint) {
    const auto added = solver.addConstraint(constraint);
    EXPECT_TRUE(added);
    return added.id;
  }
  SimplexSolver solver;
};

TEST_F(SimplexSolverTest, SolvesEquationsWhateverOrderTheyComeIn) {
  const auto left = var(), width = var(), right = var(), middle = var();
  add(middle * 2 == left + right);
  add(right == left + width);
  add(width == 100);
  add(middle == 70);
  EXPECT_DOUBLE_EQ(value(left), 20);
  EXPECT_DOUBLE_EQ(value(right), 120);
}

TEST_F(SimplexSolverTest, LeavesWhatNothingDecidesAtZero) {
  const auto x = var(), y = var();
  add(x == y);
  EXPECT_DOUBLE_EQ(value(x), 0);
  EXPECT_DOUBLE_EQ(value(y), 0);
}

TEST_F(SimplexSolverTest, CountsAVariableThatOccursTwice) {
  const auto x = var(), y = var();
  add(x + x - x == 7);
  add(y - y == 0);
  EXPECT_DOUBLE_EQ(value(x), 7);
}

TEST_F(SimplexSolverTest, ClimbsAPriorityLadderAndDownAgain) {
  const auto x = var();
  std::vector<LayoutConstraintId> rungs;
  const double priorities[] = {1, 49, 250, 250.5, 749.999, 750, 751, 999, 1000};
  for (const double priority : priorities) {
    rungs.push_back(add((x == priority) | priority));
    EXPECT_DOUBLE_EQ(value(x), priority) << priority;
  }
  for (std::size_t i = rungs.size(); i-- > 1;) {
    solver.removeConstraint(rungs[i]);
    EXPECT_DOUBLE_EQ(value(x), priorities[i - 1]);
  }
}

TEST_F(SimplexSolverTest, OneConstraintOf751BeatsManyOf750AndThoseAnyNumberOf250) {
  const auto x = var();
  for (int i = 0; i < 60; ++i) add((x == 1000 + i % 7) | 750);
  for (int i = 0; i < 200; ++i) add((x == 500) | 250);
  EXPECT_GE(value(x), 1000);
  const auto one = add((x <= 10) | 751);
  EXPECT_DOUBLE_EQ(value(x), 10);
  solver.removeConstraint(one);
  EXPECT_GE(value(x), 1000);
}

TEST_F(SimplexSolverTest, MissesAWishByAsLittleAsRequirementsAllow) {
  const auto width = var();
  add(width <= 320);
  add(width >= 44);
  add((width == 400) | 500);
  EXPECT_DOUBLE_EQ(value(width), 320);
  add((width == 10) | 501);
  EXPECT_DOUBLE_EQ(value(width), 44);
}

TEST_F(SimplexSolverTest, TellsTheRequirementsThatContradictAndGoesOnWithoutTheNewOne) {
  const auto a = var(), b = var(), other = var();
  add(other == 5);
  const auto first = add(a >= 100);
  const auto second = add(b >= a + 20);
  const auto refused = solver.addConstraint(b <= 110);
  ASSERT_FALSE(refused);
  std::vector<LayoutConstraintId> ids;
  for (const ConstraintMultiple& each : refused.conflict) ids.push_back(each.id);
  EXPECT_THAT(ids, UnorderedElementsAre(first, second));
  EXPECT_EQ(solver.constraintCount(), 3u);
  add((b == 0) | 999);
  EXPECT_DOUBLE_EQ(value(b), 120);
  EXPECT_DOUBLE_EQ(value(other), 5);
}

TEST_F(SimplexSolverTest, TellsContradictingEquationsAndTakesRedundantOnes) {
  const auto x = var(), y = var();
  const auto sum = add(x + y == 10);
  const auto x4 = add(x == 4);
  const auto again = add(y == 6);  // says nothing new
  EXPECT_THAT(solver.addConstraint(y == 7).conflict, testing::Not(IsEmpty()));
  solver.removeConstraint(x4);  // now it does
  EXPECT_DOUBLE_EQ(value(x), 4);
  solver.removeConstraint(again);
  add(y == 7);
  EXPECT_DOUBLE_EQ(value(x), 3);
  solver.removeConstraint(sum);
  EXPECT_DOUBLE_EQ(value(y), 7);
}

TEST_F(SimplexSolverTest, MovesConstantsOfEveryKindOfConstraint) {
  const auto x = var(), y = var();
  const auto equation = add(x - 10 == 0);
  const auto least = add(y - x - 5 >= 0);
  const auto most = add(y - 100 <= 0);
  const auto wish = add((y - 50 == 0) | 250);
  EXPECT_DOUBLE_EQ(value(y), 50);
  EXPECT_TRUE(solver.setConstant(equation, -60));
  EXPECT_DOUBLE_EQ(value(y), 65);
  EXPECT_TRUE(solver.setConstant(least, -30));
  EXPECT_DOUBLE_EQ(value(y), 90);
  EXPECT_TRUE(solver.setConstant(wish, -200));
  EXPECT_DOUBLE_EQ(value(y), 100);
  EXPECT_TRUE(solver.setConstant(most, -400));
  EXPECT_DOUBLE_EQ(value(y), 200);
}

TEST_F(SimplexSolverTest, RefusesAConstantThatCannotHoldAndChangesNothing) {
  const auto x = var();
  const auto wide = add(x - 100 == 0);
  const auto same = add(x - 100 == 0);
  add(x <= 150);
  EXPECT_FALSE(solver.setConstant(wide, -120));  // the other equation stands
  EXPECT_DOUBLE_EQ(value(x), 100);
  solver.removeConstraint(same);
  EXPECT_FALSE(solver.setConstant(wide, -151));
  EXPECT_DOUBLE_EQ(value(x), 100);
  EXPECT_TRUE(solver.setConstant(wide, -150));
  EXPECT_DOUBLE_EQ(value(x), 150);
}

TEST_F(SimplexSolverTest, EndsOnAProblemThatCyclesUnderTheGreedyRule) {
  // Beale's example: the largest coefficient enters, ties by index, and the basis comes back after six pivots.
  const auto a = var(), b = var(), c = var(), d = var();
  for (const auto& each : {a, b, c, d}) add(each >= 0);
  add(a * 0.25 - b * 60 - c * 0.04 + d * 9 <= 0);
  add(a * 0.5 - b * 90 - c * 0.02 + d * 3 <= 0);
  add(c <= 1);
  add((a * 0.75 - b * 150 + c * 0.02 - d * 6 >= 1000) | 500);
  EXPECT_NEAR(value(a * 0.75 - b * 150 + c * 0.02 - d * 6), 0.05, 1e-9);
}

TEST_F(SimplexSolverTest, ForgetsAVariableWithItsConstraints) {
  const auto kept = var();
  add((kept == 3) | 10);
  for (int round = 0; round < 50; ++round) {
    const auto gone = solver.addVariable();
    const auto first = add(LinearExpression(gone) == kept + round);
    const auto second = add((LinearExpression(gone) >= 100) | 20);
    EXPECT_DOUBLE_EQ(value(gone), 100);
    solver.removeConstraint(first);
    solver.removeConstraint(second);
    solver.removeVariable(gone);
    EXPECT_DOUBLE_EQ(value(kept), 3);
  }
  EXPECT_EQ(solver.constraintCount(), 1u);
}

}  // namespace
}  // namespace platform
