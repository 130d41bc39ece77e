#pragma once

#include <cstdint>
#include <vector>

#include "platform/solver/LinearExpression.h"

namespace platform {

/// A constraint inside one solver; reused after removal.
using LayoutConstraintId = std::uint32_t;
inline constexpr LayoutConstraintId noLayoutConstraint = 0xffffffff;

/// How often a constraint, as `expression + its slack = 0`, is part of a sum of constraints that cannot be.
struct ConstraintMultiple {
  LayoutConstraintId id;
  double factor;
};

/// The unknowns and constraints of a LayoutSolver as they were given, and which required equations define unknowns: an
/// unknown that is defined is replaced by what its equation says, wherever it occurs. Definitions never go in circles.
/// What is not defined is open.
///
/// Numbers are kept within what can be calculated with. A constraint with a coefficient that is not finite says
/// nothing. One whose largest coefficient is beyond 128 or below 1/128 is kept multiplied by its `scale`, which makes
/// that one about 1; coefficients below 1e-15 of it are left out. Constants end at `farthest` times the largest
/// coefficient, what is not a number is 0, and values that would pass `beyond` end there.
///
/// Every unknown has a `base`, its value if all open ones were 0. One that follows from no open unknown is fixed: its
/// base is its value. Owner: LayoutSolver. Thread: that of its owner.
class ConstraintGraph {
 public:
  static constexpr std::uint32_t none = 0xffffffff;
  static constexpr double farthest = 1e9;
  static constexpr double beyond = 1e30;

  enum class Role : std::uint8_t {
    free,        ///< no constraint
    pending,     ///< waits for its place
    candidate,   ///< pending, and may become a definition
    definition,  ///< of its subject
    idle,        ///< no open unknown is left in it
    lone,        ///< a bound of one open unknown, its subject, with no others concerned
    coupled      ///< in the tableau
  };
  struct Constraint {
    double constant = 0;
    double priority = 0;
    std::uint64_t rank = 0;
    std::uint64_t sequence = 0;                   ///< of its coming, for equal ranks
    double offset = 0;                            ///< the constant once defined unknowns are replaced by their bases
    double coefficient = 0;                       ///< of the subject
    double scale = 1;                             ///< what was asked has been multiplied by this
    double farthest = ConstraintGraph::farthest;  ///< the largest constant
    std::uint32_t firstTerm = none;
    std::uint32_t termCount = 0;
    std::uint32_t subject = none;
    LayoutConstraintId inTableau = noLayoutConstraint;
    std::uint32_t stamp = 0;
    std::uint32_t unknowns = 0;  ///< that are not fixed, of a candidate
    NSLayoutRelation relation = NSLayoutRelation::equal;
    Role role = Role::free;
    bool yields = false;      ///< it is required, but others cannot hold together with it
    bool isReported = false;  ///< that it yields
    bool isWild = false;      ///< its numbers lie far apart
    bool isDecided = false;   ///< whether it yields, for this call of solve()
    bool isCareful = false;   ///< what is published of it was found with care
    bool carefullyYields = false;
    std::uint32_t proofs = 0;  ///< why others yield that it is part of
    bool isRequired() const { return priority >= 1000 && !yields; }
  };
  struct Term {
    double coefficient;
    std::uint32_t variable;
    LayoutConstraintId constraint;
    std::uint32_t next;  ///< use of the variable
    std::uint32_t previous;
  };
  struct Variable {
    double base = 0;
    double value = 0;
    double carefulValue = 0;
    double sum = 0;  ///< scratch of expand()
    std::uint32_t firstUse = none;
    LayoutConstraintId definition = noLayoutConstraint;
    std::uint32_t stamp = 0;
    std::uint32_t occurrences = 0;  ///< in candidates
    bool isFixed = false;
    bool isCareful = false;  ///< what is published is its carefulValue
    bool isOpen() const { return definition == noLayoutConstraint; }
  };
  struct OpenTerm {
    std::uint32_t variable;
    double coefficient;
  };

