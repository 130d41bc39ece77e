#include "platform/solver/LayoutSolver.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double required = 1000;

}  // namespace

LayoutVariable LayoutSolver::addVariable() { return {tableau_.makeSymbol(SimplexKind::external)}; }

void LayoutSolver::removeVariable(LayoutVariable variable) { tableau_.eraseSymbol(variable.symbol); }

LayoutSolver::AddResult LayoutSolver::addConstraint(const LinearConstraint& constraint) {
  Record record;
  record.constant = constraint.expression.constant;
  record.priority = constraint.priority;
  record.markerSign = constraint.relation == NSLayoutRelation::greaterThanOrEqual ? -1 : 1;
  const bool isRequired = constraint.priority >= required;
  const bool isEquation = constraint.relation == NSLayoutRelation::equal;

  tableau_.beginWork(record.constant);
  for (const LinearTerm& term : constraint.expression.terms) {
    if (term.coefficient != 0) tableau_.addToWork(term.variable.symbol, term.coefficient);
  }
  // 0 = expression + marker, less or more what it may be violated by
  if (isEquation) {
    record.marker = tableau_.makeSymbol(isRequired ? SimplexKind::dummy : SimplexKind::error);
  } else {
    record.marker = tableau_.makeSymbol(SimplexKind::slack);
  }
  tableau_.addToWork(record.marker, record.markerSign);
  if (!isRequired) {
    record.error = tableau_.makeSymbol(SimplexKind::error);
    tableau_.addToWork(record.error, -record.markerSign);
    tableau_.addToObjective(record.priority, record.error, 1);
    if (isEquation) tableau_.addToObjective(record.priority, record.marker, 1);
  }
  tableau_.markChanged();  // also by an attempt that fails: it may have moved on
  if (!install(record)) {
    AddResult refused{noLayoutConstraint, conflictInWork()};
    tableau_.eraseSymbol(record.marker);
    return refused;
  }
  return {keep(record), {}};
}

bool LayoutSolver::install(const Record& record) {
  const SimplexSymbol subject = chooseSubject(record);
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
    tableau_.installWork(record.marker);
    return true;
  }
  return tableau_.installWorkWithArtificial(record.marker);
}

SimplexSymbol LayoutSolver::chooseSubject(const Record& record) {
  const SimplexTableau::Row& work = tableau_.work();
  SimplexSymbol best = SimplexTableau::noSymbol;
  std::size_t fewest = 0;
  double markerCoefficient = 0;
  double errorCoefficient = 0;
  for (const SimplexTableau::Cell& cell : work.cells) {
    if (SimplexTableau::kindOf(cell.symbol) == SimplexKind::external) {
      const std::size_t occurrences = tableau_.column(cell.symbol).size();
      if (best == SimplexTableau::noSymbol || occurrences < fewest) {
        best = cell.symbol;
        fewest = occurrences;
      }
    } else if (cell.symbol == record.marker) {
      markerCoefficient = cell.coefficient;
    } else if (cell.symbol == record.error) {
      errorCoefficient = cell.coefficient;
    }
  }
  if (best != SimplexTableau::noSymbol) return best;
  // Its own slack or error, when that comes out at 0 or above.
  const double constant = work.constant;
  if (SimplexTableau::isPivotable(record.marker) && -constant / markerCoefficient >= 0) return record.marker;
  if (errorCoefficient != 0 && -constant / errorCoefficient >= 0) return record.error;
  return SimplexTableau::noSymbol;
}

std::vector<LayoutConstraintId> LayoutSolver::conflictInWork() const {
  std::vector<LayoutConstraintId> ids;
  for (const SimplexTableau::Cell& cell : tableau_.work().cells) {
    if (std::abs(cell.coefficient) < 1e-7) continue;
    const std::size_t index = cell.symbol >> 2;
    if (index >= markerOwners_.size() || markerOwners_[index] == noLayoutConstraint) continue;
    const Record& record = constraints_[markerOwners_[index]];
    if (record.marker == cell.symbol && record.priority >= required) ids.push_back(markerOwners_[index]);
  }
  return ids;
}

