#include <cmath>
#include <map>
#include <vector>

#include "fuzz/Harnesses.h"
#include "platform/solver/LayoutSolver.h"

namespace fuzz {

using namespace platform;

namespace {

constexpr std::size_t unknowns = 12;

/// `a + factor * b - constant relation 0`.
struct Claim {
  std::size_t a, b;
  double factor, constant, priority;
  NSLayoutRelation relation;

  double violation(const std::vector<double>& at) const {
    const double rest = at[a] + factor * at[b] - constant;
    return relation == NSLayoutRelation::equal
               ? std::abs(rest)
               : std::max(0.0, relation == NSLayoutRelation::lessThanOrEqual ? rest : -rest);
  }
};

/// A solver with the claims that it holds.
class History {
 public:
  History() {
    for (LayoutVariable& variable : variables_) variable = solver_.addVariable();
  }
  void add(const Claim& claim, std::uint64_t rank) {
    const LinearExpression rest({{variables_[claim.a], 1}, {variables_[claim.b], claim.factor}}, -claim.constant);
    held_.push_back({claim, rank, solver_.addConstraint({rest, claim.relation, claim.priority}, rank)});
  }
  void remove(std::size_t choice) {
    if (held_.empty()) return;
    const auto chosen = held_.begin() + static_cast<std::ptrdiff_t>(choice % held_.size());
    solver_.removeConstraint(chosen->id);
    held_.erase(chosen);
  }
  void move(std::size_t choice, double constant) {
    if (held_.empty()) return;
    Held& chosen = held_[choice % held_.size()];
    solver_.setConstant(chosen.id, -constant);
    chosen.claim.constant = constant;
  }
  /// Sums of violations, highest priority first; what yields stands on a level of its own.
  std::map<double, double, std::greater<>> score() {
    solver_.solve();
    std::vector<double> at;
    for (const LayoutVariable variable : variables_) at.push_back(solver_.value(variable));
    std::map<double, double, std::greater<>> sums;
    for (const Held& each : held_) {
      const double level = solver_.yields(each.id) ? LayoutSolver::yieldingPriority : each.claim.priority;
      sums[level] += each.claim.violation(at);
    }
    return sums;
  }
  void compareWithAFreshOne() {
    History fresh;
    for (const Held& each : held_) fresh.add(each.claim, each.rank);
    const auto worn = score(), best = fresh.score();
    for (std::size_t i = 0; i < held_.size(); ++i) {
      expect(solver_.yields(held_[i].id) == fresh.solver_.yields(fresh.held_[i].id), "the same constraints yield");
    }
    for (const auto& [priority, sum] : worn) {
      expect(priority < 1000 || sum < 1e-6, "what is required holds");
      expect(std::abs(sum - best.at(priority)) < 1e-4, "a long history ends as well as a fresh solver");
    }
  }

 private:
  struct Held {
    Claim claim;
    std::uint64_t rank;
    LayoutConstraintId id;
  };
  LayoutSolver solver_;
  LayoutVariable variables_[unknowns];
  std::vector<Held> held_;
};

}  // namespace

void solver(std::string_view input) {
  constexpr double factors[] = {-1, -1, 1, -0.5}, priorities[] = {1000, 1000, 999, 750, 250};
  History history;
  std::size_t at = 0;
  const auto next = [&] { return at < input.size() ? static_cast<unsigned char>(input[at++]) : 0u; };
  for (int step = 0; at < input.size() && step < 2000; ++step) {
    const unsigned what = next();
    if (what < 130) {
      const std::size_t a = next() % unknowns, b = (a + 1 + next() % (unknowns - 1)) % unknowns;
      const unsigned kind = next();
      history.add({a, b, factors[kind % 4], static_cast<double>(next()) - 128, priorities[kind / 4 % 5],
                   static_cast<NSLayoutRelation>(static_cast<int>(kind / 20 % 3) - 1)},
                  static_cast<std::uint64_t>(step));
    } else if (what < 200) {
      history.remove(next());
    } else if (what < 254) {
      const std::size_t choice = next();
      history.move(choice, static_cast<double>(next()) - 128);
    } else {
      history.score();
    }
  }
  history.compareWithAFreshOne();
}

}  // namespace fuzz
