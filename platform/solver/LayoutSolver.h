#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/solver/LinearExpression.h"
#include "platform/solver/SimplexTableau.h"

namespace platform {

/// A constraint inside one LayoutSolver; reused after removal.
using LayoutConstraintId = std::uint32_t;
inline constexpr LayoutConstraintId noLayoutConstraint = 0xffffffff;

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
/// Owner: its creator. Thread: any one at a time. Failure: a required constraint that contradicts others is not taken
/// and is told with the ones it contradicts; nothing throws. Numbers must be finite (the caller checks).
class LayoutSolver {
 public:
  struct AddResult {
    LayoutConstraintId id = noLayoutConstraint;  ///< none when it contradicts
    std::vector<LayoutConstraintId> conflict;    ///< the required constraints that cannot hold together with it
    explicit operator bool() const { return id != noLayoutConstraint; }
  };

  LayoutVariable addVariable();
  /// The constraints on it must have been removed before.
  void removeVariable(LayoutVariable variable);

  AddResult addConstraint(const LinearConstraint& constraint);
  void removeConstraint(LayoutConstraintId id);
  /// Replaces the constant of the constraint's expression, as a difference `expression + constant relation 0`.
  /// False, and nothing changed, when a required constraint could then not hold.
  [[nodiscard]] bool setConstant(LayoutConstraintId id, double constant);
  double constantOf(LayoutConstraintId id) const { return constraints_[id].constant; }

  /// An edit variable: it wants to be what was suggested last (at first its present value), at that priority.
  void addEdit(LayoutVariable variable, double priority);
  void removeEdit(LayoutVariable variable);
  /// False when it is no edit variable, or a required one that cannot have the value.
  bool suggest(LayoutVariable variable, double value);

  /// A stay: the variable would rather keep its present value. updateStays() makes the values of now the ones to keep.
  LayoutConstraintId addStay(LayoutVariable variable, double priority);
  void removeStay(LayoutConstraintId id);
  void updateStays();

  void solve() { tableau_.optimise(); }
  /// As of the last solve().
  double value(LayoutVariable variable) const { return tableau_.valueOf(variable.symbol); }
  double valueOf(const LinearExpression& expression) const;

  std::size_t constraintCount() const { return constraints_.size() - freeIds_.size(); }
  /// How often the basis has changed; for measurements.
  std::uint64_t pivotCount() const { return tableau_.pivotCount(); }

 private:
  struct Record {
    SimplexSymbol marker = SimplexTableau::noSymbol;
    SimplexSymbol error = SimplexTableau::noSymbol;  ///< the second error (equation) or the only one (inequality)
    double constant = 0;
    double priority = 0;
    float markerSign = 1;
  };
  struct Stay {
    LayoutVariable variable;
    LayoutConstraintId id;
  };
  bool install(const Record& record);
  SimplexSymbol chooseSubject(const Record& record);
  std::vector<LayoutConstraintId> conflictInWork() const;
  LayoutConstraintId keep(const Record& record);
  void shift(Record& record, double difference);

  SimplexTableau tableau_;
  std::vector<Record> constraints_;
  std::vector<LayoutConstraintId> freeIds_;
  std::vector<LayoutConstraintId> markerOwners_;  // by symbol index
  std::unordered_map<std::uint32_t, LayoutConstraintId> edits_;
  std::vector<Stay> stays_;
};

}  // namespace platform
