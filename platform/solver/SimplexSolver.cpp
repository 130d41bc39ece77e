#include "platform/solver/SimplexSolver.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

using std::abs;

/// By how much a constraint may be missed before the tableau counts as spoilt.
constexpr double tolerance = 1e-6;
/// What rounding leaves of a sum of large numbers, as a part of them.
constexpr double dust = 1e-12;
/// So many pivots cannot spoil a tableau; a contradiction found after more is looked for again in a new one.
constexpr std::uint64_t trustedPivots = 64;

/// Equations first: they replace unknowns for good. Then what must hold, then wishes.
int turnOf(const LinearConstraint& constraint) {
  return constraint.priority < 1000 ? 2 : constraint.relation == NSLayoutRelation::equal ? 0 : 1;
}

}  // namespace

template <class Number>
LayoutVariable BasicSimplexSolver<Number>::addVariable() {
  const SimplexSymbol symbol = tableau_.makeSymbol(SimplexKind::external);
  if (freeVariables_.empty()) {
    unknowns_.push_back(symbol);
    return {static_cast<std::uint32_t>(unknowns_.size() - 1)};
  }
  const std::uint32_t index = freeVariables_.back();
  freeVariables_.pop_back();
  unknowns_[index] = symbol;
  return {index};
}

template <class Number>
void BasicSimplexSolver<Number>::removeVariable(LayoutVariable variable) {
  tableau_.eraseSymbol(unknowns_[variable.index]);
  unknowns_[variable.index] = Tableau::noSymbol;
  freeVariables_.push_back(variable.index);
}

// ---- Constraints

template <class Number>
typename BasicSimplexSolver<Number>::AddResult BasicSimplexSolver<Number>::addConstraint(
    const LinearConstraint& constraint, double weight) {
  const LayoutConstraintId id = newId();
  Kept kept;
  kept.constraint = constraint;
  kept.weight = weight;
  kept.isFree = false;
  bool isIn = install(kept, id);
  if (!isIn && isWorn()) {
    rebuild();
    isIn = install(kept, id);
  }
  if (isIn) {
    kept_[id] = kept;
    return {id, {}};
  }
  AddResult refused{noLayoutConstraint, conflictInWork(ownFactor_)};
  freeIds_.push_back(id);
  return refused;
}

template <class Number>
LayoutConstraintId BasicSimplexSolver<Number>::newId() {
  if (freeIds_.empty()) {
    kept_.emplace_back();
    return static_cast<LayoutConstraintId>(kept_.size() - 1);
  }
  const LayoutConstraintId id = freeIds_.back();
  freeIds_.pop_back();
  return id;
}

template <class Number>
bool BasicSimplexSolver<Number>::install(Kept& kept, LayoutConstraintId id) {
  const LinearConstraint& constraint = kept.constraint;
  const bool isEquation = constraint.relation == NSLayoutRelation::equal;
  tableau_.beginWork(constraint.expression.constant);
  for (const LinearTerm& term : constraint.expression.terms) {
    if (term.coefficient != 0) tableau_.addToWork(unknowns_[term.variable.index], term.coefficient);
  }
  // 0 = expression + marker, less or more what it may be violated by
  if (isEquation) {
    kept.marker = tableau_.makeSymbol(kept.isRequired() ? SimplexKind::dummy : SimplexKind::error);
  } else {
    kept.marker = tableau_.makeSymbol(SimplexKind::slack);
  }
  kept.error = Tableau::noSymbol;
  tableau_.addToWork(kept.marker, kept.markerSign());
  if (!kept.isRequired()) {
    kept.error = tableau_.makeSymbol(SimplexKind::error);
    tableau_.addToWork(kept.error, -kept.markerSign());
    tableau_.addToObjective(constraint.priority, kept.error, kept.weight);
    if (isEquation) tableau_.addToObjective(constraint.priority, kept.marker, kept.weight);
  }
  tableau_.markChanged();  // also by an attempt that fails: it may have moved on
  const bool isIn = installWork(kept);
  const std::size_t index = kept.marker >> 2;
  if (markerOwners_.size() <= index) markerOwners_.resize(index + 1, noLayoutConstraint);
  if (isIn) {
    markerOwners_[index] = id;
  } else {
    ownFactor_ = 0;
    for (const typename Tableau::Cell& cell : tableau_.work().cells) {
      if (cell.symbol == kept.marker) ownFactor_ = cell.coefficient / kept.markerSign();
    }
    tableau_.eraseSymbol(kept.marker);
    kept.marker = Tableau::noSymbol;
  }
  return isIn;
}

