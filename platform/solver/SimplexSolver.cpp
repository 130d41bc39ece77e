#include "platform/solver/SimplexSolver.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

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

LayoutVariable SimplexSolver::addVariable() {
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

void SimplexSolver::removeVariable(LayoutVariable variable) {
  tableau_.eraseSymbol(unknowns_[variable.index]);
  unknowns_[variable.index] = SimplexTableau::noSymbol;
  freeVariables_.push_back(variable.index);
}

// ---- Constraints

SimplexSolver::AddResult SimplexSolver::addConstraint(const LinearConstraint& constraint) {
  const LayoutConstraintId id = newId();
  Kept kept;
  kept.constraint = constraint;
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

LayoutConstraintId SimplexSolver::newId() {
  if (freeIds_.empty()) {
    kept_.emplace_back();
    return static_cast<LayoutConstraintId>(kept_.size() - 1);
  }
  const LayoutConstraintId id = freeIds_.back();
  freeIds_.pop_back();
  return id;
}

bool SimplexSolver::install(Kept& kept, LayoutConstraintId id) {
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
  kept.error = SimplexTableau::noSymbol;
  tableau_.addToWork(kept.marker, kept.markerSign());
  if (!kept.isRequired()) {
    kept.error = tableau_.makeSymbol(SimplexKind::error);
    tableau_.addToWork(kept.error, -kept.markerSign());
    tableau_.addToObjective(constraint.priority, kept.error, 1);
    if (isEquation) tableau_.addToObjective(constraint.priority, kept.marker, 1);
  }
  tableau_.markChanged();  // also by an attempt that fails: it may have moved on
  const bool isIn = installWork(kept);
  const std::size_t index = kept.marker >> 2;
  if (markerOwners_.size() <= index) markerOwners_.resize(index + 1, noLayoutConstraint);
  if (isIn) {
    markerOwners_[index] = id;
  } else {
    ownFactor_ = 0;
    for (const SimplexTableau::Cell& cell : tableau_.work().cells) {
      if (cell.symbol == kept.marker) ownFactor_ = cell.coefficient / kept.markerSign();
    }
    tableau_.eraseSymbol(kept.marker);
    kept.marker = SimplexTableau::noSymbol;
  }
  return isIn;
}

bool SimplexSolver::installWork(const Kept& kept) {
  const SimplexSymbol subject = chooseSubject(kept);
  if (subject != SimplexTableau::noSymbol) {
    tableau_.installWork(subject);
    return true;
  }
  const auto& cells = tableau_.work().cells;
  const bool onlyDummies = std::none_of(cells.begin(), cells.end(), [](const SimplexTableau::Cell& cell) {
    return SimplexTableau::isPivotable(cell.symbol);
  });
  if (onlyDummies) {  // says nothing new, or the opposite of what stands
    if (std::abs(tableau_.work().constant) > SimplexTableau::tinyLength) return false;
    tableau_.work().constant = 0;
    tableau_.installWork(kept.marker);
    return true;
  }
  return tableau_.installWorkWithArtificial(kept.marker);
}

SimplexSymbol SimplexSolver::chooseSubject(const Kept& kept) const {
  const SimplexTableau::Row& work = tableau_.work();
  double largest = 0;
  double markerCoefficient = 0;
  double errorCoefficient = 0;
  for (const SimplexTableau::Cell& cell : work.cells) {
    if (!SimplexTableau::isRestricted(cell.symbol)) {
      largest = std::max(largest, std::abs(cell.coefficient));
    } else if (cell.symbol == kept.marker) {
      markerCoefficient = cell.coefficient;
    } else if (cell.symbol == kept.error) {
      errorCoefficient = cell.coefficient;
    }
  }
  if (largest > 0) {
    SimplexSymbol best = SimplexTableau::noSymbol;
    std::size_t fewest = 0;
    for (const SimplexTableau::Cell& cell : work.cells) {
      if (SimplexTableau::isRestricted(cell.symbol) || std::abs(cell.coefficient) < 0.05 * largest) continue;
      const std::size_t occurrences = tableau_.column(cell.symbol).size();
      if (best == SimplexTableau::noSymbol || occurrences < fewest) {
        best = cell.symbol;
        fewest = occurrences;
      }
    }
    return best;
  }
  // Its own slack or error, when that comes out at 0 or above.
  const double constant = work.constant;
  if (SimplexTableau::isPivotable(kept.marker) && -constant / markerCoefficient >= 0) return kept.marker;
  if (errorCoefficient != 0 && -constant / errorCoefficient >= 0) return kept.error;
  return SimplexTableau::noSymbol;
}

std::vector<ConstraintMultiple> SimplexSolver::conflictInWork(double ownFactor) const {
  // What is left of the equation is a sum of constraints, and each marker stands in one of them alone.
  std::vector<ConstraintMultiple> sum;
  for (const SimplexTableau::Cell& cell : tableau_.work().cells) {
    if (std::abs(cell.coefficient) < 1e-7) continue;
    const std::size_t index = cell.symbol >> 2;
    if (index >= markerOwners_.size() || markerOwners_[index] == noLayoutConstraint) continue;
    const Kept& kept = kept_[markerOwners_[index]];
    if (kept.marker != cell.symbol || !kept.isRequired()) continue;
    sum.push_back({markerOwners_[index], cell.coefficient / kept.markerSign() / (ownFactor == 0 ? 1 : ownFactor)});
  }
  return sum;
}

void SimplexSolver::removeConstraint(LayoutConstraintId id) {
  std::erase_if(refusals_, [id](const Refusal& each) { return each.id == id; });
  uninstall(kept_[id]);
  kept_[id] = Kept{};
  freeIds_.push_back(id);
}

void SimplexSolver::uninstall(Kept& kept) {
  if (kept.marker == SimplexTableau::noSymbol) return;
  if (kept.error != SimplexTableau::noSymbol) {
    tableau_.addToObjective(kept.constraint.priority, kept.error, -1);
    if (SimplexTableau::kindOf(kept.marker) == SimplexKind::error) {
      tableau_.addToObjective(kept.constraint.priority, kept.marker, -1);
    }
  }
  if (tableau_.basicRow(kept.marker) == SimplexTableau::noRow) tableau_.bringIntoBasis(kept.marker);
  tableau_.eraseSymbol(kept.marker);  // and its row
  if (kept.error != SimplexTableau::noSymbol) tableau_.eraseSymbol(kept.error);
  tableau_.markChanged();
  markerOwners_[kept.marker >> 2] = noLayoutConstraint;
  ++removals_;
}

// ---- Constants

void SimplexSolver::move(Kept& kept, double constant) {
  // The marker takes the difference up: marker before = marker after + difference / sign.
  const double step = (constant - kept.constraint.expression.constant) / kept.markerSign();
  if (const auto index = tableau_.basicRow(kept.marker); index != SimplexTableau::noRow) {
    tableau_.row(index).constant -= step;
  } else {
    for (const auto row : tableau_.column(kept.marker)) {
      tableau_.row(row).constant += tableau_.coefficientIn(row, kept.marker) * step;
    }
  }
  kept.constraint.expression.constant = constant;
}

bool SimplexSolver::shift(Kept& kept, double constant) {
  move(kept, constant);
  return tableau_.restoreFeasibility();
}

void SimplexSolver::shiftConstant(LayoutConstraintId id, double constant) {
  Kept& kept = kept_[id];
  if (constant == kept.constraint.expression.constant) return;
  if (!isShifted_) tableau_.optimise();
  isShifted_ = true;
  if (kept.marker == SimplexTableau::noSymbol) {
    kept.constraint.expression.constant = constant;
  } else {
    move(kept, constant);
  }
}

void SimplexSolver::settle() {
  if (!isShifted_) return;
  isShifted_ = false;
  if (!tableau_.restoreFeasibility()) rebuild();
}

bool SimplexSolver::setConstant(LayoutConstraintId id, double constant) {
  Kept& kept = kept_[id];
  const double before = kept.constraint.expression.constant;
  if (constant == before) return true;
  if (kept.marker == SimplexTableau::noSymbol) {
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

void SimplexSolver::solve() {
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

bool SimplexSolver::isWorn() const { return removals_ > 0 || tableau_.pivotCount() > pivotsWhenNew_ + trustedPivots; }

bool SimplexSolver::isSound() const {
  const auto valueOfSymbol = [this](SimplexSymbol symbol) {
    return symbol == SimplexTableau::noSymbol || SimplexTableau::kindOf(symbol) == SimplexKind::dummy
               ? 0
               : tableau_.valueOf(symbol);
  };
  for (const Kept& kept : kept_) {
    if (kept.isFree) continue;
    if (kept.marker == SimplexTableau::noSymbol) return false;
    const double marker = valueOfSymbol(kept.marker);
    const double error = valueOfSymbol(kept.error);
    double sum = kept.constraint.expression.constant + kept.markerSign() * (marker - error);
    double scale = std::abs(kept.constraint.expression.constant) + std::abs(marker) + std::abs(error);
    for (const LinearTerm& term : kept.constraint.expression.terms) {
      const double part = term.coefficient * value(term.variable);
      sum += part;
      scale += std::abs(part);
    }
    // Written so that what is not a number is not sound either.
    const double allowed = tolerance + dust * scale;
    if (!(std::abs(sum) <= allowed && marker >= -allowed && error >= -allowed)) return false;
  }
  return true;
}

bool SimplexSolver::rebuild() {
  pivotsBefore_ += tableau_.pivotCount();
  tableau_ = SimplexTableau();
  std::fill(markerOwners_.begin(), markerOwners_.end(), noLayoutConstraint);
  for (SimplexSymbol& symbol : unknowns_) {
    if (symbol != SimplexTableau::noSymbol) symbol = tableau_.makeSymbol(SimplexKind::external);
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

double SimplexSolver::valueOf(const LinearExpression& expression) const {
  double sum = expression.constant;
  for (const LinearTerm& term : expression.terms) sum += term.coefficient * value(term.variable);
  return sum;
}

}  // namespace platform
