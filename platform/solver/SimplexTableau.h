#pragma once

#include <cstdint>
#include <vector>

#include "platform/solver/TwoDoubles.h"

namespace platform {

/// A symbol of the tableau: its kind in the two low bits, an index (reused after release) above them.
using SimplexSymbol = std::uint32_t;

/// `external` symbols are the unknowns that the caller sees, free in sign. `slack` and `error` symbols are >= 0, the
/// second counted in the objective. A `dummy` is always 0 and marks the equation it was made for.
enum class SimplexKind : std::uint32_t { external, slack, error, dummy };

/// Where a tableau of such numbers takes what it finds for 0.
template <class Number>
struct SimplexLimits;
template <>
struct SimplexLimits<double> {
  /// A coefficient below this is what rounding left of a zero.
  static constexpr double coefficient = 1e-9;
  /// A sum that is so small beside its parts was made by rounding.
  static constexpr double cancelled = 1e-11;
  /// Reduced costs are sums of many coefficients; below this they count as 0.
  static constexpr double cost = 1e-8;
  /// A restricted symbol may be this far below 0 before it counts as infeasible.
  static constexpr double deficit = 1e-8;
  /// A smaller coefficient may be what rounding left of a zero; dividing by it would make nonsense of the whole
  /// tableau.
  static constexpr double pivot = 1e-7;
  /// Ratios that differ by less, as a part of them, are the same.
  static constexpr double tie = 1e-12;
};
template <>
struct SimplexLimits<TwoDoubles> {
  static constexpr double coefficient = 1e-22;
  static constexpr double cancelled = 1e-15;  // what is given was rounded to doubles before
  static constexpr double cost = 1e-21;
  static constexpr double deficit = 1e-17;
  static constexpr double pivot = 1e-20;
  static constexpr double tie = 1e-25;
};

/// The equations of a linear programme in basic feasible form, with an objective of several levels that are minimised
/// one after the other (a lexicographic simplex): a lower level is never improved at the cost of a higher one, however
/// many of its members are hurt.
///
/// Every row is `basic = constant + sum of coefficient * parametric symbol`, kept as a vector sorted by symbol; every
/// parametric symbol knows the rows it occurs in. Rows of slack, error and dummy symbols never mention external ones,
/// so only they decide about feasibility (the two tableaux of Cassowary in one).
///
/// Owner: SimplexSolver, which is the only user. Thread: that of its owner.
template <class Number>
class SimplexTableau {
 public:
  struct Cell {
    SimplexSymbol symbol;
    Number coefficient;
  };
  struct Row {
    SimplexSymbol basic = 0;
    Number constant = 0;
    std::vector<Cell> cells;
  };
  using RowIndex = std::uint32_t;
  static constexpr RowIndex noRow = 0xffffffff;
  static constexpr SimplexSymbol noSymbol = 0xffffffff;
  /// How far a sum of lengths may miss and still count as met.
  static constexpr double tinyLength = 1e-6;

  static SimplexKind kindOf(SimplexSymbol symbol) { return static_cast<SimplexKind>(symbol & 3); }
  static bool isRestricted(SimplexSymbol symbol) { return (symbol & 3) != 0; }
  /// Slack and error symbols may enter the basis during optimisation; dummies stay 0.
  static bool isPivotable(SimplexSymbol symbol) { return (symbol & 3) == 1 || (symbol & 3) == 2; }

  SimplexSymbol makeSymbol(SimplexKind kind);
  void releaseSymbol(SimplexSymbol symbol);

  /// The symbol's value: the constant of its row, or 0.
  Number valueOf(SimplexSymbol symbol) const {
    const RowIndex row = slots_[symbol >> 2].basicRow;
    return row == noRow ? Number(0) : rows_[row].constant;
  }
  RowIndex basicRow(SimplexSymbol symbol) const { return slots_[symbol >> 2].basicRow; }
  const std::vector<RowIndex>& column(SimplexSymbol symbol) const { return slots_[symbol >> 2].column; }
  Row& row(RowIndex index) { return rows_[index]; }
  Number coefficientIn(RowIndex index, SimplexSymbol symbol) const { return find(rows_[index].cells, symbol); }

