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
  const auto byRank = [this](LayoutConstraintId a, LayoutConstraintId b) {
    const std::uint64_t first = graph_.constraint(a).rank;
    const std::uint64_t second = graph_.constraint(b).rank;
    return first != second ? first < second : a < b;
  };
  std::sort(proof.begin(), proof.end(), byRank);
  proof.erase(std::unique(proof.begin(), proof.end()), proof.end());
  LayoutConstraintId victim = proof.back();
  const bool isUndecided = conflictsLeft_ == 0;  // rounding goes in circles: end it
  if (graph_.constraint(victim).rank == graph_.constraint(refused).rank || isUndecided) victim = refused;
  if (conflictsLeft_ > 0) --conflictsLeft_;

  displace(victim);
  Constraint& yielding = graph_.constraint(victim);
  yielding.yields = true;
  pending_.push_back(victim);
  if (victim != refused) {
    if (graph_.constraint(refused).role != Role::pending) displace(refused);
    pending_.push_back(refused);
  }
  // What yields to the one that yields now may hold after all.
  if (!isUndecided) touch(victim);
  std::erase(proof, victim);
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
}

void LayoutSolver::report() {
  for (const LayoutConstraintId id : std::exchange(tried_, {})) {
    if (!graph_.constraint(id).yields) graph_.constraint(id).isReported = false;
  }
  for (const auto& [id, proof] : proofs_) {
    if (std::exchange(graph_.constraint(id).isReported, true)) continue;
    conflicts_.push_back({id, proof});
  }
}

}  // namespace platform
