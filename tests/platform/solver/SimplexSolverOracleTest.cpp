#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include "platform/solver/SimplexSolver.h"

namespace platform {
namespace {

/// Generated problems whose best answer is found by trying. Constraints are differences of two unknowns against whole
/// numbers (`a - b relation k`), so some best answer lies on whole numbers and a small grid holds it.
struct Difference {
  int a = 0;
  int b = -1;  // none: a alone
  NSLayoutRelation relation = NSLayoutRelation::equal;
  int k = 0;
  double priority = 1000;

  double violation(const std::vector<double>& at) const {
    const auto index = [](int i) { return static_cast<std::size_t>(i); };
    const double difference = at[index(a)] - (b < 0 ? 0 : at[index(b)]) - k;
    if (relation == NSLayoutRelation::equal) return std::abs(difference);
    return std::max(0.0, relation == NSLayoutRelation::lessThanOrEqual ? difference : -difference);
  }
};

/// The sums of violations, highest priority first: smaller in the order of the alphabet is better.
std::map<double, double, std::greater<>> score(const std::vector<Difference>& all, const std::vector<double>& at) {
  std::map<double, double, std::greater<>> sums;
  for (const Difference& each : all) sums[each.priority] += each.violation(at);
  return sums;
}

bool isBetter(const std::map<double, double, std::greater<>>& a, const std::map<double, double, std::greater<>>& b) {
  for (const auto& [priority, sum] : a) {
    const double other = b.at(priority);
    if (std::abs(sum - other) > 1e-6) return sum < other;
  }
  return false;
}

class Oracle {
 public:
  explicit Oracle(unsigned seed) : random_(seed) {}
  int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

  Difference difference(int unknowns) {
    Difference made;
    made.a = pick(0, unknowns - 1);
    made.b = pick(-1, unknowns - 1);
    if (made.b == made.a) made.b = -1;
    made.relation = static_cast<NSLayoutRelation>(pick(-1, 1));
    made.k = pick(-3, 3);
    constexpr double priorities[] = {1000, 1000, 999, 750, 750, 749.5, 250, 250, 1};
    made.priority = priorities[pick(0, 8)];
    return made;
  }

  /// Three unknowns in a chain of differences up to 3 reach no farther.
  static constexpr double edge = 9;

  /// The best of all whole-number points within the edges.
  static std::map<double, double, std::greater<>> best(const std::vector<Difference>& all, int unknowns) {
    std::vector<double> at(static_cast<std::size_t>(unknowns), -edge);
    auto best = score(all, at);
    while (true) {
      std::size_t i = 0;
      while (i < at.size() && at[i] == edge) at[i++] = -edge;
      if (i == at.size()) return best;
      ++at[i];
      const auto tried = score(all, at);
      if (isBetter(tried, best)) best = tried;
    }
  }

