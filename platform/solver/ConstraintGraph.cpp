#include "platform/solver/ConstraintGraph.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

/// A constraint that is missed by no more counts as met; large numbers are rounded by such a part of them besides.
constexpr double tolerance = 1e-6;
constexpr double dust = 1e-12;
/// Largest coefficients between the inverse of this and this are as good as any; and so far may others lie below them.
constexpr double usualRange = 128;
/// What is left of terms that cancel out.
constexpr double tinyCoefficient = 1e-9;
/// A coefficient that is smaller beside the largest of its constraint says nothing.
constexpr double smallestPart = 1e-15;
/// Circles are looked for as far as this; an equation whose surroundings are larger goes to the tableau.
constexpr std::size_t circleLimit = 4096;

/// The number within the limits; 0 when it is none.
double within(double limit, double number) {
  return std::abs(number) <= limit ? number : number > 0 ? limit : number < 0 ? -limit : 0;
}

}  // namespace

// ---- Unknowns and constraints

std::uint32_t ConstraintGraph::addVariable() {
  if (freeVariables_.empty()) {
    variables_.emplace_back();
    return static_cast<std::uint32_t>(variables_.size() - 1);
  }
  const std::uint32_t index = freeVariables_.back();
  freeVariables_.pop_back();
  const std::uint32_t stamp = variables_[index].stamp;
  variables_[index] = Variable{};
  variables_[index].stamp = stamp;
  return index;
}

void ConstraintGraph::removeVariable(std::uint32_t index) { freeVariables_.push_back(index); }

LayoutConstraintId ConstraintGraph::addConstraint(const LinearConstraint& given, std::uint64_t rank) {
  LayoutConstraintId id;
  if (freeConstraints_.empty()) {
    id = static_cast<LayoutConstraintId>(constraints_.size());
    constraints_.emplace_back();
  } else {
    id = freeConstraints_.back();
    freeConstraints_.pop_back();
    const std::uint32_t stamp = constraints_[id].stamp;
    constraints_[id] = Constraint{};
    constraints_[id].stamp = stamp;
  }
  Constraint& made = constraints_[id];
  made.relation = given.relation;
  made.priority = given.priority;
  made.rank = rank;
  made.sequence = ++sequence_;
  made.role = Role::pending;
  takeTerms(made, given.expression);
  made.termCount = static_cast<std::uint32_t>(expanded_.size());
  made.firstTerm = newBlock(made.termCount);
  for (std::uint32_t i = 0; i < made.termCount; ++i) {
    terms_[made.firstTerm + i] = {expanded_[i].coefficient, expanded_[i].variable, id, none, none};
    link(made.firstTerm + i);
  }
  return id;
}

void ConstraintGraph::takeTerms(Constraint& made, const LinearExpression& given) {
  // An unknown that occurs twice is one term.
  expanded_.clear();
  double largest = 0;
  for (const LinearTerm& term : given.terms) {
    const auto known = std::find_if(expanded_.begin(), expanded_.end(),
                                    [&](const OpenTerm& each) { return each.variable == term.variable.index; });
    if (known == expanded_.end()) {
      expanded_.push_back({term.variable.index, term.coefficient});
    } else {
      known->coefficient += term.coefficient;
    }
    // Written so that what is not a number becomes the largest.
    if (!(std::abs(term.coefficient) <= largest)) largest = std::abs(term.coefficient);
  }
  double sum = 0;
  for (const OpenTerm& each : expanded_) sum += each.coefficient;
  if (!std::isfinite(sum) || !std::isfinite(largest)) {
    expanded_.clear();
    made.relation = NSLayoutRelation::equal;
    made.constant = 0;
    return;
  }
  std::erase_if(expanded_, [=](const OpenTerm& each) { return std::abs(each.coefficient) <= smallestPart * largest; });
  if (expanded_.empty()) largest = 1;
  if (largest > usualRange || largest < 1 / usualRange) {
    made.scale = std::ldexp(1.0, std::clamp(-std::ilogb(largest), -1000, 1000));
    for (OpenTerm& each : expanded_) each.coefficient *= made.scale;
    largest *= made.scale;
  }
  made.isWild = made.scale != 1;
  for (const OpenTerm& each : expanded_) made.isWild |= std::abs(each.coefficient) * usualRange < largest;
  made.farthest = farthest * largest;
  made.constant = within(made.farthest, given.constant * made.scale);
}

