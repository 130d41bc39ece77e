#include "lumicor/ui/TLFloaterGlyph.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

// In parts of the side.
constexpr CGRect bubble{0.04, 0.10, 0.92, 0.66};
constexpr double cornerRadius = 0.2;
constexpr double dotRadius = 0.055;
constexpr double dotDistance = 0.2;

CGRect scaled(const CGRect& rect, double side) {
  return {rect.origin.x * side, rect.origin.y * side, rect.size.width * side, rect.size.height * side};
}

}  // namespace

Ref<UIImage> floaterGlyph(double side, const UIColor& color) {
  const auto draw = [&](CGContext& context) {
    context.setFillColor(color);
    UIBezierPath::bezierPathWithRoundedRect(scaled(bubble, side), cornerRadius * side)->fill(context);
    auto tail = make<UIBezierPath>();
    tail->moveToPoint({0.22 * side, 0.7 * side});
    tail->addLineToPoint({0.22 * side, 0.95 * side});
    tail->addLineToPoint({0.48 * side, 0.74 * side});
    tail->closePath();
    tail->fill(context);
    context.setFillColor(UIColor::white());
    for (const double step : {-1.0, 0.0, 1.0}) {
      const CGPoint center{(0.5 + step * dotDistance) * side, bubble.midY() * side};
      const double radius = dotRadius * side;
      UIBezierPath::bezierPathWithOvalInRect({center.x - radius, center.y - radius, 2 * radius, 2 * radius})
          ->fill(context);
    }
  };
  return UIGraphicsImageRenderer({side, side}, UIScreen::main().scale()).imageWithActions(draw);
}

}  // namespace lumicor
