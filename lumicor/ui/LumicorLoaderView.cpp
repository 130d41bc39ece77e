#include "lumicor/ui/LumicorLoaderView.h"

#include <limits>
#include <numbers>
#include <utility>

#include "lumicor/ui/LumicorDimming.h"
#include "lumicor/ui/LumicorFrontLevel.h"
#include "platform/animation/CABasicAnimation.h"
#include "platform/animation/CAShapeLayer.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor {

namespace {

constexpr double spinnerSide = 50;
constexpr double spinnerRise = 20;  // above the middle of the card
constexpr double gapBelowSpinner = 10;
constexpr double labelHeight = 20;
constexpr double labelSize = 15;  // leaves the usual card 11 points at either side
constexpr double smallestLabelScale = 0.6;
constexpr double pi = std::numbers::pi;

}  // namespace

void LumicorLoaderView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::white());
  setFrontLevel(LumicorFrontLevel::notice);
  layer()->setCornerRadius(10);
  setUpSpinner();
  setUpLabel();
  startSpinning();
}

void LumicorLoaderView::setUpSpinner() {
  constexpr double middle = spinnerSide / 2;
  spinnerLayer_ = make<CAShapeLayer>();
  spinnerLayer_->setPath(
      UIBezierPath::bezierPathWithArcCenter({middle, middle}, middle, -pi / 2, 2 * pi, true)->cgPath());
  spinnerLayer_->setFillColor(UIColor::clear());
  spinnerLayer_->setStrokeColor(UIColor::white(0, 0.5));
  spinnerLayer_->setLineWidth(5);
  spinnerLayer_->setStrokeEnd(0.4);
  spinnerLayer_->setLineCap(kCALineCapRound);
  const CGSize card = bounds().size;
  spinnerLayer_->setFrame(
      {(card.width - spinnerSide) / 2, (card.height - spinnerSide) / 2 - spinnerRise, spinnerSide, spinnerSide});
  layer()->addSublayer(spinnerLayer_);
}

void LumicorLoaderView::setUpLabel() {
  loadingLabel_ = make<UILabel>();
  loadingLabel_->setText("Starting Session...");
  loadingLabel_->setFont(UIFont::systemFont(labelSize));
  loadingLabel_->setTextColor(UIColor::black());
  loadingLabel_->setTextAlignment(NSTextAlignment::center);
  loadingLabel_->setAdjustsFontSizeToFitWidth(true);
  loadingLabel_->setMinimumScaleFactor(smallestLabelScale);
  loadingLabel_->setFrame({0, spinnerLayer_->frame().maxY() + gapBelowSpinner, bounds().size.width, labelHeight});
  addSubview(loadingLabel_);
}

void LumicorLoaderView::startSpinning() {
  auto turn = make<CABasicAnimation>("transform.rotation.z");
  turn->setToValue(2 * pi);
  turn->setDuration(1);
  turn->setCumulative(true);
  turn->setRepeatCount(std::numeric_limits<double>::infinity());
  spinnerLayer_->addAnimation(turn, "rotationAnimation");
}

void LumicorLoaderView::show() {
  if (overlayView_ && overlayView_->window()) return;
  overlayView_ = addDimmingOverlay();
  if (overlayView_) overlayView_->superview()->addSubview(self());
}

void LumicorLoaderView::dismiss() {
  const Ref<LumicorLoaderView> keep = self();
  if (const auto overlay = std::exchange(overlayView_, nullptr)) overlay->removeFromSuperview();
  removeFromSuperview();
}

}  // namespace lumicor
