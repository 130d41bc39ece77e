// The ready-made shapes of CGPath.

#include <numbers>

#include "platform/geometry/CGPath.h"

namespace platform {

namespace {

/// The control points of a quarter circle lie at this part of the radius from its ends.
constexpr double quarterHandle = 0.5522847498307936;

double heldRadius(const CGRect& rect, double radius) {
  const double most = std::max(0.0, std::min(rect.width(), rect.height()) / 2);
  return radius > 0 ? std::min(radius, most) : 0;
}

}  // namespace

CGPath CGPath::rect(const CGRect& r) {
  CGPath path;
  path.move({r.minX(), r.minY()});
  path.line({r.maxX(), r.minY()});
  path.line({r.maxX(), r.maxY()});
  path.line({r.minX(), r.maxY()});
  path.close();
  return path;
}

CGPath CGPath::oval(const CGRect& r) {
  const double x = r.width() / 2 * quarterHandle, y = r.height() / 2 * quarterHandle;
  CGPath path;
  path.move({r.maxX(), r.midY()});
  path.curve({r.maxX(), r.midY() + y}, {r.midX() + x, r.maxY()}, {r.midX(), r.maxY()});
  path.curve({r.midX() - x, r.maxY()}, {r.minX(), r.midY() + y}, {r.minX(), r.midY()});
  path.curve({r.minX(), r.midY() - y}, {r.midX() - x, r.minY()}, {r.midX(), r.minY()});
  path.curve({r.midX() + x, r.minY()}, {r.maxX(), r.midY() - y}, {r.maxX(), r.midY()});
  path.close();
  return path;
}

CGPath CGPath::roundedRect(const CGRect& r, double cornerRadius) {
  const double radius = heldRadius(r, cornerRadius);
  const double handle = radius * (1 - quarterHandle);
  const double left = r.minX(), top = r.minY(), right = r.maxX(), bottom = r.maxY();
  CGPath path;
  path.move({left + radius, top});
  path.line({right - radius, top});
  path.curve({right - handle, top}, {right, top + handle}, {right, top + radius});
  path.line({right, bottom - radius});
  path.curve({right, bottom - handle}, {right - handle, bottom}, {right - radius, bottom});
  path.line({left + radius, bottom});
  path.curve({left + handle, bottom}, {left, bottom - handle}, {left, bottom - radius});
  path.line({left, top + radius});
  path.curve({left, top + handle}, {left + handle, top}, {left + radius, top});
  path.close();
  return path;
}

CGPath CGPath::continuousRoundedRect(const CGRect& r, double cornerRadius) {
  const double radius = heldRadius(r, cornerRadius);
  if (radius <= 0) return roundedRect(r, 0);
  // A corner is a shorter arc with an easing curve on both sides. `smoothness` is the share of the quarter turn that
  // the easing curves take; where the side is too short for them, the corner falls back towards the plain arc.
  const double smoothness = std::clamp(std::min(r.width(), r.height()) / 2 / radius - 1, 0.0, 0.6);
  const double reach = radius * (1 + smoothness);
  const double arcAngle = std::numbers::pi / 2 * (1 - smoothness);
  const double easeAngle = (std::numbers::pi / 2 - arcAngle) / 2;
  // From the side: `reach` back from the corner the line bends; the arc starts `alongArc` from the corner, `depth` off
  // the side; the first two control points stay on the side so that the curvature starts from nothing.
  const double depth = radius * (1 - std::cos(easeAngle));
  const double arcStart = radius * (1 - std::sin(easeAngle));
  const double tangent = depth / std::tan(easeAngle > 0 ? easeAngle : 1);
  const double easing = std::max(0.0, reach - arcStart - tangent);
  const double arcHandle = 4.0 / 3 * std::tan(arcAngle / 4) * radius;
  const double cosine = std::cos(easeAngle), sine = std::sin(easeAngle);

  // One corner in its own axes: `u` points from the corner back along the side it comes from, `v` along the next one.
  CGPath path;
  const auto corner = [&](CGPoint at, CGVector u, CGVector v) {
    const auto place = [&](double along, double away) {
      return CGPoint{at.x + u.dx * along + v.dx * away, at.y + u.dy * along + v.dy * away};
    };
    const double control1 = reach - easing * 2 / 3, control2 = arcStart + tangent;
    const CGPoint start = place(reach, 0);
    path.isEmpty() ? path.move(start) : path.line(start);
    path.curve(place(control1, 0), place(control2, 0), place(arcStart, depth));
    path.curve(place(arcStart - arcHandle * cosine, depth + arcHandle * sine),
               place(depth + arcHandle * sine, arcStart - arcHandle * cosine), place(depth, arcStart));
    path.curve(place(0, control2), place(0, control1), place(0, reach));
  };
  corner({r.maxX(), r.minY()}, {-1, 0}, {0, 1});
  corner({r.maxX(), r.maxY()}, {0, -1}, {-1, 0});
  corner({r.minX(), r.maxY()}, {1, 0}, {0, -1});
  corner({r.minX(), r.minY()}, {0, 1}, {1, 0});
  path.close();
  return path;
}

}  // namespace platform
