#pragma once

#include <cstdint>
#include <vector>

#include "platform/solver/ConstraintGraph.h"

namespace platform {

/// Finds definitions among required equations, in time linear in their terms for all usual shapes: first what has one
/// unknown that is not fixed (sizes against constants, rows below rows), then what has an unknown that occurs in no
/// other equation, then any that says nothing of itself. The rest is left to the tableau. Unknowns that wishes and
/// limits speak of are defined last: their wishes would become wishes about what defines them.
///
/// Owner: LayoutSolver. Thread: that of its owner.
class Presolve {
 public:
  explicit Presolve(ConstraintGraph& graph) : graph_(graph) {}
  /// Takes required equations that wait for their place, first come first. `changed` receives the unknowns that were
  /// defined and whose base others may follow, `left` the equations that define nothing.
  void run(const std::vector<LayoutConstraintId>& equations, std::vector<std::uint32_t>& changed,
           std::vector<LayoutConstraintId>& left);

 private:
  void fix(std::vector<std::uint32_t>& changed);
  void peel(const std::vector<LayoutConstraintId>& equations, std::vector<std::uint32_t>& changed);
  void peelSingles(std::vector<std::uint32_t>& changed);
  bool isPlain(std::uint32_t variable) const;
  void addSingle(std::uint32_t variable) { (isPlain(variable) ? plainSingles_ : singles_).push_back(variable); }
  bool define(LayoutConstraintId equation, std::uint32_t variable, std::vector<std::uint32_t>& changed);

  ConstraintGraph& graph_;
  std::vector<LayoutConstraintId> ready_;
  std::vector<std::uint32_t> plainSingles_;  // to be defined next
  std::vector<std::uint32_t> singles_;       // to be defined when there are no such
};

}  // namespace platform
