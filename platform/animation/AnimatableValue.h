#pragma once

#include <string_view>
#include <variant>

#include "platform/geometry/CGGeometry.h"
#include "platform/geometry/CGPath.h"
#include "platform/geometry/UIColor.h"

namespace platform {

/// What an animation moves from one state to another; none when nothing was given.
using AnimatableValue =
    std::variant<std::monostate, double, CGPoint, CGSize, CGRect, CGAffineTransform, UIColor, CGPath>;

/// The value on the way from one to the other; fractions outside 0 to 1 go beyond. Two values of different types do not
/// mix: the result is `to`. Transforms are mixed by their moves, turns and scales.
AnimatableValue blend(const AnimatableValue& from, const AnimatableValue& to, double fraction);
/// value + difference * times; the value itself where there is no sum (paths, different types).
AnimatableValue accumulate(const AnimatableValue& value, const AnimatableValue& difference, double times);
/// to - from; none where there is no difference.
AnimatableValue difference(const AnimatableValue& from, const AnimatableValue& to);

}  // namespace platform