  std::uint32_t addVariable();
  void removeVariable(std::uint32_t index);
  LayoutConstraintId addConstraint(const LinearConstraint& constraint, std::uint64_t rank);
  void removeConstraint(LayoutConstraintId id);

  /// Replaces the constant of what was asked; false when that changes nothing.
  bool setConstant(LayoutConstraintId id, double constant);
  double constantOf(LayoutConstraintId id) const { return constraints_[id].constant / constraints_[id].scale; }
  /// By rank, and by coming within a rank.
  bool isBefore(LayoutConstraintId a, LayoutConstraintId b) const;

  Variable& variable(std::uint32_t index) { return variables_[index]; }
  const Variable& variable(std::uint32_t index) const { return variables_[index]; }
  Constraint& constraint(LayoutConstraintId id) { return constraints_[id]; }
  const Constraint& constraint(LayoutConstraintId id) const { return constraints_[id]; }
  const Term* begin(const Constraint& constraint) const { return terms_.data() + constraint.firstTerm; }
  const Term* end(const Constraint& constraint) const { return begin(constraint) + constraint.termCount; }
  const Term& term(std::uint32_t index) const { return terms_[index]; }
  std::size_t constraintCount() const { return constraints_.size() - freeConstraints_.size(); }

  /// Makes the equation the definition of the unknown, which is open and in it. Base and value are left as they are.
  void define(LayoutConstraintId equation, std::uint32_t variable);
  /// The unknown becomes open; its equation pending.
  void undefine(std::uint32_t variable);
  /// Whether the equation, as a definition of the open unknown, would say it by itself (or by too much to look at).
  bool wouldCircle(LayoutConstraintId equation, std::uint32_t variable);

  /// Everything that follows by definitions from the unknowns, themselves first, each after what it follows from. What
  /// has its place and mentions any of them is appended to `mentioning`.
  void collectDependents(const std::vector<std::uint32_t>& from, std::vector<std::uint32_t>& order,
                         std::vector<LayoutConstraintId>& mentioning);
  /// Base and whether it is fixed, after those of what it is defined by.
  void refreshBase(std::uint32_t variable);
  /// The value, after those of what it is defined by.
  void refreshValue(std::uint32_t variable);
  double offsetOf(const Constraint& constraint) const;

  /// Whether the values miss the constraint, by more than rounding makes of numbers of that size.
  bool isMissed(const Constraint& constraint) const;
  /// Appends those that must hold and are missed.
  void collectMissed(std::vector<LayoutConstraintId>& missed) const;
  /// What hangs together with the constraints, by rank, and the unknowns that occur there.
  void collectComponent(const std::vector<LayoutConstraintId>& from, std::vector<LayoutConstraintId>& constraints,
                        std::vector<std::uint32_t>& variables);

  /// The constraint's open unknowns once defined ones are replaced.
  const std::vector<OpenTerm>& expand(const Constraint& constraint);
  /// Adds the definitions that the sum of the constraints relies on.
  void addDefinitions(std::vector<ConstraintMultiple>& sum);

 private:
  void takeTerms(Constraint& made, const LinearExpression& given);
  std::uint32_t newBlock(std::uint32_t count);
  void link(std::uint32_t term);
  void unlink(const Term& term, std::uint32_t index);
  /// Unknowns that `open_` (roots) follow from by definitions, roots last; fixed ones are left out on request.
  void orderDefinitions(bool withFixed);

  std::vector<Variable> variables_;
  std::vector<std::uint32_t> freeVariables_;
  std::vector<Constraint> constraints_;
  std::vector<LayoutConstraintId> freeConstraints_;
  std::vector<Term> terms_;
  std::vector<std::vector<std::uint32_t>> freeBlocks_;  // of terms, by size
  std::uint32_t stamp_ = 0;
  std::uint64_t sequence_ = 0;

  struct Visit {
    std::uint32_t variable;
    std::uint32_t at;
  };
  std::vector<Visit> visits_;
  std::vector<std::uint32_t> roots_;
  std::vector<std::uint32_t> order_;
  std::vector<OpenTerm> expanded_;
};

}  // namespace platform
