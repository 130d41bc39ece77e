#include "lumicor/ui/TLFloaterGlyph.h"

#include <algorithm>

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

// In parts of the glyph's side.
constexpr CGRect bubble{0.04, 0.10, 0.92, 0.66};
constexpr double cornerRadius = 0.2;
constexpr double dotRadius = 0.055;
constexpr double dotDistance = 0.2;

/// Points. A larger picture is this one blown up: its size comes from the service, its memory from the host.
constexpr double largestSide = 128;

/// Where the parts of a glyph lie in its picture.
struct Place {
  double margin;
  double glyph;
  CGPoint point(double x, double y) const { return {margin + x * glyph, margin + y * glyph}; }
  CGRect rect(const CGRect& part) const {
    const CGPoint origin = point(part.origin.x, part.origin.y);
    return {origin.x, origin.y, part.size.width * glyph, part.size.height * glyph};
  }
};

}  // namespace

Ref<UIImage> floaterGlyph(double side, double glyph, const UIColor& color) {
  const double shrink = std::min(1.0, largestSide / std::max(side, 1.0));
  side = std::max(side * shrink, 1.0);
  glyph *= shrink;
  const Place place{(side - glyph) / 2, glyph};
  const auto draw = [&](CGContext& context) {
    context.setFillColor(color);
    UIBezierPath::bezierPathWithRoundedRect(place.rect(bubble), cornerRadius * glyph)->fill(context);
    auto tail = make<UIBezierPath>();
    tail->moveToPoint(place.point(0.22, 0.7));
    tail->addLineToPoint(place.point(0.22, 0.95));
    tail->addLineToPoint(place.point(0.48, 0.74));
    tail->closePath();
    tail->fill(context);
    context.setFillColor(UIColor::white());
    for (const double step : {-1.0, 0.0, 1.0}) {
      const CGRect dot{0.5 + step * dotDistance - dotRadius, bubble.midY() - dotRadius, 2 * dotRadius, 2 * dotRadius};
      UIBezierPath::bezierPathWithOvalInRect(place.rect(dot))->fill(context);
    }
  };
  return UIGraphicsImageRenderer({side, side}, UIScreen::main().scale()).imageWithActions(draw);
}

}  // namespace lumicor
