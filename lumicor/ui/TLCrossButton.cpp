#include "lumicor/ui/TLCrossButton.h"

#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"

namespace lumicor {

namespace {

// Points.
constexpr double side = 14;
constexpr double lineWidth = 2;

}  // namespace

bool TLCrossButton::pointInside(CGPoint point, const Ref<UIEvent>&) const {
  return bounds().insetBy(-touchMargin, -touchMargin).contains(point);
}

void TLCrossButton::draw(CGRect rect, CGContext& context) {
  Super::draw(rect, context);
  if (currentImage()) return;
  const CGRect box{bounds().midX() - side / 2, bounds().midY() - side / 2, side, side};
  auto cross = make<UIBezierPath>();
  cross->moveToPoint({box.minX(), box.minY()});
  cross->addLineToPoint({box.maxX(), box.maxY()});
  cross->moveToPoint({box.maxX(), box.minY()});
  cross->addLineToPoint({box.minX(), box.maxY()});
  cross->setLineWidth(lineWidth);
  cross->setLineCapStyle(CGLineCap::round);
  context.setStrokeColor(UIColor::black());
  cross->stroke(context);
}

}  // namespace lumicor