template <class Number>
bool BasicSimplexSolver<Number>::installWork(const Kept& kept) {
  const SimplexSymbol subject = chooseSubject(kept);
  if (subject != Tableau::noSymbol) {
    tableau_.installWork(subject);
    return true;
  }
  const double allowed = Tableau::tinyLength / std::max(1.0, kept.weight);
  const auto& cells = tableau_.work().cells;
  const bool onlyDummies = std::none_of(
      cells.begin(), cells.end(), [](const typename Tableau::Cell& cell) { return Tableau::isPivotable(cell.symbol); });
  if (onlyDummies) {  // says nothing new, or the opposite of what stands
    if (abs(tableau_.work().constant) > allowed) return false;
    tableau_.work().constant = 0;
    tableau_.installWork(kept.marker);
    return true;
  }
  return tableau_.installWorkWithArtificial(kept.marker, allowed);
}

template <class Number>
SimplexSymbol BasicSimplexSolver<Number>::chooseSubject(const Kept& kept) const {
  const typename Tableau::Row& work = tableau_.work();
  Number largest = 0;
  Number markerCoefficient = 0;
  Number errorCoefficient = 0;
  for (const typename Tableau::Cell& cell : work.cells) {
    if (!Tableau::isRestricted(cell.symbol)) {
      largest = std::max(largest, abs(cell.coefficient));
    } else if (cell.symbol == kept.marker) {
      markerCoefficient = cell.coefficient;
    } else if (cell.symbol == kept.error) {
      errorCoefficient = cell.coefficient;
    }
  }
  if (largest > 0) {
    SimplexSymbol best = Tableau::noSymbol;
    std::size_t fewest = 0;
    for (const typename Tableau::Cell& cell : work.cells) {
      if (Tableau::isRestricted(cell.symbol) || abs(cell.coefficient) < largest * 0.05) continue;
      const std::size_t occurrences = tableau_.column(cell.symbol).size();
      if (best == Tableau::noSymbol || occurrences < fewest) {
        best = cell.symbol;
        fewest = occurrences;
      }
    }
    return best;
  }
  // Its own slack or error, when that comes out at 0 or above.
  const Number constant = work.constant;
  if (Tableau::isPivotable(kept.marker) && -constant / markerCoefficient >= 0) return kept.marker;
  if (errorCoefficient != 0 && -constant / errorCoefficient >= 0) return kept.error;
  return Tableau::noSymbol;
}

template <class Number>
std::vector<ConstraintMultiple> BasicSimplexSolver<Number>::conflictInWork(Number ownFactor) const {
  // What is left of the equation is a sum of constraints, and each marker stands in one of them alone.
  std::vector<ConstraintMultiple> sum;
  for (const typename Tableau::Cell& cell : tableau_.work().cells) {
    if (abs(cell.coefficient) < SimplexLimits<Number>::pivot) continue;
    const std::size_t index = cell.symbol >> 2;
    if (index >= markerOwners_.size() || markerOwners_[index] == noLayoutConstraint) continue;
    const Kept& kept = kept_[markerOwners_[index]];
    if (kept.marker != cell.symbol || !kept.isRequired()) continue;
    const Number factor = cell.coefficient / kept.markerSign() / (ownFactor == 0 ? Number(1) : ownFactor);
    sum.push_back({markerOwners_[index], static_cast<double>(factor)});
  }
  return sum;
}

template <class Number>
void BasicSimplexSolver<Number>::removeConstraint(LayoutConstraintId id) {
  std::erase_if(refusals_, [id](const Refusal& each) { return each.id == id; });
  uninstall(kept_[id]);
  kept_[id] = Kept{};
  freeIds_.push_back(id);
}

template <class Number>
void BasicSimplexSolver<Number>::uninstall(Kept& kept) {
  if (kept.marker == Tableau::noSymbol) return;
  if (kept.error != Tableau::noSymbol) {
    tableau_.addToObjective(kept.constraint.priority, kept.error, -kept.weight);
    if (Tableau::kindOf(kept.marker) == SimplexKind::error) {
      tableau_.addToObjective(kept.constraint.priority, kept.marker, -kept.weight);
    }
  }
  if (tableau_.basicRow(kept.marker) == Tableau::noRow) tableau_.bringIntoBasis(kept.marker);
  tableau_.eraseSymbol(kept.marker);  // and its row
  if (kept.error != Tableau::noSymbol) tableau_.eraseSymbol(kept.error);
  tableau_.markChanged();
  markerOwners_[kept.marker >> 2] = noLayoutConstraint;
  ++removals_;
}

// ---- Constants

template <class Number>
void BasicSimplexSolver<Number>::move(Kept& kept, double constant) {
  // The marker takes the difference up: marker before = marker after + difference / sign.
  const Number step = (Number(constant) - kept.constraint.expression.constant) / kept.markerSign();
  if (const auto index = tableau_.basicRow(kept.marker); index != Tableau::noRow) {
    tableau_.row(index).constant -= step;
  } else {
    for (const auto row : tableau_.column(kept.marker)) {
      tableau_.row(row).constant += tableau_.coefficientIn(row, kept.marker) * step;
    }
  }
  kept.constraint.expression.constant = constant;
}

template <class Number>
bool BasicSimplexSolver<Number>::shift(Kept& kept, double constant) {
  move(kept, constant);
  return tableau_.restoreFeasibility();
}

