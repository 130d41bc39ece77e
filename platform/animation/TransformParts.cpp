#include "platform/animation/TransformParts.h"

#include <cmath>
#include <numbers>

namespace platform {

TransformParts::TransformParts(const CGAffineTransform& t) : translationX(t.tx), translationY(t.ty) {
  scaleX = std::hypot(t.a, t.b);
  if (scaleX == 0) {
    rotation = std::atan2(-t.c, t.d);
    scaleY = std::hypot(t.c, t.d);
    return;
  }
  rotation = std::atan2(t.b, t.a);
  const double cosine = t.a / scaleX, sine = t.b / scaleX;
  // The second column turned back: the part along x is the slant, the other the scale.
  slant = t.c * cosine + t.d * sine;
  scaleY = t.d * cosine - t.c * sine;
}

CGAffineTransform TransformParts::transform() const {
  const double cosine = std::cos(rotation), sine = std::sin(rotation);
  return {scaleX * cosine, scaleX * sine, slant * cosine - scaleY * sine, slant * sine + scaleY * cosine,
          translationX,    translationY};
}

TransformParts TransformParts::mixedWith(const TransformParts& other, double fraction) const {
  const auto mix = [fraction](double a, double b) { return a + (b - a) * fraction; };
  TransformParts result;
  result.scaleX = mix(scaleX, other.scaleX);
  result.scaleY = mix(scaleY, other.scaleY);
  result.slant = mix(slant, other.slant);
  result.rotation = rotation + std::remainder(other.rotation - rotation, 2 * std::numbers::pi) * fraction;
  result.translationX = mix(translationX, other.translationX);
  result.translationY = mix(translationY, other.translationY);
  return result;
}

}  // namespace platform
