#pragma once

#include <cstddef>
#include <limits>

#include "platform/geometry/CGGeometry.h"
#include "platform/solver/LayoutSolver.h"
#include "platform/uikit/Forward.h"

namespace platform {

class NSObject;

/// What a LayoutEngine knows of one view or guide: its unknowns (x, y, width, height) and the constraints that the
/// engine itself made for them.
struct LayoutItem {
  const NSObject* key = nullptr;
  std::size_t index = 0;   ///< in the engine's list
  UIView* view = nullptr;  ///< the view, or the one that owns the guide
  UILayoutGuide* guide = nullptr;
  /// Its frame is given (it translates its autoresizing mask, or it is the root), not sought.
  bool isFramed = false;
  bool contentIsDirty = false;
  /// Its height is that of text wrapped at its width.
  bool wraps = false;
  /// Some expression holds its baseline, or the origin of its bounds, as a number: it is read again when that changes.
  bool baselineIsRead = false;
  bool originIsRead = false;
  bool isDirty = false;  ///< waits in the engine's list

  LayoutVariable variables[4];
  LayoutVariable content[2];  ///< width and height of what scrolls in it, when constraints decide them
  LayoutConstraintId frame[4] = {noLayoutConstraint, noLayoutConstraint, noLayoutConstraint, noLayoutConstraint};
  double share[4] = {0, 0, 0, 0};  ///< of the superview's size, as the mask gives it, in the equations of `frame`
  LayoutConstraintId atLeast[2] = {noLayoutConstraint, noLayoutConstraint};  ///< compression resistance, by axis
  LayoutConstraintId atMost[2] = {noLayoutConstraint, noLayoutConstraint};   ///< hugging
  float atLeastPriority[2] = {0, 0};
  float atMostPriority[2] = {0, 0};
  LayoutConstraintId positive[2] = {noLayoutConstraint, noLayoutConstraint};
  CGPoint origin;  ///< as it was read
  double measuredWidth = std::numeric_limits<double>::quiet_NaN();
};

}  // namespace platform
