#pragma once

#include "platform/geometry/CGGeometry.h"

namespace platform {

/// A transform taken apart into what animations move one by one: first the scales and the slant, then the turn, then
/// the move. A plain value.
struct TransformParts {
  double scaleX = 1, scaleY = 1;
  double slant = 0;
  double rotation = 0;  ///< radians
  double translationX = 0, translationY = 0;

  TransformParts() = default;
  explicit TransformParts(const CGAffineTransform& transform);
  CGAffineTransform transform() const;
  /// Turns the shorter way round.
  TransformParts mixedWith(const TransformParts& other, double fraction) const;
};

}  // namespace platform
