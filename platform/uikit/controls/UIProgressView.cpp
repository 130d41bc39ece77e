#include "platform/uikit/controls/UIProgressView.h"

#include <algorithm>
#include <cmath>

#include "platform/animation/CALayer.h"
#include "platform/uikit/controls/NSProgress.h"

namespace platform {

namespace {

constexpr double height = 4;
constexpr double seconds = 0.25;

}  // namespace

UIProgressView::~UIProgressView() {
  if (observed_) observed_->removeObserver(observer_);
}

void UIProgressView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  track_ = make<UIView>();
  filled_ = make<UIView>();
  for (const Ref<UIView>& part : {track_, filled_}) {
    part->layer()->setCornerRadius(height / 2);
    addSubview(part);
  }
  tintColorDidChange();
}

void UIProgressView::setProgress(float progress, bool animated) {
  if (std::isnan(progress)) return;
  progress_ = std::clamp(progress, 0.0f, 1.0f);
  setNeedsLayout();
  if (animated && window()) UIView::animateWithDuration(seconds, [this] { layoutIfNeeded(); });
}

void UIProgressView::setObservedProgress(const Ref<NSProgress>& progress) {
  if (observed_) observed_->removeObserver(observer_);
  observed_ = progress;
  if (!progress) return;
  observer_ = progress->addObserver([weak = weakSelf()] {
    const Ref<UIProgressView> view = weak.lock();
    if (view && view->observed_) view->setProgress(static_cast<float>(view->observed_->fractionCompleted()), true);
  });
  setProgress(static_cast<float>(progress->fractionCompleted()));
}

void UIProgressView::setProgressTintColor(std::optional<UIColor> color) {
  progressTint_ = color;
  tintColorDidChange();
}

void UIProgressView::setTrackTintColor(std::optional<UIColor> color) {
  trackTint_ = color;
  tintColorDidChange();
}

void UIProgressView::tintColorDidChange() {
  Super::tintColorDidChange();
  if (!filled_) return;
  track_->setBackgroundColor(trackTint_.value_or(UIColor::systemGray5()));
  filled_->setBackgroundColor(progressTint_.value_or(tintColor()));
}

void UIProgressView::layoutSubviews() {
  Super::layoutSubviews();
  CGRect bar = bounds();
  bar.origin.y = bar.midY() - height / 2;
  bar.size.height = height;
  track_->setFrame(bar);
  bar.size.width *= static_cast<double>(progress_);
  filled_->setFrame(bar);
}

CGSize UIProgressView::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, height}; }
CGSize UIProgressView::sizeThatFits(CGSize size) const { return {size.width > 0 ? size.width : 150, height}; }

}  // namespace platform
