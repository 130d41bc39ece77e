#include "platform/graphics/UIBezierPath.h"

#include "platform/graphics/CGContext.h"

namespace platform {

Ref<UIBezierPath> UIBezierPath::bezierPathWithRect(const CGRect& rect) {
  return make<UIBezierPath>(platform::CGPath::rect(rect));
}

Ref<UIBezierPath> UIBezierPath::bezierPathWithOvalInRect(const CGRect& rect) {
  return make<UIBezierPath>(platform::CGPath::oval(rect));
}

Ref<UIBezierPath> UIBezierPath::bezierPathWithRoundedRect(const CGRect& rect, double cornerRadius) {
  return make<UIBezierPath>(platform::CGPath::roundedRect(rect, cornerRadius));
}

Ref<UIBezierPath> UIBezierPath::bezierPathWithArcCenter(CGPoint center, double radius, double startAngle,
                                                        double endAngle, bool clockwise) {
  platform::CGPath path;
  path.arc(center, radius, startAngle, endAngle, clockwise);
  return make<UIBezierPath>(std::move(path));
}

void UIBezierPath::fill(CGContext& context) const { context.fillPath(path_, usesEvenOddFillRule_); }

void UIBezierPath::stroke(CGContext& context) const { context.strokePath(path_, stroke_); }

void UIBezierPath::addClip(CGContext& context) const { context.clip(path_, usesEvenOddFillRule_); }

}  // namespace platform
