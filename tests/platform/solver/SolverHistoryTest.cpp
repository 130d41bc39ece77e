#include "platform/solver/LayoutSolver.h"
#include "tests/platform/solver/SolverHistory.h"

namespace platform {
namespace {

using namespace solvertest;

/// A solver with the constraints that it took.
struct Lived {
  explicit Lived(std::size_t unknowns) {
    for (std::size_t i = 0; i < unknowns; ++i) variables.push_back(solver.addVariable());
  }
  bool add(const HistoryConstraint& constraint) {
    const auto added = solver.addConstraint(constraint.over(variables));
    if (!added) return false;
    ids.push_back(added.id);
    active.push_back(constraint);
    return true;
  }
  void remove(std::size_t index) {
    solver.removeConstraint(ids[index]);
    ids.erase(ids.begin() + static_cast<std::ptrdiff_t>(index));
    active.erase(active.begin() + static_cast<std::ptrdiff_t>(index));
  }
  void move(std::size_t index, double constant) {
    if (solver.setConstant(ids[index], constant)) active[index].constant = constant;
  }
  HistoryScore score() {
    solver.solve();
    std::vector<double> at;
    for (const LayoutVariable variable : variables) at.push_back(solver.value(variable));
    return scoreOf(active, at);
  }
  LayoutSolver solver;
  std::vector<LayoutVariable> variables;
  std::vector<LayoutConstraintId> ids;
  std::vector<HistoryConstraint> active;
};

class LongHistories : public testing::TestWithParam<unsigned> {};

TEST_P(LongHistories, EndAsANewSolverWouldSolveTheSameConstraints) {
  SolverHistory history(GetParam(), 40);
  Lived worn(history.unknowns());
  const int steps = 300 * (1 + static_cast<int>(GetParam() % 5));
  for (int step = 0; step < steps; ++step) {
    const std::size_t count = worn.active.size();
    const int what = history.pick(0, 9);
    if (count < 60 || what < 4) {
      worn.add(history.next());
    } else if (what < 8) {
      worn.remove(history.index(count));
    } else {
      worn.move(history.index(count), history.pick(-60, 60));
    }
    if (step % 10 != 9) continue;
    const HistoryScore now = worn.score();
    ASSERT_LT(now.count(1000) ? now.at(1000) : 0, 1e-4) << "step " << step;
    if (step % 50 != 49) continue;
    Lived fresh(history.unknowns());
    for (const HistoryConstraint& each : worn.active) ASSERT_TRUE(fresh.add(each)) << "step " << step;
    const HistoryScore wanted = fresh.score();
    ASSERT_FALSE(isBetter(wanted, now, 1e-4) || isBetter(now, wanted, 1e-4)) << "step " << step;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LongHistories, testing::Range(1u, 31u));

}  // namespace
}  // namespace platform