template <class Number>
void BasicSimplexSolver<Number>::shiftConstant(LayoutConstraintId id, double constant) {
  Kept& kept = kept_[id];
  if (constant == kept.constraint.expression.constant) return;
  if (!isShifted_) tableau_.optimise();
  isShifted_ = true;
  if (kept.marker == Tableau::noSymbol) {
    kept.constraint.expression.constant = constant;
  } else {
    move(kept, constant);
  }
}

template <class Number>
void BasicSimplexSolver<Number>::settle() {
  if (!isShifted_) return;
  isShifted_ = false;
  if (!tableau_.restoreFeasibility()) rebuild();
}

template <class Number>
bool BasicSimplexSolver<Number>::setConstant(LayoutConstraintId id, double constant) {
  Kept& kept = kept_[id];
  const double before = kept.constraint.expression.constant;
  if (constant == before) return true;
  if (kept.marker == Tableau::noSymbol) {
    kept.constraint.expression.constant = constant;
    return rebuild();
  }
  tableau_.optimise();
  if (shift(kept, constant)) return true;
  if (isWorn()) {
    if (rebuild()) return true;
  } else if (shift(kept, before)) {
    return false;
  }
  kept.constraint.expression.constant = before;
  rebuild();
  return false;
}

// ---- Solving

template <class Number>
void BasicSimplexSolver<Number>::solve() {
  const bool found = tableau_.optimise();
  const std::uint64_t pivots = tableau_.pivotCount();
  if (found && pivots == checkedAt_) return;
  const std::size_t size = constraintCount();
  const bool isOld = removals_ > 100 + size || pivots > pivotsWhenNew_ + 1000 + 10 * size;
  if (!found || isOld || !isSound()) {
    rebuild();
    tableau_.optimise();
  }
  checkedAt_ = tableau_.pivotCount();
}

template <class Number>
bool BasicSimplexSolver<Number>::isWorn() const {
  return removals_ > 0 || tableau_.pivotCount() > pivotsWhenNew_ + trustedPivots;
}

template <class Number>
bool BasicSimplexSolver<Number>::isSound() const {
  const auto valueOfSymbol = [this](SimplexSymbol symbol) {
    return symbol == Tableau::noSymbol || Tableau::kindOf(symbol) == SimplexKind::dummy ? Number(0)
                                                                                        : tableau_.valueOf(symbol);
  };
  for (const Kept& kept : kept_) {
    if (kept.isFree) continue;
    if (kept.marker == Tableau::noSymbol) return false;
    const Number marker = valueOfSymbol(kept.marker);
    const Number error = valueOfSymbol(kept.error);
    Number sum = (marker - error) * kept.markerSign() + kept.constraint.expression.constant;
    Number scale = abs(marker) + abs(error) + std::abs(kept.constraint.expression.constant);
    for (const LinearTerm& term : kept.constraint.expression.terms) {
      const Number part = numberOf(term.variable) * term.coefficient;
      sum += part;
      scale += abs(part);
    }
    // Written so that what is not a number is not sound either.
    const Number allowed = scale * dust + tolerance;
    if (!(abs(sum) <= allowed && marker >= -allowed && error >= -allowed)) return false;
  }
  return true;
}

template <class Number>
bool BasicSimplexSolver<Number>::rebuild() {
  pivotsBefore_ += tableau_.pivotCount();
  tableau_ = Tableau();
  std::fill(markerOwners_.begin(), markerOwners_.end(), noLayoutConstraint);
  for (SimplexSymbol& symbol : unknowns_) {
    if (symbol != Tableau::noSymbol) symbol = tableau_.makeSymbol(SimplexKind::external);
  }
  std::vector<LayoutConstraintId> order;
  for (LayoutConstraintId id = 0; id < kept_.size(); ++id) {
    if (!kept_[id].isFree) order.push_back(id);
  }
  std::stable_sort(order.begin(), order.end(), [this](LayoutConstraintId a, LayoutConstraintId b) {
    const LinearConstraint& first = kept_[a].constraint;
    const LinearConstraint& second = kept_[b].constraint;
    const int turn = turnOf(first);
    const int other = turnOf(second);
    return turn != other ? turn < other : turn == 2 && first.priority > second.priority;
  });
  refusals_.clear();
  for (const LayoutConstraintId id : order) {
    if (!install(kept_[id], id)) refusals_.push_back({id, conflictInWork(ownFactor_)});
  }
  pivotsWhenNew_ = tableau_.pivotCount();
  removals_ = 0;
  return refusals_.empty();
}

template <class Number>
double BasicSimplexSolver<Number>::valueOf(const LinearExpression& expression) const {
  double sum = expression.constant;
  for (const LinearTerm& term : expression.terms) sum += term.coefficient * value(term.variable);
  return sum;
}

template class BasicSimplexSolver<double>;
template class BasicSimplexSolver<TwoDoubles>;

}  // namespace platform
