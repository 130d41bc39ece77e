#include "platform/solver/LoneUnknown.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double tolerance = 1e-6;

bool limitsBelow(const LoneUnknown::Bound& bound) {
  if (bound.relation == NSLayoutRelation::equal) return true;
  return (bound.relation == NSLayoutRelation::greaterThanOrEqual) == (bound.coefficient > 0);
}
bool limitsAbove(const LoneUnknown::Bound& bound) {
  return bound.relation == NSLayoutRelation::equal || !limitsBelow(bound);
}

}  // namespace

bool LoneUnknown::solve() {
  if (!requireBounds()) return false;
  double priority = infinity;
  while (low_ < high_) {
    double next = -infinity;
    for (const Bound& bound : bounds_) {
      if (!bound.isRequired && bound.priority < priority) next = std::max(next, bound.priority);
    }
    if (next == -infinity) break;
    narrow(next);
    priority = next;
  }
  value_ = low_ > -infinity ? low_ : high_ < infinity ? high_ : 0;
  return true;
}

bool LoneUnknown::requireBounds() {
  low_ = -infinity;
  high_ = infinity;
  const Bound* lowest = nullptr;
  const Bound* highest = nullptr;
  for (const Bound& bound : bounds_) {
    if (!bound.isRequired) continue;
    const double at = -bound.constant / bound.coefficient;
    if (limitsBelow(bound) && at > low_) {
      low_ = at;
      lowest = &bound;
    }
    if (limitsAbove(bound) && at < high_) {
      high_ = at;
      highest = &bound;
    }
  }
  if (low_ <= high_) return true;
  if ((low_ - high_) * std::max(std::abs(lowest->coefficient), std::abs(highest->coefficient)) <= tolerance) {
    low_ = high_;
    return true;
  }
  conflict_.clear();
  conflict_.push_back({lowest->id, 1 / lowest->coefficient});
  conflict_.push_back({highest->id, -1 / highest->coefficient});
  return false;
}

void LoneUnknown::narrow(double priority) {
  turns_.clear();
  double weights = 0;
  double slope = 0;  // of the sum of violations, far below
  for (const Bound& bound : bounds_) {
    if (bound.isRequired || bound.priority != priority) continue;
    const double at = -bound.constant / bound.coefficient;
    const double weight = bound.weight;
    weights += weight;
    if (limitsBelow(bound)) slope -= weight;
    turns_.push_back({at, bound.relation == NSLayoutRelation::equal ? 2 * weight : weight});
  }
  std::sort(turns_.begin(), turns_.end(), [](const Turn& a, const Turn& b) { return a.at < b.at; });
  const double flat = 1e-9 * std::min(1.0, weights);
  double left = -infinity;
  double right = infinity;
  auto turn = turns_.cbegin();
  for (; turn != turns_.cend() && slope < -flat; ++turn) {
    slope += turn->slope;
    left = turn->at;
  }
  if (slope > flat) {
    right = left;
  } else if (turn != turns_.cend()) {
    right = turn->at;
  }
  if (right <= low_) {
    high_ = low_;
  } else if (left >= high_) {
    low_ = high_;
  } else {
    low_ = std::max(low_, left);
    high_ = std::min(high_, right);
  }
}

}  // namespace platform
