#include "platform/solver/Presolve.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

using Role = ConstraintGraph::Role;

/// A definition divides by its subject's coefficient; beside the others it must not be small.
constexpr double smallestShare = 0.01;

}  // namespace

void Presolve::run(const std::vector<LayoutConstraintId>& equations, std::vector<std::uint32_t>& changed,
                   std::vector<LayoutConstraintId>& left) {
  ready_.clear();
  for (const LayoutConstraintId id : equations) {
    ConstraintGraph::Constraint& equation = graph_.constraint(id);
    equation.role = Role::candidate;
    equation.unknowns = 0;
    for (const auto* term = graph_.begin(equation); term != graph_.end(equation); ++term) {
      if (!graph_.variable(term->variable).isFixed) ++equation.unknowns;
    }
    if (equation.unknowns == 1) ready_.push_back(id);
  }
  fix(changed);
  peel(equations, changed);
  for (const LayoutConstraintId id : equations) {
    if (graph_.constraint(id).role != Role::candidate) continue;
    graph_.constraint(id).role = Role::pending;
    left.push_back(id);
  }
}

void Presolve::fix(std::vector<std::uint32_t>& changed) {
  for (std::size_t next = 0; next < ready_.size(); ++next) {  // it grows on the way
    const LayoutConstraintId id = ready_[next];
    const ConstraintGraph::Constraint& equation = graph_.constraint(id);
    if (equation.role != Role::candidate || equation.unknowns != 1) continue;
    std::uint32_t subject = ConstraintGraph::none;
    for (const auto* term = graph_.begin(equation); term != graph_.end(equation); ++term) {
      if (!graph_.variable(term->variable).isFixed) subject = term->variable;
    }
    if (!graph_.variable(subject).isOpen()) continue;  // it speaks of what that follows from
    graph_.define(id, subject);
    graph_.refreshBase(subject);
    bool hasFollowers = false;
    for (auto use = graph_.variable(subject).firstUse; use != ConstraintGraph::none; use = graph_.term(use).next) {
      const LayoutConstraintId user = graph_.term(use).constraint;
      ConstraintGraph::Constraint& other = graph_.constraint(user);
      if (other.role == Role::candidate) {
        if (--other.unknowns == 1) ready_.push_back(user);
      } else if (other.role >= Role::definition && user != id) {
        hasFollowers = true;
      }
    }
    if (hasFollowers) changed.push_back(subject);
  }
}

bool Presolve::define(LayoutConstraintId id, std::uint32_t variable, std::vector<std::uint32_t>& changed) {
  const ConstraintGraph::Constraint& equation = graph_.constraint(id);
  double own = 0;
  double largest = 0;
  for (const auto* term = graph_.begin(equation); term != graph_.end(equation); ++term) {
    if (term->variable == variable) own = std::abs(term->coefficient);
    largest = std::max(largest, std::abs(term->coefficient));
  }
  if (own < smallestShare * largest || graph_.wouldCircle(id, variable)) return false;
  graph_.define(id, variable);
  changed.push_back(variable);
  for (const auto* term = graph_.begin(equation); term != graph_.end(equation); ++term) {
    ConstraintGraph::Variable& other = graph_.variable(term->variable);
    if (term->variable != variable && other.isOpen() && --other.occurrences == 1) addSingle(term->variable);
  }
  return true;
}

void Presolve::peel(const std::vector<LayoutConstraintId>& equations, std::vector<std::uint32_t>& changed) {
  const auto forOpen = [&](const auto& visit) {
    for (const LayoutConstraintId id : equations) {
      const ConstraintGraph::Constraint& equation = graph_.constraint(id);
      if (equation.role != Role::candidate) continue;
      for (const auto* term = graph_.begin(equation); term != graph_.end(equation); ++term) {
        if (graph_.variable(term->variable).isOpen()) visit(term->variable);
      }
    }
  };
  forOpen([&](std::uint32_t variable) { graph_.variable(variable).occurrences = 0; });
  forOpen([&](std::uint32_t variable) { ++graph_.variable(variable).occurrences; });
  forOpen([&](std::uint32_t variable) {
    if (graph_.variable(variable).occurrences == 1) addSingle(variable);
  });
  peelSingles(changed);
  // What is left hangs together all round. Taking any one equation out of a ring opens it.
  for (const LayoutConstraintId id : equations) {
    for (const bool wantsPlain : {true, false}) {
      for (std::uint32_t i = 0; i < graph_.constraint(id).termCount; ++i) {
        if (graph_.constraint(id).role != Role::candidate) break;
        const std::uint32_t variable = graph_.begin(graph_.constraint(id))[i].variable;
        if (!graph_.variable(variable).isOpen() || isPlain(variable) != wantsPlain) continue;
        if (define(id, variable, changed)) peelSingles(changed);
      }
    }
  }
}

void Presolve::peelSingles(std::vector<std::uint32_t>& changed) {
  while (!plainSingles_.empty() || !singles_.empty()) {
    auto& singles = plainSingles_.empty() ? singles_ : plainSingles_;
    const std::uint32_t variable = singles.back();
    singles.pop_back();
    if (!graph_.variable(variable).isOpen()) continue;
    for (auto use = graph_.variable(variable).firstUse; use != ConstraintGraph::none; use = graph_.term(use).next) {
      const LayoutConstraintId user = graph_.term(use).constraint;
      if (graph_.constraint(user).role != Role::candidate) continue;
      define(user, variable, changed);
      break;
    }
  }
}

bool Presolve::isPlain(std::uint32_t variable) const {
  for (auto use = graph_.variable(variable).firstUse; use != ConstraintGraph::none; use = graph_.term(use).next) {
    const Role role = graph_.constraint(graph_.term(use).constraint).role;
    if (role != Role::candidate && role != Role::definition) return false;
  }
  return true;
}

}  // namespace platform
