#include "platform/solver/LayoutSolver.h"

#include <algorithm>
#include <cmath>
#include <utility>

// What is asked, and the rounds that take it up.

namespace platform {

namespace {

/// Each round that does not end ends a contradiction, or gives an equation a better place; no problem comes near.
constexpr int roundsBesidesConflicts = 64;

}  // namespace

void LayoutSolver::removeVariable(LayoutVariable variable) {
  leaving_.push_back(variable.index);  // constraints may still follow from it until the next round
  isDirty_ = true;
}

LayoutConstraintId LayoutSolver::addConstraint(const LinearConstraint& constraint, std::uint64_t rank) {
  const LayoutConstraintId id = graph_.addConstraint(constraint, rank);
  pending_.push_back(id);
  if (graph_.constraint(id).isWild) wild_.push_back(id);
  isDirty_ = true;
  return id;
}

void LayoutSolver::removeConstraint(LayoutConstraintId id) {
  isDirty_ = true;
  touch(id);
  if (graph_.constraint(id).yields) forget(id);
  if (graph_.constraint(id).role == Role::pending) {
    std::erase(pending_, id);
  } else {
    displace(id);
  }
  if (graph_.constraint(id).isReported) {
    std::erase(tried_, id);
    std::erase_if(conflicts_, [id](const Conflict& each) { return each.yielding == id; });
  }
  for (Conflict& each : conflicts_) std::erase(each.others, id);
  if (graph_.constraint(id).isWild) std::erase(wild_, id);
  if (graph_.constraint(id).isCareful) std::erase(careful_, id);
  std::erase(undecided_, id);
  graph_.removeConstraint(id);
}

void LayoutSolver::setConstant(LayoutConstraintId id, double constant) {
  if (!graph_.setConstant(id, constant)) return;
  const Constraint& constraint = graph_.constraint(id);
  isDirty_ = true;
  touch(id);
  if (constraint.yields) {
    tryAgain(id);
  } else if (constraint.role == Role::definition) {
    changedConstants_.push_back(constraint.subject);
  } else if (constraint.role != Role::pending) {
    changedOffsets_.push_back(id);
  }
}

double LayoutSolver::valueOf(const LinearExpression& expression) const {
  double sum = expression.constant;
  for (const LinearTerm& term : expression.terms) sum += term.coefficient * value(term.variable);
  return sum;
}

double LayoutSolver::priorityOf(const Constraint& constraint) const {
  return constraint.yields ? yieldingPriority : constraint.priority;
}

LayoutSolver::Open& LayoutSolver::openOf(std::uint32_t variable) {
  if (opens_.size() <= variable) opens_.resize(variable + 1);
  return opens_[variable];
}

void LayoutSolver::markLone(std::uint32_t variable) {
  if (!std::exchange(openOf(variable).isChanged, true)) changedLone_.push_back(variable);
}

// ---- Rounds

void LayoutSolver::solve() {
  if (!isDirty_) return;
  conflictsLeft_ = 2 * graph_.constraintCount() + 100;
  for (const LayoutConstraintId id : std::exchange(undecided_, {})) {
    if (graph_.constraint(id).yields) tryAgain(id);
  }
  turnsLeft_ = turnsBeforeDecision;
  int rounds = 0;
  while (!takeChanges() && (conflictsLeft_ > 0 || ++rounds < roundsBesidesConflicts)) {
    if (turnsLeft_ == 0) decide();
  }
  for (const LayoutConstraintId id : std::exchange(decided_, {})) graph_.constraint(id).isDecided = false;
  publish();
  takeCare();
  report();
  isDirty_ = false;
  for (const std::uint32_t variable : std::exchange(leaving_, {})) graph_.removeVariable(variable);
}

bool LayoutSolver::takeChanges() {
  followShapes();
  if (!pending_.empty()) {
    definePending();
    followShapes();
  }
  followConstants();
  separate();
  if (!takeRefusals()) return false;
  if (!placePending()) return false;
  separate();
  return solveLone() && solveTableau() && pending_.empty();
}

void LayoutSolver::followShapes() {
  while (!changedShapes_.empty()) {
    mentioning_.clear();
    graph_.collectDependents(changedShapes_, order_, mentioning_);
    changedShapes_.clear();
    for (const std::uint32_t variable : order_) {
      graph_.refreshBase(variable);
      if (graph_.variable(variable).isOpen()) markLone(variable);
      if (!graph_.variable(variable).isFixed) valuesFrom_.push_back(variable);
    }
    for (const LayoutConstraintId id : mentioning_) displaceAndWait(id);
  }
}

void LayoutSolver::followConstants() {
  if (!changedConstants_.empty()) {
    mentioning_.clear();
    graph_.collectDependents(changedConstants_, order_, mentioning_);
    changedConstants_.clear();
    for (const std::uint32_t variable : order_) {
      graph_.refreshBase(variable);
      if (!graph_.variable(variable).isFixed) valuesFrom_.push_back(variable);
    }
    changedOffsets_.insert(changedOffsets_.end(), mentioning_.begin(), mentioning_.end());
  }
  for (const LayoutConstraintId id : changedOffsets_) {
    Constraint& constraint = graph_.constraint(id);
    if (constraint.role < Role::idle) continue;  // it went, or waits
    if (constraint.role == Role::idle) {
      if (constraint.isRequired()) displaceAndWait(id);
      continue;
    }
    constraint.offset = graph_.offsetOf(constraint);
    if (constraint.role == Role::lone) {
      markLone(constraint.subject);
    } else {
      tableau_.shiftConstant(constraint.inTableau, constraint.offset);
    }
  }
  changedOffsets_.clear();
  tableau_.settle();
}

void LayoutSolver::definePending() {
  equations_.clear();
  others_.clear();
  for (const LayoutConstraintId id : pending_) {
    const Constraint& constraint = graph_.constraint(id);
    const bool isEquation = constraint.relation == NSLayoutRelation::equal && constraint.isRequired();
    (isEquation ? equations_ : others_).push_back(id);
  }
  pending_.clear();
  if (!equations_.empty()) presolve_.run(equations_, changedShapes_, pending_);
  pending_.insert(pending_.end(), others_.begin(), others_.end());
}

bool LayoutSolver::placePending() {
  if (pending_.empty()) return true;
  std::vector<LayoutConstraintId> batch = std::exchange(pending_, {});
  // What ranks higher first: less has to be turned round later.
  const auto isBefore = [this](LayoutConstraintId a, LayoutConstraintId b) {
    const Constraint& first = graph_.constraint(a);
    const Constraint& second = graph_.constraint(b);
    if (first.isRequired() != second.isRequired()) return first.isRequired();
    return first.isRequired() ? graph_.isBefore(a, b) : priorityOf(first) > priorityOf(second);
  };
  if (!std::is_sorted(batch.begin(), batch.end(), isBefore)) std::stable_sort(batch.begin(), batch.end(), isBefore);
  for (std::size_t i = 0; i < batch.size(); ++i) {
    if (place(batch[i])) continue;
    // A contradiction was resolved, so definitions may have changed: the rest waits for the next round.
    pending_.insert(pending_.end(), batch.begin() + static_cast<std::ptrdiff_t>(i) + 1, batch.end());
    return false;
  }
  return true;
}

// ---- Places

bool LayoutSolver::place(LayoutConstraintId id) {
  Constraint& constraint = graph_.constraint(id);
  constraint.offset = graph_.offsetOf(constraint);
  const auto& open = graph_.expand(constraint);
  if (open.empty()) {
    const double off = constraint.offset;
    const bool isMet = constraint.relation == NSLayoutRelation::equal             ? std::abs(off) <= 1e-6
                       : constraint.relation == NSLayoutRelation::lessThanOrEqual ? off <= 1e-6
                                                                                  : off >= -1e-6;
    if (!isMet && constraint.isRequired()) {
      resolve(id, {{id, 1}});
      return false;
    }
    constraint.role = Role::idle;
    return true;
  }
  if (open.size() == 1) {
    constraint.role = Role::lone;
    constraint.subject = open[0].variable;
    constraint.coefficient = open[0].coefficient;
    Open& owner = openOf(constraint.subject);
    owner.bounds.push_back(id);
    if (!owner.inTableau) {
      markLone(constraint.subject);
      return true;
    }
    LinearExpression expression(constraint.offset);
    expression.terms.push_back({tableauVariable(constraint.subject), constraint.coefficient});
    return enterTableau(id, expression);
  }
  const std::vector<ConstraintGraph::OpenTerm> terms = open;
  constraint.subject = ConstraintGraph::none;
  for (const auto& term : terms) {
    if (couple(term.variable)) continue;
    pending_.push_back(id);
    return false;
  }
  LinearExpression expression(constraint.offset);
  for (const auto& term : terms) {
    ++openOf(term.variable).couplings;
    expression.terms.push_back({tableauVariable(term.variable), term.coefficient});
  }
  return enterTableau(id, expression);
}

LayoutVariable LayoutSolver::tableauVariable(std::uint32_t variable) {
  Open& open = openOf(variable);
  if (open.inTableau) return open.inTableau;
  open.inTableau = tableau_.addVariable();
  if (ownerOfTableauUnknown_.size() <= open.inTableau.index) ownerOfTableauUnknown_.resize(open.inTableau.index + 1);
  ownerOfTableauUnknown_[open.inTableau.index] = variable;
  open.position = static_cast<std::uint32_t>(coupled_.size());
  coupled_.push_back(variable);
  return open.inTableau;
}

bool LayoutSolver::couple(std::uint32_t variable) {
  if (openOf(variable).couplings > 0 || openOf(variable).inTableau) return true;
  tableauVariable(variable);
  const std::vector<LayoutConstraintId> bounds = openOf(variable).bounds;
  for (const LayoutConstraintId id : bounds) {
    const Constraint& bound = graph_.constraint(id);
    if (bound.role != Role::lone) continue;
    LinearExpression expression(bound.offset);
    expression.terms.push_back({openOf(variable).inTableau, bound.coefficient});
    if (!enterTableau(id, expression)) {
      perhapsAlone_.push_back(variable);
      return false;
    }
  }
  perhapsAlone_.push_back(variable);
  return true;
}

bool LayoutSolver::enterTableau(LayoutConstraintId id, const LinearExpression& expression) {
  Constraint& constraint = graph_.constraint(id);
  const double priority = constraint.isRequired() ? 1000 : priorityOf(constraint);
  constraint.role = Role::coupled;
  SimplexSolver::AddResult added =
      tableau_.addConstraint({expression, constraint.relation, priority}, 1 / constraint.scale);
  if (added) {
    constraint.inTableau = added.id;
    if (ownerOfTableauConstraint_.size() <= added.id) ownerOfTableauConstraint_.resize(added.id + 1);
    ownerOfTableauConstraint_[added.id] = id;
    return takeRefusals();
  }
  for (ConstraintMultiple& each : added.conflict) each.id = ownerOfTableauConstraint_[each.id];
  added.conflict.push_back({id, 1});
  if (constraint.subject == ConstraintGraph::none) {  // it will not be found among the tableau's when it is displaced
    for (const LinearTerm& term : expression.terms) {
      const std::uint32_t variable = ownerOfTableauUnknown_[term.variable.index];
      if (--openOf(variable).couplings == 0) perhapsAlone_.push_back(variable);
    }
  }
  resolve(id, std::move(added.conflict));
  return false;
}

void LayoutSolver::displace(LayoutConstraintId id) {
  Constraint& constraint = graph_.constraint(id);
  switch (constraint.role) {
    case Role::definition: {
      const std::uint32_t subject = constraint.subject;
      graph_.undefine(subject);
      changedShapes_.push_back(subject);
      break;
    }
    case Role::lone:
    case Role::coupled:
      if (constraint.subject != ConstraintGraph::none) {
        std::erase(openOf(constraint.subject).bounds, id);
        markLone(constraint.subject);
      }
      if (constraint.inTableau != noLayoutConstraint) {
        if (constraint.subject == ConstraintGraph::none) {
          for (const LinearTerm& term : tableau_.constraintOf(constraint.inTableau).expression.terms) {
            const std::uint32_t variable = ownerOfTableauUnknown_[term.variable.index];
            if (--openOf(variable).couplings == 0) perhapsAlone_.push_back(variable);
          }
        }
        tableau_.removeConstraint(constraint.inTableau);
        constraint.inTableau = noLayoutConstraint;
      }
      constraint.subject = ConstraintGraph::none;
      break;
    default:
      break;
  }
  constraint.role = Role::pending;
}

void LayoutSolver::displaceAndWait(LayoutConstraintId id) {
  displace(id);
  pending_.push_back(id);
}

void LayoutSolver::separate() {
  for (const std::uint32_t variable : perhapsAlone_) {
    Open& open = openOf(variable);
    if (open.couplings > 0 || !open.inTableau) continue;
    for (const LayoutConstraintId id : open.bounds) {
      Constraint& bound = graph_.constraint(id);
      bound.role = Role::lone;
      if (bound.inTableau == noLayoutConstraint) continue;
      tableau_.removeConstraint(bound.inTableau);
      bound.inTableau = noLayoutConstraint;
    }
    leaveTableau(variable);
    markLone(variable);
  }
  perhapsAlone_.clear();
}

void LayoutSolver::leaveTableau(std::uint32_t variable) {
  Open& open = opens_[variable];
  tableau_.removeVariable(open.inTableau);
  open.inTableau = LayoutVariable{};
  coupled_[open.position] = coupled_.back();
  opens_[coupled_.back()].position = open.position;
  coupled_.pop_back();
}

// ---- Values

bool LayoutSolver::solveLone() {
  for (std::size_t next = 0; next < changedLone_.size(); ++next) {
    const std::uint32_t variable = changedLone_[next];
    Open& open = openOf(variable);
    open.isChanged = false;
    if (open.inTableau || !graph_.variable(variable).isOpen()) continue;
    auto& bounds = lone_.bounds();
    bounds.clear();
    for (const LayoutConstraintId id : open.bounds) {
      const Constraint& bound = graph_.constraint(id);
      bounds.push_back({id, bound.coefficient, bound.offset, std::abs(bound.coefficient) / bound.scale,
                        priorityOf(bound), bound.relation, bound.isRequired()});
    }
    if (!lone_.solve()) {
      changedLone_.erase(changedLone_.begin(), changedLone_.begin() + static_cast<std::ptrdiff_t>(next) + 1);
      markLone(variable);
      const std::vector<ConstraintMultiple> conflict = lone_.conflict();
      const LayoutConstraintId later = conflict[graph_.isBefore(conflict[0].id, conflict[1].id) ? 1 : 0].id;
      resolve(later, conflict);
      return false;
    }
    if (graph_.variable(variable).value == lone_.value()) continue;
    graph_.variable(variable).value = lone_.value();
    valuesFrom_.push_back(variable);
  }
  changedLone_.clear();
  return true;
}

bool LayoutSolver::solveTableau() {
  tableau_.solve();
  return takeRefusals();
}

bool LayoutSolver::takeRefusals() {
  if (tableau_.refusals().empty()) return true;
  // One at a time: what yields for one may make room for the others.
  const std::vector<SimplexSolver::Refusal> refusals = tableau_.takeRefusals();
  std::vector<ConstraintMultiple> sum = refusals.front().conflict;
  for (ConstraintMultiple& each : sum) each.id = ownerOfTableauConstraint_[each.id];
  const LayoutConstraintId refused = ownerOfTableauConstraint_[refusals.front().id];
  sum.push_back({refused, 1});
  for (std::size_t i = 1; i < refusals.size(); ++i) displaceAndWait(ownerOfTableauConstraint_[refusals[i].id]);
  resolve(refused, std::move(sum));
  return false;
}

void LayoutSolver::publish() {
  for (const std::uint32_t variable : coupled_) {
    double found = tableau_.value(openOf(variable).inTableau);
    if (!(std::abs(found) <= ConstraintGraph::beyond)) found = 0;  // it is spoilt
    if (graph_.variable(variable).value == found) continue;
    graph_.variable(variable).value = found;
    valuesFrom_.push_back(variable);
  }
  if (valuesFrom_.empty()) return;
  mentioning_.clear();
  graph_.collectDependents(valuesFrom_, order_, mentioning_);
  valuesFrom_.clear();
  for (const std::uint32_t variable : order_) graph_.refreshValue(variable);
}

}  // namespace platform