 private:
  std::mt19937 random_;
};

LinearConstraint linear(const Difference& difference, const std::vector<LayoutVariable>& variables) {
  const auto at = [&](int i) { return variables[static_cast<std::size_t>(i)]; };
  LinearExpression expression(at(difference.a));
  if (difference.b >= 0) expression.add(at(difference.b), -1);
  expression.constant -= difference.k;
  return {expression, difference.relation, difference.priority};
}

class SolverAgainstOracle : public testing::TestWithParam<unsigned> {};

TEST_P(SolverAgainstOracle, IsAsGoodAsEveryPointOfTheGridAfterEachAdditionRemovalAndMove) {
  Oracle oracle(GetParam());
  for (int problem = 0; problem < 20; ++problem) {
    const int unknowns = oracle.pick(1, 3);
    SimplexSolver solver;
    std::vector<LayoutVariable> variables;
    for (int i = 0; i < unknowns; ++i) variables.push_back(solver.addVariable());
    std::vector<Difference> active;
    std::vector<LayoutConstraintId> ids;
    for (int step = 0; step < 14; ++step) {
      const int what = oracle.pick(0, 9);
      const auto some =
          active.empty() ? 0 : static_cast<std::size_t>(oracle.pick(0, static_cast<int>(active.size()) - 1));
      if (what < 6 || active.empty()) {
        const Difference made = oracle.difference(unknowns);
        auto with = active;
        with.push_back(made);
        const auto added = solver.addConstraint(linear(made, variables));
        // The grid's edge stands in for "nothing satisfies it": with so small numbers a solution would lie inside.
        const double unmet = Oracle::best(with, unknowns)[1000];
        EXPECT_EQ(static_cast<bool>(added), made.priority < 1000 || unmet < 0.5) << "problem " << problem;
        if (!added) continue;
        active = with;
        ids.push_back(added.id);
      } else if (what < 8) {
        solver.removeConstraint(ids[some]);
        active.erase(active.begin() + static_cast<std::ptrdiff_t>(some));
        ids.erase(ids.begin() + static_cast<std::ptrdiff_t>(some));
      } else {
        auto moved = active;
        moved[some].k = oracle.pick(-3, 3);
        const bool done = solver.setConstant(ids[some], -moved[some].k);
        const double unmet = Oracle::best(moved, unknowns)[1000];
        EXPECT_EQ(done, unmet < 0.5) << "problem " << problem;
        if (done) active = moved;
      }
      solver.solve();
      std::vector<double> at;
      for (const LayoutVariable variable : variables) at.push_back(solver.value(variable));
      const auto found = score(active, at);
      const auto wanted = Oracle::best(active, unknowns);
      ASSERT_FALSE(isBetter(wanted, found)) << "problem " << problem << ", step " << step;
      ASSERT_LT(found.count(1000) ? found.at(1000) : 0, 1e-6);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SolverAgainstOracle, testing::Range(1u, 6u));

/// Larger ones: the same constraints reached by two histories must be equally good, and requirements always hold.
TEST(SimplexSolverHistory, EndsEquallyGoodHoweverItCameThere) {
  Oracle oracle(77);
  constexpr int unknowns = 40;
  SimplexSolver worn;
  std::vector<LayoutVariable> variables;
  for (int i = 0; i < unknowns; ++i) variables.push_back(worn.addVariable());
  std::vector<Difference> active;
  std::vector<LayoutConstraintId> ids;
  for (int step = 0; step < 3000; ++step) {
    if (active.size() < 60 || oracle.pick(0, 1) == 0) {
      const Difference made = oracle.difference(unknowns);
      const auto added = worn.addConstraint(linear(made, variables));
      if (!added) continue;
      active.push_back(made);
      ids.push_back(added.id);
    } else {
      const auto some = static_cast<std::size_t>(oracle.pick(0, static_cast<int>(active.size()) - 1));
      worn.removeConstraint(ids[some]);
      active.erase(active.begin() + static_cast<std::ptrdiff_t>(some));
      ids.erase(ids.begin() + static_cast<std::ptrdiff_t>(some));
    }
    if (step % 50 != 0) continue;
    worn.solve();
    SimplexSolver fresh;
    std::vector<LayoutVariable> freshVariables;
    for (int i = 0; i < unknowns; ++i) freshVariables.push_back(fresh.addVariable());
    for (auto each = active.rbegin(); each != active.rend(); ++each) {
      ASSERT_TRUE(fresh.addConstraint(linear(*each, freshVariables)));
    }
    fresh.solve();
    std::vector<double> wornAt, freshAt;
    for (const LayoutVariable variable : variables) wornAt.push_back(worn.value(variable));
    for (const LayoutVariable variable : freshVariables) freshAt.push_back(fresh.value(variable));
    const auto a = score(active, wornAt);
    const auto b = score(active, freshAt);
    ASSERT_FALSE(isBetter(a, b) || isBetter(b, a)) << "step " << step;
    ASSERT_LT(a.count(1000) ? a.at(1000) : 0, 1e-6);
  }
}

/// Awkward multipliers, moved a hundred thousand times: rounding must not add up.
TEST(SimplexSolverHistory, DoesNotDriftOverManyMoves) {
  SimplexSolver solver;
  const LayoutVariable width = solver.addVariable();
  const auto outer = solver.addConstraint(LinearExpression(width) == 390);
  std::vector<LayoutVariable> thirds;
  for (int i = 0; i < 3; ++i) {
    thirds.push_back(solver.addVariable());
    (void)solver.addConstraint((LinearExpression(thirds.back()) == LinearExpression(width) * (1.0 / 3)) | 900);
    (void)solver.addConstraint(LinearExpression(thirds.back()) <= 100.1);
  }
  for (int i = 0; i < 100000; ++i) ASSERT_TRUE(solver.setConstant(outer.id, -(100 + (i * 37) % 400 + 0.1)));
  ASSERT_TRUE(solver.setConstant(outer.id, -270));
  solver.solve();
  for (const LayoutVariable third : thirds) EXPECT_NEAR(solver.value(third), 90, 1e-7);
}

}  // namespace
}  // namespace platform
