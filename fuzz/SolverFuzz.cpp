#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "fuzz/Harnesses.h"
#include "platform/solver/LayoutSolver.h"

namespace fuzz {

using namespace platform;

namespace {

constexpr std::size_t unknowns = 12;

/// `scale * a + factor * b - constant relation 0`.
struct Claim {
  std::size_t a, b;
  double scale, factor, constant, priority;
  NSLayoutRelation relation;

  double violation(const std::vector<double>& at) const {
    const double rest = scale * at[a] + factor * at[b] - constant;
    return relation == NSLayoutRelation::equal
               ? std::abs(rest)
               : std::max(0.0, relation == NSLayoutRelation::lessThanOrEqual ? rest : -rest);
  }
  /// What rounding and the solver's tolerance leave of it.
  double dust(const std::vector<double>& at) const {
    return 1e-6 * std::max(1.0, std::max(scale, std::abs(factor)) / 128) +
           1e-9 * (std::abs(scale * at[a]) + std::abs(factor * at[b]) + std::abs(constant));
  }
  /// Beyond what the solver counts with; it ends such a constant elsewhere.
  bool isExtreme() const { return std::abs(constant) > 1e6; }
};

/// A solver with the claims that it holds.
class History {
 public:
  History() {
    for (LayoutVariable& variable : variables_) variable = solver_.addVariable();
  }
  void add(const Claim& claim, std::uint64_t rank) {
    const LinearExpression rest({{variables_[claim.a], claim.scale}, {variables_[claim.b], claim.factor}},
                                -claim.constant);
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
    for (const LayoutVariable variable : variables_) {
      at.push_back(solver_.value(variable));
      expect(std::isfinite(at.back()), "what is published is finite");
    }
    std::map<double, double, std::greater<>> sums;
    for (const Held& each : held_) {
      const bool yields = solver_.yields(each.id);
      if (!each.claim.isExtreme() && each.claim.priority >= 1000 && !yields) {
        expect(each.claim.violation(at) <= each.claim.dust(at), "what is required holds");
      }
      sums[yields ? LayoutSolver::yieldingPriority : each.claim.priority] += each.claim.violation(at);
    }
    return sums;
  }
  void compareWithAFreshOne() {
    History fresh;
    for (const Held& each : held_) fresh.add(each.claim, each.rank);
    const auto worn = score(), best = fresh.score();
    bool isUsual = true;
    for (std::size_t i = 0; i < held_.size(); ++i) {
      expect(solver_.yields(held_[i].id) == fresh.solver_.yields(fresh.held_[i].id), "the same constraints yield");
      const Claim& claim = held_[i].claim;
      isUsual = isUsual && !claim.isExtreme() && claim.scale == 1 && std::abs(claim.factor) <= 1;
    }
    if (!isUsual) return;  // far from 1 the sums are too large to compare
    for (const auto& [priority, sum] : worn) {
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
  // What was kept before there were such histories goes on meaning what it meant.
  const bool isWide = input.starts_with("\xff\xff");
  History history;
  std::size_t at = isWide ? 2 : 0;
  const auto next = [&] { return at < input.size() ? static_cast<unsigned char>(input[at++]) : 0u; };
  for (int step = 0; at < input.size() && step < 2000; ++step) {
    const unsigned what = next();
    if (what < 130) {
      const std::size_t a = next() % unknowns, b = (a + 1 + next() % (unknowns - 1)) % unknowns;
      const unsigned kind = next();
      history.add({a, b, 1, factors[kind % 4], static_cast<double>(next()) - 128, priorities[kind / 4 % 5],
                   static_cast<NSLayoutRelation>(static_cast<int>(kind / 20 % 3) - 1)},
                  static_cast<std::uint64_t>(step));
    } else if (what < (isWide ? 190u : 200u)) {
      history.remove(next());
    } else if (isWide && what < 200) {  // coefficients and constants far from the others
      constexpr double scales[] = {1e3, 1e-3, 1e6, 1e-6}, extremes[] = {1e308, -1e308, 1e9, 1e20};
      const std::size_t a = next() % unknowns, b = (a + 1 + next() % (unknowns - 1)) % unknowns;
      const unsigned kind = next(), constant = next();
      history.add({a, b, kind & 1 ? 1 : scales[kind / 2 % 4], scales[kind / 8 % 4] * (kind & 32 ? 1 : -1),
                   constant >= 252 ? extremes[constant % 4] : static_cast<double>(constant) - 128,
                   priorities[kind / 64 % 4], static_cast<NSLayoutRelation>(static_cast<int>(what % 3) - 1)},
                  static_cast<std::uint64_t>(step));
    } else if (isWide && what < 208) {  // a ring of inequalities, which can be or not
      const std::size_t first = next() % unknowns, count = 2 + next() % (unknowns - 1);
      const double gap = static_cast<double>(next()) - 250;
      for (std::size_t i = 0; i < count; ++i) {
        const std::size_t a = (first + i) % unknowns, b = (first + (i + 1) % count) % unknowns;
        history.add({a, b, 1, -1, gap, 1000, NSLayoutRelation::greaterThanOrEqual}, static_cast<std::uint64_t>(step));
      }
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
