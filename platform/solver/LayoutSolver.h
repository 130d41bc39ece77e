#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "platform/solver/ConstraintGraph.h"
#include "platform/solver/LinearExpression.h"
#include "platform/solver/LoneUnknown.h"
#include "platform/solver/Presolve.h"
#include "platform/solver/RankedDecision.h"
#include "platform/solver/SimplexSolver.h"

namespace platform {

/// Solves linear equations and inequalities with priorities. Required constraints (priority >= 1000) hold. Below that
/// every distinct priority is a level of its own: the sum of the violations of a level is as small as the levels above
/// allow, so one constraint of 751 beats any number of 750. What is tied is otherwise arbitrary, and an unknown that
/// nothing decides is 0.
///
/// Required constraints that cannot hold together: the one of the highest rank yields, as if the constraints were taken
/// one by one by rank and each that contradicts those taken before were left out. This depends on what is asked alone,
/// not on when or in which order it was. What yields becomes a wish above all others (`yieldingPriority`) and is tried
/// again whenever something changes that it contradicts.
///
/// Changes are only noted; solve() takes them up together, at a cost of what follows from them. Three ways lead to a
/// value. Most required equations define an unknown (`top = bottom of the row above`); those stay outside the tableau
/// and are followed in order of dependence. An open unknown that is related to no other is found by looking at its
/// bounds. Only what is left, open unknowns that compete, goes to a SimplexSolver.
///
/// Where that is in doubt the constraints that hang together with the doubtful ones are taken by rank by a solver of
/// their own: when much has to be turned round, to decide what yields; when coefficients lie far apart, or what must
/// hold is missed, to find the values too, in numbers of twice the length (of at most `carefulLimit` constraints: more
/// would take too long, and are left as following the changes found them).
///
/// Owner: its creator. Thread: any one at a time. Failure: see above; nothing throws. Values are always finite,
/// whatever numbers were given: what cannot be calculated with is cut off as ConstraintGraph says. A constraint with a
/// coefficient that is not finite has no effect; a constant beyond 1e9 (times the largest coefficient) counts as 1e9,
/// so `width <= 1e308` stays the limit that nothing reaches, and one that is not a number counts as 0.
class LayoutSolver {
 public:
  static constexpr double yieldingPriority = 999.9;
  static constexpr std::size_t carefulLimit = 400;

  LayoutSolver() : presolve_(graph_) {}
  LayoutSolver(const LayoutSolver&) = delete;
  LayoutSolver& operator=(const LayoutSolver&) = delete;

  LayoutVariable addVariable() { return {graph_.addVariable()}; }
  /// The constraints on it must have been removed before.
  void removeVariable(LayoutVariable variable);

  LayoutConstraintId addConstraint(const LinearConstraint& constraint, std::uint64_t rank = 0);
  void removeConstraint(LayoutConstraintId id);
  /// Replaces the constant of the constraint's expression, as a difference `expression + constant relation 0`.
  void setConstant(LayoutConstraintId id, double constant);
  double constantOf(LayoutConstraintId id) const { return graph_.constantOf(id); }

  void solve();
  /// As of the last solve().
  double value(LayoutVariable variable) const {
    const Variable& known = graph_.variable(variable.index);
    return known.isCareful ? known.carefulValue : known.value;
  }
  double valueOf(const LinearExpression& expression) const;
  bool yields(LayoutConstraintId id) const {
    const Constraint& constraint = graph_.constraint(id);
    return constraint.isCareful ? constraint.carefullyYields : constraint.yields;
  }

  /// A constraint that began to yield, and those that it contradicts, itself left out, by rank.
  struct Conflict {
    LayoutConstraintId yielding;
    std::vector<LayoutConstraintId> others;
  };
  /// What began to yield since this was last asked.
  std::vector<Conflict> takeConflicts() { return std::exchange(conflicts_, {}); }

  std::size_t constraintCount() const { return graph_.constraintCount(); }
  /// Of these, how many are in the tableau; how often its basis has changed; for measurements.
  std::size_t tableauCount() const { return tableau_.constraintCount(); }
  std::uint64_t pivotCount() const { return tableau_.pivotCount(); }

