#pragma once

#include <cstdint>
#include <vector>

#include "platform/solver/ConstraintGraph.h"

namespace platform {

/// Finds the value of an unknown that no constraint relates to another open one: what must hold leaves a stretch of the
/// line, and each priority in turn leaves the part of it where its violations add up to the least. Nothing is
/// remembered, so nothing wears. What is left over is settled for its lower end, else its upper one, else 0.
///
/// Owner: LayoutSolver, which keeps one for all. Thread: that of its owner.
class LoneUnknown {
 public:
  struct Bound {
    LayoutConstraintId id;
    double coefficient;  ///< `coefficient * unknown + constant relation 0`
    double constant;
    double weight;  ///< of a violation, in units of the unknown
    double priority;
    NSLayoutRelation relation;
    bool isRequired;
  };
  std::vector<Bound>& bounds() { return bounds_; }
  /// False when what must hold cannot; `conflict()` then tells the two bounds.
  bool solve();
  double value() const { return value_; }
  const std::vector<ConstraintMultiple>& conflict() const { return conflict_; }

 private:
  struct Turn {
    double at;
    double slope;  ///< by how much the sum of violations rises more steeply from here on
  };
  bool requireBounds();
  void narrow(double priority);

  std::vector<Bound> bounds_;
  std::vector<Turn> turns_;
  std::vector<ConstraintMultiple> conflict_;
  double low_ = 0;
  double high_ = 0;
  double value_ = 0;
};

}  // namespace platform