bool ConstraintGraph::setConstant(LayoutConstraintId id, double constant) {
  Constraint& constraint = constraints_[id];
  const double scaled = within(constraint.farthest, constant * constraint.scale);
  return std::exchange(constraint.constant, scaled) != scaled;
}

bool ConstraintGraph::isBefore(LayoutConstraintId a, LayoutConstraintId b) const {
  const Constraint& first = constraints_[a];
  const Constraint& second = constraints_[b];
  return first.rank != second.rank ? first.rank < second.rank : first.sequence < second.sequence;
}

void ConstraintGraph::removeConstraint(LayoutConstraintId id) {
  Constraint& gone = constraints_[id];
  for (std::uint32_t i = 0; i < gone.termCount; ++i) unlink(terms_[gone.firstTerm + i], gone.firstTerm + i);
  if (freeBlocks_.size() <= gone.termCount) freeBlocks_.resize(gone.termCount + 1);
  freeBlocks_[gone.termCount].push_back(gone.firstTerm);
  gone.role = Role::free;
  freeConstraints_.push_back(id);
}

std::uint32_t ConstraintGraph::newBlock(std::uint32_t count) {
  if (count < freeBlocks_.size() && !freeBlocks_[count].empty()) {
    const std::uint32_t block = freeBlocks_[count].back();
    freeBlocks_[count].pop_back();
    return block;
  }
  terms_.resize(terms_.size() + count);
  return static_cast<std::uint32_t>(terms_.size() - count);
}

void ConstraintGraph::link(std::uint32_t index) {
  Term& term = terms_[index];
  std::uint32_t& first = variables_[term.variable].firstUse;
  term.next = first;
  if (first != none) terms_[first].previous = index;
  first = index;
}

void ConstraintGraph::unlink(const Term& term, std::uint32_t index) {
  if (term.next != none) terms_[term.next].previous = term.previous;
  if (term.previous != none) {
    terms_[term.previous].next = term.next;
  } else if (variables_[term.variable].firstUse == index) {
    variables_[term.variable].firstUse = term.next;
  }
}

// ---- Definitions

void ConstraintGraph::define(LayoutConstraintId equation, std::uint32_t variable) {
  Constraint& definition = constraints_[equation];
  definition.role = Role::definition;
  definition.subject = variable;
  for (const Term* term = begin(definition); term != end(definition); ++term) {
    if (term->variable == variable) definition.coefficient = term->coefficient;
  }
  variables_[variable].definition = equation;
}

void ConstraintGraph::undefine(std::uint32_t variable) {
  Constraint& definition = constraints_[variables_[variable].definition];
  definition.role = Role::pending;
  definition.subject = none;
  variables_[variable].definition = noLayoutConstraint;
  variables_[variable].isFixed = false;
}

bool ConstraintGraph::wouldCircle(LayoutConstraintId equation, std::uint32_t variable) {
  bool isUsed = false;
  for (std::uint32_t use = variables_[variable].firstUse; use != none && !isUsed; use = terms_[use].next) {
    isUsed = constraints_[terms_[use].constraint].role == Role::definition;
  }
  if (!isUsed) return false;
  ++stamp_;
  roots_.clear();
  const auto look = [&](const Constraint& constraint) {
    for (const Term* term = begin(constraint); term != end(constraint); ++term) {
      Variable& other = variables_[term->variable];
      if (other.stamp == stamp_ || other.isFixed) continue;
      other.stamp = stamp_;
      roots_.push_back(term->variable);
    }
  };
  variables_[variable].stamp = stamp_;
  look(constraints_[equation]);
  for (std::size_t i = 0; i < roots_.size(); ++i) {
    const Variable& other = variables_[roots_[i]];
    if (other.isOpen()) continue;
    const Constraint& definition = constraints_[other.definition];
    for (const Term* term = begin(definition); term != end(definition); ++term) {
      if (term->variable == variable) return true;
    }
    if (i > circleLimit) return true;
    look(definition);
  }
  return false;
}

