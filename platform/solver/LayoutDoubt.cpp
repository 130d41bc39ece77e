#include <algorithm>
#include <utility>

#include "platform/solver/LayoutSolver.h"

// Where to follow the changes is not enough: what hangs together with the doubtful constraints is taken by rank.

namespace platform {

namespace {

/// More would take longer to decide at once than to turn round one by one.
constexpr std::size_t decisionLimit = 4000;

}  // namespace

void LayoutSolver::decide() {
  turnsLeft_ = turnsBeforeDecision;
  std::vector<LayoutConstraintId> seeds = pending_;
  for (const auto& [id, proof] : proofs_) seeds.push_back(id);
  std::vector<LayoutConstraintId> all;
  graph_.collectComponent(seeds, all, unknowns_);
  if (all.size() > decisionLimit) return;
  const RankedDecision<double> decision(graph_, all);
  auto next = decision.yielding().begin();
  for (const LayoutConstraintId id : all) {
    Constraint& constraint = graph_.constraint(id);
    constraint.isDecided = true;
    decided_.push_back(id);
    if (next != decision.yielding().end() && next->id == id) {
      if (!constraint.yields && constraint.role != Role::pending) displaceAndWait(id);
      yieldFor(id, (next++)->others);
    } else if (constraint.yields) {
      tryAgain(id);
    }
  }
}

bool LayoutSolver::needsCare(const Constraint& constraint) const {
  if (constraint.yields || constraint.role == Role::coupled || constraint.role == Role::pending) return true;
  return constraint.role == Role::definition && !graph_.variable(constraint.subject).isFixed;
}

void LayoutSolver::takeCare() {
  for (const LayoutConstraintId id : careful_) graph_.constraint(id).isCareful = false;
  for (const std::uint32_t variable : carefulUnknowns_) graph_.variable(variable).isCareful = false;
  careful_.clear();
  carefulUnknowns_.clear();
  carefullyYielding_.clear();
  for (const LayoutConstraintId id : wild_) {
    if (needsCare(graph_.constraint(id))) doubtful_.push_back(id);
  }
  if (doubtful_.empty() && wild_.empty() && tableau_.pivotCount() == checkedPivots_) return;
  checkedPivots_ = tableau_.pivotCount();
  graph_.collectMissed(doubtful_);
  if (doubtful_.empty()) return;
  std::vector<LayoutConstraintId> all;
  for (const LayoutConstraintId seed : std::exchange(doubtful_, {})) {
    if (graph_.constraint(seed).isCareful) continue;
    graph_.collectComponent({seed}, all, unknowns_);
    if (all.size() > carefulLimit) continue;
    RankedDecision<TwoDoubles> decision(graph_, all);
    decision.solve(yieldingPriority);
    for (const LayoutConstraintId id : all) {
      graph_.constraint(id).isCareful = true;
      graph_.constraint(id).carefullyYields = false;
    }
    for (const auto& each : decision.yielding()) {
      graph_.constraint(each.id).carefullyYields = true;
      carefullyYielding_.push_back(each);
    }
    for (const std::uint32_t variable : unknowns_) {
      graph_.variable(variable).isCareful = true;
      graph_.variable(variable).carefulValue = decision.value(variable);
    }
    careful_.insert(careful_.end(), all.begin(), all.end());
    carefulUnknowns_.insert(carefulUnknowns_.end(), unknowns_.begin(), unknowns_.end());
  }
}

}  // namespace platform