LayoutConstraintId LayoutSolver::keep(const Record& record) {
  LayoutConstraintId id;
  if (freeIds_.empty()) {
    id = static_cast<LayoutConstraintId>(constraints_.size());
    constraints_.push_back(record);
  } else {
    id = freeIds_.back();
    freeIds_.pop_back();
    constraints_[id] = record;
  }
  const std::size_t index = record.marker >> 2;
  if (markerOwners_.size() <= index) markerOwners_.resize(index + 1, noLayoutConstraint);
  markerOwners_[index] = id;
  return id;
}

void LayoutSolver::removeConstraint(LayoutConstraintId id) {
  const Record record = constraints_[id];
  if (record.error != SimplexTableau::noSymbol) {
    tableau_.addToObjective(record.priority, record.error, -1);
    if (SimplexTableau::kindOf(record.marker) == SimplexKind::error) {
      tableau_.addToObjective(record.priority, record.marker, -1);
    }
  }
  if (tableau_.basicRow(record.marker) == SimplexTableau::noRow) tableau_.bringIntoBasis(record.marker);
  tableau_.eraseSymbol(record.marker);  // and its row
  if (record.error != SimplexTableau::noSymbol) tableau_.eraseSymbol(record.error);
  tableau_.markChanged();
  markerOwners_[record.marker >> 2] = noLayoutConstraint;
  constraints_[id] = Record{};
  freeIds_.push_back(id);
}

void LayoutSolver::shift(Record& record, double difference) {
  // The marker takes the difference up: marker before = marker after + difference / sign.
  const double step = difference / record.markerSign;
  if (const auto index = tableau_.basicRow(record.marker); index != SimplexTableau::noRow) {
    tableau_.row(index).constant -= step;
  } else {
    for (const auto row : tableau_.column(record.marker)) {
      tableau_.row(row).constant += tableau_.coefficientIn(row, record.marker) * step;
    }
  }
  record.constant += difference;
}

bool LayoutSolver::setConstant(LayoutConstraintId id, double constant) {
  Record& record = constraints_[id];
  const double before = record.constant;
  if (constant == before) return true;
  tableau_.optimise();
  shift(record, constant - before);
  record.constant = constant;
  if (tableau_.restoreFeasibility()) return true;
  shift(record, before - constant);
  record.constant = before;
  tableau_.restoreFeasibility();
  return false;
}

void LayoutSolver::addEdit(LayoutVariable variable, double priority) {
  removeEdit(variable);
  const double now = value(variable);
  const AddResult added = addConstraint(LinearConstraint{{{{variable, 1}}, -now}, NSLayoutRelation::equal, priority});
  if (added) edits_[variable.symbol] = added.id;
}

void LayoutSolver::removeEdit(LayoutVariable variable) {
  const auto found = edits_.find(variable.symbol);
  if (found == edits_.end()) return;
  removeConstraint(found->second);
  edits_.erase(found);
}

bool LayoutSolver::suggest(LayoutVariable variable, double value) {
  const auto found = edits_.find(variable.symbol);
  return found != edits_.end() && setConstant(found->second, -value);
}

LayoutConstraintId LayoutSolver::addStay(LayoutVariable variable, double priority) {
  const double now = value(variable);
  const AddResult added = addConstraint(LinearConstraint{{{{variable, 1}}, -now}, NSLayoutRelation::equal, priority});
  if (added) stays_.push_back({variable, added.id});
  return added.id;
}

void LayoutSolver::removeStay(LayoutConstraintId id) {
  std::erase_if(stays_, [id](const Stay& stay) { return stay.id == id; });
  removeConstraint(id);
}

void LayoutSolver::updateStays() {
  solve();
  std::vector<double> now;
  now.reserve(stays_.size());
  for (const Stay& stay : stays_) now.push_back(value(stay.variable));
  for (std::size_t i = 0; i < stays_.size(); ++i) (void)setConstant(stays_[i].id, -now[i]);
}

double LayoutSolver::valueOf(const LinearExpression& expression) const {
  double sum = expression.constant;
  for (const LinearTerm& term : expression.terms) sum += term.coefficient * value(term.variable);
  return sum;
}

}  // namespace platform
