#include "lumicor/ui/TLFloaterPlacement.h"

#include <algorithm>

namespace lumicor::floaterPlacement {

namespace {

constexpr double gapToEdge = 10;
constexpr double edgeZone = 60;
constexpr double initialDistanceFromRight = 70;
constexpr double initialHeightShare = 0.3;
constexpr std::int64_t largestSide = 4096;

}  // namespace

double side(std::int64_t size) { return static_cast<double>(std::clamp<std::int64_t>(size, 0, largestSide)); }

CGRect initialFrame(CGSize screen, double side) {
  const auto x = static_cast<double>(static_cast<std::int64_t>(screen.width)) - initialDistanceFromRight;
  const auto y = static_cast<double>(static_cast<std::int64_t>(screen.height * initialHeightShare));
  return {x, y, side, side};
}

CGRect restingFrame(CGRect frame, CGSize container, UIEdgeInsets insets, double side) {
  const double x = frame.origin.x;
  const double y = frame.origin.y;
  const double width = frame.size.width;
  const double height = frame.size.height;
  const double rightGap = container.width - x - width;
  const double bottomGap = container.height - y - height;
  const double atRight = container.width - width - gapToEdge;

  double keptX = x;
  if (x < rightGap) {
    if (x < gapToEdge) keptX = gapToEdge;
  } else if (rightGap < gapToEdge) {
    keptX = atRight;
  }

  if (y < edgeZone) return {keptX, insets.top + gapToEdge, side, side};
  if (bottomGap < edgeZone) return {keptX, container.height - height - gapToEdge - insets.bottom, side, side};
  return {x < rightGap ? gapToEdge : atRight, y, side, side};
}

CGRect frameAfterResize(CGRect frame, CGSize before, CGSize after) {
  const auto moved = [](double place, double length, double roomBefore, double roomAfter) {
    const double share = roomBefore > length ? std::clamp(place / (roomBefore - length), 0.0, 1.0) : 0.0;
    return share * std::max(0.0, roomAfter - length);
  };
  const CGSize size = frame.size;
  return {moved(frame.origin.x, size.width, before.width, after.width),
          moved(frame.origin.y, size.height, before.height, after.height), size.width, size.height};
}

bool isInsideCloseTarget(CGPoint center) {
  if (center.x <= 0 || center.y <= 0) return false;
  const double dx = center.x - closeTargetSize;
  const double dy = center.y - closeTargetSize;
  return dx * dx + dy * dy <= closeTargetSize * closeTargetSize;
}

}  // namespace lumicor::floaterPlacement
