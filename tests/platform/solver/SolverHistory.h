#pragma once

#include <array>
#include <cmath>
#include <map>
#include <random>
#include <vector>

#include "platform/solver/LinearExpression.h"

namespace platform::solvertest {

/// One constraint of a generated history, over unknowns by number: `sum of coefficient * unknown + constant relation
/// 0`.
struct HistoryConstraint {
  std::vector<std::pair<std::size_t, double>> terms;
  double constant = 0;
  NSLayoutRelation relation = NSLayoutRelation::equal;
  double priority = 1000;

  bool isRequired() const { return priority >= 1000; }
  double violation(const std::vector<double>& at) const {
    double sum = constant;
    for (const auto& [unknown, coefficient] : terms) sum += coefficient * at[unknown];
    if (relation == NSLayoutRelation::equal) return std::abs(sum);
    return std::max(0.0, relation == NSLayoutRelation::lessThanOrEqual ? sum : -sum);
  }
  LinearConstraint over(const std::vector<LayoutVariable>& unknowns) const {
    LinearExpression expression(constant);
    for (const auto& [unknown, coefficient] : terms) expression.terms.push_back({unknowns[unknown], coefficient});
    return {expression, relation, priority};
  }
};

/// The sums of violations, highest priority first.
using HistoryScore = std::map<double, double, std::greater<>>;

template <class Constraints>
HistoryScore scoreOf(const Constraints& constraints, const std::vector<double>& at) {
  HistoryScore sums;
  for (const HistoryConstraint& each : constraints) sums[each.priority] += each.violation(at);
  return sums;
}

/// Smaller in the order of the alphabet is better.
inline bool isBetter(const HistoryScore& a, const HistoryScore& b, double dust) {
  for (const auto& [priority, sum] : a) {
    const double other = b.at(priority);
    if (std::abs(sum - other) > dust) return sum < other;
  }
  return false;
}

/// What hosts do to a screen over hours, at random: edges, middles and sizes of views along one axis are related to one
/// another and to constants, required or wished for, moved and let go.
class SolverHistory {
 public:
  SolverHistory(unsigned seed, std::size_t views) : random_(seed), views_(views) {}
  std::size_t unknowns() const { return 2 * views_; }
  int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  std::size_t index(std::size_t count) { return static_cast<std::size_t>(pick(0, static_cast<int>(count) - 1)); }

  HistoryConstraint next() {
    HistoryConstraint made;
    const bool isSize = pick(0, 3) == 0;
    add(made, index(views_), isSize, 1);
    if (!isSize || pick(0, 1) == 0) {
      constexpr std::array<double, 4> multipliers{1, 1, 1, 0.5};
      add(made, index(views_), isSize, isSize ? -multipliers[index(4)] : -1);
    }
    made.constant = pick(-60, 60);
    constexpr std::array<int, 6> relations{0, 0, 0, 0, -1, 1};
    made.relation = static_cast<NSLayoutRelation>(relations[index(6)]);
    constexpr std::array<double, 8> priorities{1000, 1000, 1000, 1000, 999, 750, 250, 50};
    made.priority = priorities[index(8)];
    return made;
  }

 private:
  /// An edge, the middle or the size of a view.
  void add(HistoryConstraint& constraint, std::size_t view, bool isSize, double factor) {
    if (isSize) {
      constraint.terms.push_back({2 * view + 1, factor});
      return;
    }
    constraint.terms.push_back({2 * view, factor});
    constexpr std::array<double, 3> shares{0, 0.5, 1};
    const double share = shares[index(3)];
    if (share != 0) constraint.terms.push_back({2 * view + 1, share * factor});
  }

  std::mt19937 random_;
  std::size_t views_;
};

}  // namespace platform::solvertest
