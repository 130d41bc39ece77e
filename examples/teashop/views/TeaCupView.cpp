#include "examples/teashop/views/TeaCupView.h"

#include <algorithm>

#include "examples/teashop/views/Theme.h"
#include "platform/graphics/CGContext.h"

namespace teashop {

using namespace platform;

namespace {

CGRect circle(CGPoint center, double radius) { return {center.x - radius, center.y - radius, 2 * radius, 2 * radius}; }

}  // namespace

void TeaCupView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  liquor_ = theme::amber;
  setBackgroundColor(std::nullopt);
}

void TeaCupView::setLiquor(const UIColor& color) {
  liquor_ = color;
  setNeedsDisplay();
}

void TeaCupView::draw(CGRect, CGContext& context) { drawTeaCup(context, bounds(), liquor_); }

void drawTeaCup(CGContext& context, CGRect area, const UIColor& liquor) {
  const CGPoint center{area.origin.x + area.size.width / 2, area.origin.y + area.size.height / 2};
  const double radius = std::min(area.size.width, area.size.height) / 2;
  context.setFillColor(theme::leafTint);
  context.fillEllipse(circle(center, radius));
  context.setFillColor(UIColor::white());
  context.fillEllipse(circle(center, radius * 0.74));
  context.setFillColor(liquor);
  context.fillEllipse(circle(center, radius * 0.64));
  context.setFillColor(UIColor::white(1, 0.16));
  context.fillEllipse(circle({center.x - radius * 0.18, center.y - radius * 0.2}, radius * 0.3));
  context.setFillColor(UIColor::white(1, 0.35));
  context.fillEllipse(circle({center.x - radius * 0.3, center.y - radius * 0.32}, radius * 0.09));
}

}  // namespace teashop
