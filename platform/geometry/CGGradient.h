#pragma once

#include <vector>

#include "platform/geometry/UIColor.h"

namespace platform {

/// Colours along a line: one location (0 to 1, growing) a colour. Without locations they are spread evenly; locations
/// that do not match in number count as none. A plain value.
struct CGGradient {
  std::vector<UIColor> colors;
  std::vector<double> locations;
};

}  // namespace platform