void ConstraintGraph::collectDependents(const std::vector<std::uint32_t>& from, std::vector<std::uint32_t>& order,
                                        std::vector<LayoutConstraintId>& mentioning) {
  ++stamp_;
  order.clear();
  const auto visit = [this](std::uint32_t index) {
    Variable& variable = variables_[index];
    if (variable.stamp == stamp_) return;
    variable.stamp = stamp_;
    visits_.push_back({index, variable.firstUse});
  };
  for (const std::uint32_t seed : from) {
    visit(seed);
    while (!visits_.empty()) {
      Visit& top = visits_.back();
      if (top.at == none) {
        order.push_back(top.variable);
        visits_.pop_back();
        continue;
      }
      const Term& term = terms_[top.at];
      top.at = term.next;
      Constraint& user = constraints_[term.constraint];
      if (user.role == Role::definition) {
        visit(user.subject);
      } else if (user.role >= Role::idle && user.stamp != stamp_) {
        user.stamp = stamp_;
        mentioning.push_back(term.constraint);
      }
    }
  }
  std::reverse(order.begin(), order.end());
}

void ConstraintGraph::refreshBase(std::uint32_t index) {
  Variable& variable = variables_[index];
  if (variable.isOpen()) {
    variable.base = 0;
    variable.isFixed = false;
    return;
  }
  const Constraint& definition = constraints_[variable.definition];
  double sum = definition.constant;
  bool isFixed = true;
  for (const Term* term = begin(definition); term != end(definition); ++term) {
    if (term->variable == index) continue;
    const Variable& other = variables_[term->variable];
    sum += term->coefficient * other.base;
    isFixed = isFixed && other.isFixed;
  }
  variable.base = within(beyond, -sum / definition.coefficient);
  variable.isFixed = isFixed;
  if (isFixed) variable.value = variable.base;
}

void ConstraintGraph::refreshValue(std::uint32_t index) {
  Variable& variable = variables_[index];
  if (variable.isFixed || variable.isOpen()) return;
  const Constraint& definition = constraints_[variable.definition];
  double sum = definition.constant;
  for (const Term* term = begin(definition); term != end(definition); ++term) {
    if (term->variable != index) sum += term->coefficient * variables_[term->variable].value;
  }
  variable.value = within(beyond, -sum / definition.coefficient);
}

double ConstraintGraph::offsetOf(const Constraint& constraint) const {
  double sum = constraint.constant;
  for (const Term* term = begin(constraint); term != end(constraint); ++term) {
    sum += term->coefficient * variables_[term->variable].base;
  }
  return sum;
}

bool ConstraintGraph::isMissed(const Constraint& constraint) const {
  double sum = constraint.constant;
  double scale = std::abs(sum);
  for (const Term* term = begin(constraint); term != end(constraint); ++term) {
    const double part = term->coefficient * variables_[term->variable].value;
    sum += part;
    scale += std::abs(part);
  }
  const double off = constraint.relation == NSLayoutRelation::equal             ? std::abs(sum)
                     : constraint.relation == NSLayoutRelation::lessThanOrEqual ? sum
                                                                                : -sum;
  return !(off <= tolerance * std::min(1.0, constraint.scale) + dust * scale);
}

void ConstraintGraph::collectMissed(std::vector<LayoutConstraintId>& missed) const {
  for (LayoutConstraintId id = 0; id < constraints_.size(); ++id) {
    const Constraint& constraint = constraints_[id];
    if (constraint.role != Role::free && constraint.isRequired() && isMissed(constraint)) missed.push_back(id);
  }
}

