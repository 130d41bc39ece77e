#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/solver/ConstraintGraph.h"
#include "platform/solver/LinearExpression.h"
#include "platform/solver/SimplexTableau.h"

namespace platform {

/// An incremental solver of linear equations and inequalities with priorities, after Greg J. Badros, Alan Borning and
/// Peter J. Stuckey, "The Cassowary Linear Arithmetic Constraint Solving Algorithm", ACM Transactions on
/// Computer-Human Interaction 8(4), 2001.
///
/// Required constraints (priority >= 1000) always hold. Below that every distinct priority is a level of its own: the
/// sum of the violations of a level is as small as the levels above allow, so one constraint of 751 beats any number of
/// 750. (The paper keeps the levels apart by symbolic weights; here each level is an objective row of its own, so
/// the order is exact and any number of priorities may be in use.) Within a level violations add up, and what is tied
/// is settled the same way each time but otherwise arbitrarily. An unknown that nothing decides is 0.
///
/// Changes cost what they touch: adding, removing or moving a constraint pivots the standing solution. Values are
/// brought up to date by solve().
///
/// Rounding adds up over many pivots. So the constraints are kept as they were given; after pivots solve() puts the
/// values into them, and makes the tableau anew from them when one is missed by more than 1e-6, when a search takes too
/// long, and after many removals or pivots in any case. A contradiction is believed of a new tableau only.
///
/// Owner: its creator. Thread: any one at a time. Failure: a required constraint that contradicts others is not taken
/// and is told with the ones it contradicts; nothing throws. Numbers must be finite (the caller checks).
///
/// `SimplexSolver` is quick and good for coefficients within a few powers of ten of one another. `CarefulSimplexSolver`
/// calculates in numbers of twice the length and is slower. Where several coefficients 1e6 apart meet it may still take
/// what is small for 0 and miss what is required.
template <class Number>
class BasicSimplexSolver {
 public:
  using Tableau = SimplexTableau<Number>;
  struct AddResult {
    LayoutConstraintId id = noLayoutConstraint;  ///< none when it contradicts
    /// The required constraints that cannot hold together with it, as the sum that shows it; the new one counts once.
    std::vector<ConstraintMultiple> conflict;
    explicit operator bool() const { return id != noLayoutConstraint; }
  };

  LayoutVariable addVariable();
  /// The constraints on it must have been removed before.
  void removeVariable(LayoutVariable variable);

  /// The violation counts `weight` times: in the sum of its level, and when it is above 1 in what may be missed of what
  /// must hold.
  AddResult addConstraint(const LinearConstraint& constraint, double weight = 1);
  void removeConstraint(LayoutConstraintId id);
  /// Replaces the constant of the constraint's expression, as a difference `expression + constant relation 0`.
  /// False, and nothing changed, when a required constraint could then not hold.
  [[nodiscard]] bool setConstant(LayoutConstraintId id, double constant);
  /// The same without a look at whether it can be: settle() tells for all that were shifted together.
  void shiftConstant(LayoutConstraintId id, double constant);
  void settle();
  /// A required constraint that settle() or solve() had to leave out, which removes nothing else of it.
  struct Refusal {
    LayoutConstraintId id;
    std::vector<ConstraintMultiple> conflict;
  };
  const std::vector<Refusal>& refusals() const { return refusals_; }
  std::vector<Refusal> takeRefusals() { return std::exchange(refusals_, {}); }
  const LinearConstraint& constraintOf(LayoutConstraintId id) const { return kept_[id].constraint; }
  double constantOf(LayoutConstraintId id) const { return kept_[id].constraint.expression.constant; }

  void solve();
  /// As of the last solve().
  double value(LayoutVariable variable) const { return static_cast<double>(numberOf(variable)); }
  double valueOf(const LinearExpression& expression) const;

  std::size_t constraintCount() const { return kept_.size() - freeIds_.size(); }
  /// How often the basis has changed; for measurements.
  std::uint64_t pivotCount() const { return pivotsBefore_ + tableau_.pivotCount(); }

 private:
  struct Kept {
    LinearConstraint constraint;
    double weight = 1;
    SimplexSymbol marker = Tableau::noSymbol;  ///< none while it is not in the tableau
    SimplexSymbol error = Tableau::noSymbol;   ///< the second error (equation) or the only one (inequality)
    bool isFree = true;
    bool isRequired() const { return constraint.priority >= 1000; }
    double markerSign() const { return constraint.relation == NSLayoutRelation::greaterThanOrEqual ? -1 : 1; }
  };
  Number numberOf(LayoutVariable variable) const { return tableau_.valueOf(unknowns_[variable.index]); }
  bool install(Kept& kept, LayoutConstraintId id);
  bool installWork(const Kept& kept);
  void uninstall(Kept& kept);
  SimplexSymbol chooseSubject(const Kept& kept) const;
  std::vector<ConstraintMultiple> conflictInWork(Number ownFactor) const;
  LayoutConstraintId newId();
  bool shift(Kept& kept, double constant);
  void move(Kept& kept, double constant);
  bool isSound() const;
  bool isWorn() const;
  bool rebuild();

  Tableau tableau_;
  std::vector<SimplexSymbol> unknowns_;  // by variable
  std::vector<std::uint32_t> freeVariables_;
  std::vector<Kept> kept_;
  std::vector<LayoutConstraintId> freeIds_;
  std::vector<LayoutConstraintId> markerOwners_;  // by symbol index
  std::uint64_t pivotsBefore_ = 0;                // of tableaux that were given up
  std::uint64_t pivotsWhenNew_ = 0;
  std::uint64_t checkedAt_ = 0;    // pivots when the tableau was last found sound
  std::size_t removals_ = 0;       // since the tableau was made
  std::vector<Refusal> refusals_;  // of the last rebuild
  Number ownFactor_ = 1;           // of the constraint that was refused last, in what was left of its equation
  bool isShifted_ = false;
};

using SimplexSolver = BasicSimplexSolver<double>;
using CarefulSimplexSolver = BasicSimplexSolver<TwoDoubles>;

}  // namespace platform
