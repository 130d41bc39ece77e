#include "platform/uikit/controls/UIActivityIndicatorView.h"

#include <cmath>

#include "platform/graphics/CGContext.h"

namespace platform {

namespace {

constexpr int spokes = 8;
constexpr double turnSeconds = 0.8;

}  // namespace

void UIActivityIndicatorView::init(UIActivityIndicatorViewStyle style) {
  style_ = style;
  initWithFrame(CGRect{});
}

void UIActivityIndicatorView::initWithFrame(CGRect frame) {
  if (frame.isEmpty()) frame.size = intrinsicContentSize();
  Super::initWithFrame(frame);
  setUserInteractionEnabled(false);
  setHidden(true);
}

void UIActivityIndicatorView::startAnimating() {
  animating_ = true;
  setHidden(false);
  turn();
}

void UIActivityIndicatorView::stopAnimating() {
  animating_ = false;
  ticker_.stop();
  if (hidesWhenStopped_) setHidden(true);
}

void UIActivityIndicatorView::turn() {
  if (!animating_ || !window()) return ticker_.stop();
  ticker_.start([weak = weakSelf()](double seconds) {
    const Ref<UIActivityIndicatorView> view = weak.lock();
    if (!view) return;
    const int spoke = static_cast<int>(seconds / turnSeconds * spokes) % spokes;
    if (spoke == view->spoke_) return;
    view->spoke_ = spoke;
    view->setNeedsDisplay();
  });
}

void UIActivityIndicatorView::didMoveToWindow() {
  Super::didMoveToWindow();
  turn();
}

void UIActivityIndicatorView::setHidesWhenStopped(bool hides) {
  hidesWhenStopped_ = hides;
  if (!animating_) setHidden(hides);
}

void UIActivityIndicatorView::setColor(const UIColor& color) {
  color_ = color;
  setNeedsDisplay();
}

CGSize UIActivityIndicatorView::intrinsicContentSize() const {
  const double side = style_ == UIActivityIndicatorViewStyle::large ? 37 : 20;
  return {side, side};
}

CGSize UIActivityIndicatorView::sizeThatFits(CGSize) const { return intrinsicContentSize(); }

void UIActivityIndicatorView::draw(CGRect, CGContext& context) {
  const double side = intrinsicContentSize().width;
  const CGRect all = bounds();
  constexpr double tau = 6.283185307179586;
  context.setLineWidth(side * 0.1);
  context.setLineCap(CGLineCap::round);
  for (int i = 0; i < spokes; ++i) {
    const int behind = (spoke_ - i + spokes) % spokes;  // the spoke it stands on is dark, those it left fade
    const double angle = tau * i / spokes - tau / 4;
    const CGPoint direction{std::cos(angle), std::sin(angle)};
    context.setStrokeColor(color_.colorWithAlphaComponent(color_.alpha() * (1 - 0.8 * behind / (spokes - 1))));
    context.moveTo(all.center() + direction * (side * 0.23));
    context.addLineTo(all.center() + direction * (side * 0.43));
    context.strokePath();
  }
}

}  // namespace platform