  /// A new equation `0 = constant + cells` is written into `work()`: terms one by one, basic symbols replaced by their
  /// rows on the way.
  Row& beginWork(Number constant);
  void addToWork(SimplexSymbol symbol, Number coefficient);
  Row& work() { return work_; }
  const Row& work() const { return work_; }
  /// Makes `subject`, which occurs in the equation, its basic symbol and replaces it everywhere.
  RowIndex installWork(SimplexSymbol subject);
  /// Installs the equation for an artificial symbol that is driven to 0 while all others stay feasible. Returns false
  /// when that cannot be; `work()` then holds the final equation, whose symbols tell what is in the way, and the
  /// tableau has the solutions it had before. `marker` is the equation's own slack or dummy.
  /// It may be missed by `allowed`.
  bool installWorkWithArtificial(SimplexSymbol marker, double allowed);

  void pivot(RowIndex leaving, SimplexSymbol entering);
  /// Drops a row for good; its basic symbol must occur nowhere else.
  void dropRow(RowIndex index);
  /// Brings a parametric symbol into the basis so that all restricted rows stay feasible once its row is dropped.
  /// False when it occurs in no row.
  bool bringIntoBasis(SimplexSymbol marker);
  /// Removes what is left of a symbol that belongs to no equation any more.
  void eraseSymbol(SimplexSymbol symbol);

  /// Adds `weight * symbol` to the objective of a level; negative takes it back. Higher numbers come first.
  void addToObjective(double level, SimplexSymbol symbol, double weight);
  /// A level may not be at its minimum any more, until optimise().
  void markChanged() { optimal_ = false; }
  /// False when the search was given up.
  bool optimise();
  /// After constants were changed in an optimal tableau: restores feasibility and stays optimal. False when no solution
  /// exists; the tableau is then infeasible until the change is taken back and this is called again.
  bool restoreFeasibility();

  std::uint64_t pivotCount() const { return pivots_; }

 private:
  using Limits = SimplexLimits<Number>;
  struct Slot {
    RowIndex basicRow = noRow;
    std::vector<RowIndex> column;
  };
  struct Level {
    double priority;
    std::uint32_t members;
    std::vector<Cell> cells;
  };
  static Number find(const std::vector<Cell>& cells, SimplexSymbol symbol);

  RowIndex makeRow();
  void freeRow(RowIndex index);
  void enterColumn(SimplexSymbol symbol, RowIndex row) { slots_[symbol >> 2].column.push_back(row); }
  void leaveColumn(SimplexSymbol symbol, RowIndex row);
  /// cells += factor * source, except `without`. Columns are kept when `owner` is a row.
  void merge(std::vector<Cell>& cells, const std::vector<Cell>& source, Number factor, SimplexSymbol without,
             RowIndex owner);
  void substitute(SimplexSymbol symbol, RowIndex by);
  RowIndex leavingRow(SimplexSymbol entering, RowIndex preferred) const;
  SimplexSymbol enteringSymbol(std::size_t level, bool lowestIndex) const;
  SimplexSymbol dualEntering(const Row& row) const;
  bool ratioIsSmaller(SimplexSymbol a, Number coefficientA, SimplexSymbol b, Number coefficientB) const;
  bool minimiseArtificial(RowIndex artificial, double allowed);

  std::vector<Slot> slots_;
  std::vector<std::uint32_t> freeSlots_;
  std::vector<Row> rows_;
  std::vector<RowIndex> freeRows_;
  std::vector<Level> levels_;  // highest priority first
  Row work_;
  std::vector<Cell> merged_;
  std::vector<RowIndex> affected_;
  std::uint64_t pivots_ = 0;
  bool optimal_ = true;
};

}  // namespace platform