void ConstraintGraph::collectComponent(const std::vector<LayoutConstraintId>& from,
                                       std::vector<LayoutConstraintId>& constraints,
                                       std::vector<std::uint32_t>& variables) {
  ++stamp_;
  constraints.clear();
  variables.clear();
  const auto visit = [&](LayoutConstraintId id) {
    if (constraints_[id].stamp == stamp_) return;
    constraints_[id].stamp = stamp_;
    constraints.push_back(id);
  };
  for (const LayoutConstraintId id : from) visit(id);
  for (std::size_t next = 0; next < constraints.size(); ++next) {
    const Constraint& constraint = constraints_[constraints[next]];
    for (const Term* term = begin(constraint); term != end(constraint); ++term) {
      Variable& variable = variables_[term->variable];
      if (std::exchange(variable.stamp, stamp_) == stamp_) continue;
      variables.push_back(term->variable);
      for (std::uint32_t use = variable.firstUse; use != none; use = terms_[use].next) visit(terms_[use].constraint);
    }
  }
  std::sort(constraints.begin(), constraints.end(),
            [this](LayoutConstraintId a, LayoutConstraintId b) { return isBefore(a, b); });
}

// ---- Replacing what is defined

void ConstraintGraph::orderDefinitions(bool withFixed) {
  ++stamp_;
  order_.clear();
  const auto visit = [&](std::uint32_t index) {
    Variable& variable = variables_[index];
    if (variable.stamp == stamp_ || (variable.isFixed && !withFixed)) return;
    variable.stamp = stamp_;
    variable.sum = 0;
    visits_.push_back({index, 0});
  };
  for (const std::uint32_t root : roots_) {
    visit(root);
    while (!visits_.empty()) {
      Visit& top = visits_.back();
      const Variable& variable = variables_[top.variable];
      if (variable.isOpen() || top.at == constraints_[variable.definition].termCount) {
        order_.push_back(top.variable);
        visits_.pop_back();
        continue;
      }
      visit(terms_[constraints_[variable.definition].firstTerm + top.at++].variable);
    }
  }
}

const std::vector<ConstraintGraph::OpenTerm>& ConstraintGraph::expand(const Constraint& constraint) {
  expanded_.clear();
  bool isPlain = true;
  for (const Term* term = begin(constraint); term != end(constraint); ++term) {
    const Variable& variable = variables_[term->variable];
    if (variable.isFixed) continue;
    isPlain = isPlain && variable.isOpen();
    expanded_.push_back({term->variable, term->coefficient});
  }
  if (isPlain) return expanded_;
  roots_.clear();
  for (const OpenTerm& each : expanded_) roots_.push_back(each.variable);
  orderDefinitions(false);
  for (const OpenTerm& each : expanded_) variables_[each.variable].sum += each.coefficient;
  expanded_.clear();
  for (auto at = order_.rbegin(); at != order_.rend(); ++at) {
    const Variable& variable = variables_[*at];
    if (std::abs(variable.sum) <= tinyCoefficient) continue;
    if (variable.isOpen()) {
      expanded_.push_back({*at, variable.sum});
      continue;
    }
    const Constraint& definition = constraints_[variable.definition];
    const double factor = -variable.sum / definition.coefficient;
    for (const Term* term = begin(definition); term != end(definition); ++term) {
      if (term->variable != *at) variables_[term->variable].sum += factor * term->coefficient;
    }
  }
  return expanded_;
}

void ConstraintGraph::addDefinitions(std::vector<ConstraintMultiple>& sum) {
  roots_.clear();
  for (const ConstraintMultiple& each : sum) {
    const Constraint& constraint = constraints_[each.id];
    for (const Term* term = begin(constraint); term != end(constraint); ++term) roots_.push_back(term->variable);
  }
  orderDefinitions(true);
  for (const ConstraintMultiple& each : sum) {
    const Constraint& constraint = constraints_[each.id];
    for (const Term* term = begin(constraint); term != end(constraint); ++term) {
      variables_[term->variable].sum += each.factor * term->coefficient;
    }
  }
  for (auto at = order_.rbegin(); at != order_.rend(); ++at) {
    const Variable& variable = variables_[*at];
    if (variable.isOpen() || std::abs(variable.sum) <= 1e-7) continue;
    const Constraint& definition = constraints_[variable.definition];
    const double factor = -variable.sum / definition.coefficient;
    sum.push_back({variable.definition, factor});
    for (const Term* term = begin(definition); term != end(definition); ++term) {
      if (term->variable != *at) variables_[term->variable].sum += factor * term->coefficient;
    }
  }
}

}  // namespace platform
