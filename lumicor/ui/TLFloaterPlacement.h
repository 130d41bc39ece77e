#pragma once

#include <cstdint>

#include "platform/geometry/CGGeometry.h"

namespace lumicor {

using namespace platform;

/// The rules of where the floating button rests, free of views. Points.
namespace floaterPlacement {

inline constexpr double closeTargetSize = 160;

/// The length of the button's sides that the layout asks for; beyond any screen it is cut, so that places keep adding
/// up.
double side(std::int64_t size);

/// Where a new button stands on a screen of that size: near the right edge, a third down.
CGRect initialFrame(CGSize screen, double side);

/// Where a button released at `frame` in a container of that size comes to rest: at the nearer side, or, close to the
/// top or the bottom, where it is. `side` is the length of the button's sides.
CGRect restingFrame(CGRect frame, CGSize container, UIEdgeInsets insets, double side);

/// Where a button at `frame` keeps to when its container changes from one size to another, as when the device is
/// turned: the room at either side of it keeps its share.
CGRect frameAfterResize(CGRect frame, CGSize before, CGSize after);

/// Whether a centre, in the close target's own coordinates, lies inside its quarter disc.
bool isInsideCloseTarget(CGPoint center);

}  // namespace floaterPlacement

}  // namespace lumicor
