#include "lumicor/ui/TLBottomCloseView.h"

#include <numbers>

#include "platform/animation/CAShapeLayer.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"

namespace lumicor {

namespace {

constexpr double restingScale = 0.8;
constexpr double selectedScale = 1.0;

}  // namespace

void TLBottomCloseView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::white(0, 0.65));
  layer()->setMask(maskLayer());
}

const Ref<CAShapeLayer>& TLBottomCloseView::maskLayer() {
  if (!maskLayer_) maskLayer_ = make<CAShapeLayer>();
  return maskLayer_;
}

void TLBottomCloseView::layoutSubviews() {
  Super::layoutSubviews();
  maskLayer()->setFrame(bounds());
}

void TLBottomCloseView::draw(CGRect, CGContext& context) {
  constexpr double pi = std::numbers::pi;
  const CGSize size = bounds().size;
  const double scale = insideBottomSelected ? selectedScale : restingScale;
  auto disc = make<UIBezierPath>();
  disc->addArc({size.width, size.height}, scale * size.width, pi, 1.5 * pi, true);
  disc->addLineToPoint({size.width, size.height});
  disc->closePath();
  maskLayer()->setPath(disc->cgPath());

  auto ring = make<UIBezierPath>();
  ring->addArc({0.7 * size.width, 0.7 * size.height}, 10, 0, 2 * pi, true);
  ring->setLineWidth(3);
  context.setStrokeColor(UIColor::white());
  ring->stroke(context);
}

}  // namespace lumicor
