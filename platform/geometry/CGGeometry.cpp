#include "platform/geometry/CGGeometry.h"

namespace platform {

CGAffineTransform CGAffineTransform::rotation(double angle) {
  const double cosine = std::cos(angle), sine = std::sin(angle);
  return {cosine, sine, -sine, cosine, 0, 0};
}

CGAffineTransform CGAffineTransform::inverted() const {
  const double determinant = a * d - b * c;
  if (determinant == 0 || !std::isfinite(determinant)) return {};
  const double s = 1 / determinant;
  return {d * s, -b * s, -c * s, a * s, (c * ty - d * tx) * s, (b * tx - a * ty) * s};
}

CGRect CGAffineTransform::apply(const CGRect& r) const {
  const CGPoint corners[] = {apply({r.minX(), r.minY()}), apply({r.maxX(), r.minY()}), apply({r.minX(), r.maxY()}),
                             apply({r.maxX(), r.maxY()})};
  CGPoint low = corners[0], high = corners[0];
  for (const CGPoint& p : corners) {
    low = {std::min(low.x, p.x), std::min(low.y, p.y)};
    high = {std::max(high.x, p.x), std::max(high.y, p.y)};
  }
  return {low.x, low.y, high.x - low.x, high.y - low.y};
}

}  // namespace platform
