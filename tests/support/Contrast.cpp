#include "tests/support/Contrast.h"

#include <algorithm>
#include <cmath>

namespace platform::test {

namespace {

double linear(double component) {
  return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const UIColor& color) {
  return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) + 0.0722 * linear(color.blue());
}

}  // namespace

double contrast(const UIColor& a, const UIColor& b) {
  const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace platform::test
