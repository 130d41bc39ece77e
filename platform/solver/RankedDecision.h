#pragma once

#include <vector>

#include "platform/solver/ConstraintGraph.h"
#include "platform/solver/SimplexSolver.h"

namespace platform {

/// Takes constraints one by one by rank into a solver of their own, so that what yields depends on them alone. Slower
/// than to follow changes, and the judge where following them is in doubt.
///
/// Owner: a call of LayoutSolver. Thread: that of its owner.
template <class Number>
class RankedDecision {
 public:
  /// Takes what is required. All constraints are of the graph, by rank.
  RankedDecision(const ConstraintGraph& graph, const std::vector<LayoutConstraintId>& byRank);
  struct Yielding {
    LayoutConstraintId id;
    std::vector<LayoutConstraintId> others;  ///< that it contradicts, by rank
  };
  /// By rank.
  const std::vector<Yielding>& yielding() const { return yielding_; }
  /// Takes the wishes and what yields, as a wish of that priority, and solves.
  void solve(double yieldingPriority);
  /// As of solve(). The unknown must occur in one of the constraints.
  double value(std::uint32_t variable) const { return solver_.value(unknowns_[variable]); }

 private:
  typename BasicSimplexSolver<Number>::AddResult add(LayoutConstraintId id, double priority);

  const ConstraintGraph& graph_;
  const std::vector<LayoutConstraintId>& byRank_;
  BasicSimplexSolver<Number> solver_;
  std::vector<LayoutVariable> unknowns_;     // by unknown of the graph
  std::vector<LayoutConstraintId> ownerOf_;  // by constraint of the solver
  std::vector<Yielding> yielding_;
};

}  // namespace platform
