#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/solver/LayoutSolver.h"

// Required constraints that cannot hold together. Whatever yields has a proof: constraints that hold and that it
// contradicts, all of lower rank. As long as every proof stands, the same ones yield as if all had been taken by rank.

namespace platform {

void LayoutSolver::resolve(LayoutConstraintId refused, std::vector<ConstraintMultiple> sum) {
  graph_.addDefinitions(sum);
  std::vector<LayoutConstraintId> proof;
  for (const ConstraintMultiple& each : sum) {
    if (std::abs(each.factor) > 1e-7 && graph_.constraint(each.id).isRequired()) proof.push_back(each.id);
  }
  proof.push_back(refused);
  std::sort(proof.begin(), proof.end(),
            [this](LayoutConstraintId a, LayoutConstraintId b) { return graph_.isBefore(a, b); });
  proof.erase(std::unique(proof.begin(), proof.end()), proof.end());
  LayoutConstraintId victim = proof.back();
  // Rounding goes in circles, or finds a contradiction where there was none: end it.
  const bool isUndecided = conflictsLeft_ == 0 || graph_.constraint(refused).isDecided;
  if (isUndecided) {
    victim = refused;
    doubtful_.push_back(refused);
    undecided_.push_back(refused);
  }
  if (conflictsLeft_ > 0) --conflictsLeft_;
  if (victim != refused && turnsLeft_ > 0) --turnsLeft_;

  std::erase(proof, victim);
  if (graph_.constraint(victim).role != Role::pending) displace(victim);
  pending_.push_back(victim);
  yieldFor(victim, std::move(proof));
  if (victim != refused) {
    if (graph_.constraint(refused).role != Role::pending) displace(refused);
    pending_.push_back(refused);
  }
  // What yields to the one that yields now may hold after all.
  if (!isUndecided) touch(victim);
}

void LayoutSolver::yieldFor(LayoutConstraintId victim, std::vector<LayoutConstraintId> proof) {
  forget(victim);
  graph_.constraint(victim).yields = true;
  for (const LayoutConstraintId id : proof) ++graph_.constraint(id).proofs;
  proofs_[victim] = std::move(proof);
}

void LayoutSolver::forget(LayoutConstraintId yielding) {
  const auto found = proofs_.find(yielding);
  if (found == proofs_.end()) return;
  for (const LayoutConstraintId id : found->second) --graph_.constraint(id).proofs;
  proofs_.erase(found);
}

void LayoutSolver::tryAgain(LayoutConstraintId id) {
  forget(id);
  Constraint& constraint = graph_.constraint(id);
  if (constraint.role != Role::pending) displaceAndWait(id);
  constraint.yields = false;
  if (constraint.isReported) tried_.push_back(id);
  isDirty_ = true;
}

void LayoutSolver::touch(LayoutConstraintId id) {
  if (graph_.constraint(id).proofs == 0) return;
  std::vector<LayoutConstraintId> again;
  for (const auto& [yielding, proof] : proofs_) {
    if (std::find(proof.begin(), proof.end(), id) != proof.end()) again.push_back(yielding);
  }
  for (const LayoutConstraintId yielding : again) tryAgain(yielding);
  turnsLeft_ -= std::min(turnsLeft_, again.size());
}

void LayoutSolver::report() {
  for (const LayoutConstraintId id : std::exchange(tried_, {})) {
    if (!yields(id)) graph_.constraint(id).isReported = false;
  }
  for (const LayoutConstraintId id : careful_) {
    if (!yields(id)) graph_.constraint(id).isReported = false;
  }
  for (const auto& [id, proof] : proofs_) {
    if (!graph_.constraint(id).isCareful) tell(id, proof);
  }
  for (const auto& each : carefullyYielding_) tell(each.id, each.others);
}

void LayoutSolver::tell(LayoutConstraintId yielding, const std::vector<LayoutConstraintId>& others) {
  if (!std::exchange(graph_.constraint(yielding).isReported, true)) conflicts_.push_back({yielding, others});
}

}  // namespace platform