 private:
  using Constraint = ConstraintGraph::Constraint;
  using Variable = ConstraintGraph::Variable;
  using Role = ConstraintGraph::Role;
  /// What an open unknown has besides.
  struct Open {
    std::vector<LayoutConstraintId> bounds;  ///< that mention no other open unknown, in the tableau or not
    LayoutVariable inTableau;
    std::uint32_t position = 0;   ///< in coupled_
    std::uint32_t couplings = 0;  ///< constraints in the tableau that relate it to others
    bool isChanged = false;       ///< waits in changedLone_
  };

  /// So many contradictions may turn round what was decided before it is quicker to take all by rank.
  static constexpr std::size_t turnsBeforeDecision = 24;

  void displace(LayoutConstraintId id);
  void displaceAndWait(LayoutConstraintId id);
  bool takeChanges();
  void followShapes();
  void followConstants();
  void definePending();
  bool placePending();
  bool place(LayoutConstraintId id);
  bool enterTableau(LayoutConstraintId id, const LinearExpression& expression);
  LayoutVariable tableauVariable(std::uint32_t variable);
  bool couple(std::uint32_t variable);
  void separate();
  void leaveTableau(std::uint32_t variable);
  bool solveLone();
  bool solveTableau();
  bool takeRefusals();
  void publish();
  double priorityOf(const Constraint& constraint) const;
  Open& openOf(std::uint32_t variable);
  void markLone(std::uint32_t variable);

  // Contradictions
  void resolve(LayoutConstraintId refused, std::vector<ConstraintMultiple> sum);
  void tryAgain(LayoutConstraintId yielding);
  void touch(LayoutConstraintId id);
  void forget(LayoutConstraintId yielding);
  void report();
  void tell(LayoutConstraintId yielding, const std::vector<LayoutConstraintId>& others);
  void yieldFor(LayoutConstraintId victim, std::vector<LayoutConstraintId> proof);

  // Doubt
  void decide();
  void takeCare();
  bool needsCare(const Constraint& constraint) const;

  ConstraintGraph graph_;
  Presolve presolve_;
  LoneUnknown lone_;
  SimplexSolver tableau_;
  std::vector<Open> opens_;  // by unknown
  std::vector<std::uint32_t> ownerOfTableauUnknown_;
  std::vector<LayoutConstraintId> ownerOfTableauConstraint_;
  std::vector<LayoutConstraintId> pending_;
  std::vector<std::uint32_t> changedShapes_;        // unknowns whose definition came or went
  std::vector<std::uint32_t> changedConstants_;     // unknowns whose definition has another constant
  std::vector<LayoutConstraintId> changedOffsets_;  // constraints with a place that have another constant
  std::vector<std::uint32_t> changedLone_;
  std::vector<std::uint32_t> perhapsAlone_;
  std::vector<std::uint32_t> leaving_;  // unknowns that were removed
  std::vector<std::uint32_t> coupled_;
  std::vector<std::uint32_t> valuesFrom_;                                 // unknowns whose followers need new values
  std::map<LayoutConstraintId, std::vector<LayoutConstraintId>> proofs_;  // by what yields
  std::vector<LayoutConstraintId> tried_;
  std::vector<Conflict> conflicts_;
  std::size_t conflictsLeft_ = 0;
  std::size_t turnsLeft_ = 0;  // contradictions that turn earlier decisions round, until all are decided afresh
  std::vector<LayoutConstraintId> decided_;
  std::vector<LayoutConstraintId> wild_;
  std::vector<LayoutConstraintId> doubtful_;
  std::vector<LayoutConstraintId> undecided_;  // yield for want of a decision, until the next call
  std::vector<LayoutConstraintId> careful_;
  std::vector<std::uint32_t> carefulUnknowns_;
  std::vector<RankedDecision<TwoDoubles>::Yielding> carefullyYielding_;
  std::uint64_t checkedPivots_ = 0;
  bool isDirty_ = false;

  // Kept for their memory.
  std::vector<std::uint32_t> order_;
  std::vector<LayoutConstraintId> mentioning_;
  std::vector<LayoutConstraintId> equations_;
  std::vector<LayoutConstraintId> others_;
  std::vector<std::uint32_t> unknowns_;
};

}  // namespace platform
