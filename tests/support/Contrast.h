#pragma once

#include "platform/geometry/UIColor.h"

namespace platform::test {

/// What text asks for at least, and what marks that are no letters ask for.
inline constexpr double readable = 4.5;
inline constexpr double discernible = 3;

/// The contrast between two opaque colours, 1 to 21, as the Web Content Accessibility Guidelines 2.1 define it.
double contrast(const UIColor& a, const UIColor& b);

}  // namespace platform::test
