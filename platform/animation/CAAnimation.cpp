#include "platform/animation/CAAnimation.h"

#include <algorithm>
#include <cmath>

namespace platform {

double CAAnimation::activeDuration() const {
  const double round = duration_ * (autoreverses_ ? 2 : 1);
  return round > 0 ? round * std::max(0.0, repeatCount_) : 0;
}

CAAnimation::Progress CAAnimation::progressAt(double mediaTime) const {
  const double total = activeDuration();
  double time = mediaTime - beginTime_;
  const bool fillsBefore = fillMode_ == CAMediaTimingFillMode::backwards || fillMode_ == CAMediaTimingFillMode::both;
  const bool fillsAfter = fillMode_ == CAMediaTimingFillMode::forwards || fillMode_ == CAMediaTimingFillMode::both;
  if (time < 0) {
    if (!fillsBefore) return {};
    time = 0;
  }
  const bool isOver = time >= total;
  if (isOver && !fillsAfter) return {};
  time = std::min(time, total);
  const double round = duration_ * (autoreverses_ ? 2 : 1);
  Progress progress{true, 0, 1};
  if (round <= 0) return progress;
  progress.iteration = std::floor(time / round);
  double part = (time - progress.iteration * round) / duration_;
  if (isOver && part < 1e-9 && progress.iteration > 0) {  // the end of the last round, not the start of one more
    progress.iteration -= 1;
    part = autoreverses_ ? 2 : 1;
  }
  progress.fraction = timingFunction_.valueAt(part > 1 ? 2 - part : part);
  return progress;
}

void CAAnimation::copyTimingTo(CAAnimation& other) const {
  other.duration_ = duration_;
  other.beginTime_ = beginTime_;
  other.repeatCount_ = repeatCount_;
  other.autoreverses_ = autoreverses_;
  other.removedOnCompletion_ = removedOnCompletion_;
  other.fillMode_ = fillMode_;
  other.timingFunction_ = timingFunction_;
  other.delegate_ = delegate_;
}

}  // namespace platform
