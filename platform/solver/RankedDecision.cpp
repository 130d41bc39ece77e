#include "platform/solver/RankedDecision.h"

#include <algorithm>

namespace platform {

template <class Number>
RankedDecision<Number>::RankedDecision(const ConstraintGraph& graph, const std::vector<LayoutConstraintId>& byRank)
    : graph_(graph), byRank_(byRank) {
  for (const LayoutConstraintId id : byRank_) {
    const double priority = graph_.constraint(id).priority;
    if (priority < 1000) continue;
    const auto added = add(id, priority);
    if (added) continue;
    Yielding yielding{id, {}};
    for (const ConstraintMultiple& each : added.conflict) yielding.others.push_back(ownerOf_[each.id]);
    std::erase(yielding.others, id);
    std::sort(yielding.others.begin(), yielding.others.end(),
              [this](LayoutConstraintId a, LayoutConstraintId b) { return graph_.isBefore(a, b); });
    yielding_.push_back(std::move(yielding));
  }
}

template <class Number>
typename BasicSimplexSolver<Number>::AddResult RankedDecision<Number>::add(LayoutConstraintId id, double priority) {
  const ConstraintGraph::Constraint& constraint = graph_.constraint(id);
  LinearExpression expression(constraint.constant);
  for (const auto* term = graph_.begin(constraint); term != graph_.end(constraint); ++term) {
    if (unknowns_.size() <= term->variable) unknowns_.resize(term->variable + 1);
    LayoutVariable& unknown = unknowns_[term->variable];
    if (!unknown) unknown = solver_.addVariable();
    expression.terms.push_back({unknown, term->coefficient});
  }
  auto added = solver_.addConstraint({expression, constraint.relation, priority}, 1 / constraint.scale);
  if (added) {
    if (ownerOf_.size() <= added.id) ownerOf_.resize(added.id + 1, noLayoutConstraint);
    ownerOf_[added.id] = id;
  }
  return added;
}

template <class Number>
void RankedDecision<Number>::solve(double yieldingPriority) {
  for (const Yielding& each : yielding_) add(each.id, yieldingPriority);
  for (const LayoutConstraintId id : byRank_) {
    const double priority = graph_.constraint(id).priority;
    if (priority < 1000) add(id, priority);
  }
  solver_.solve();
}

template class RankedDecision<double>;
template class RankedDecision<TwoDoubles>;

}  // namespace platform
