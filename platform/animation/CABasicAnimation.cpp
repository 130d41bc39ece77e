#include "platform/animation/CABasicAnimation.h"

namespace platform {

AnimatableValue CABasicAnimation::valueAt(double mediaTime, const AnimatableValue& own) const {
  const Progress progress = progressAt(mediaTime);
  if (!progress.isShown) return {};
  const auto given = [](const AnimatableValue& value) { return !std::holds_alternative<std::monostate>(value); };
  AnimatableValue from = given(from_) ? from_ : own;
  AnimatableValue to = given(to_) ? to_ : own;
  if (given(by_)) {
    if (given(to_) && !given(from_)) {
      from = accumulate(to_, by_, -1);
    } else if (!given(to_)) {
      to = accumulate(from, by_, 1);
    }
  }
  AnimatableValue value = blend(from, to, progress.fraction);
  if (cumulative_ && progress.iteration > 0) value = accumulate(value, difference(from, to), progress.iteration);
  return value;
}

Ref<CAAnimation> CABasicAnimation::copy() const {
  auto copy = make<CABasicAnimation>(keyPath_);
  copyTimingTo(*copy);
  copy->from_ = from_;
  copy->to_ = to_;
  copy->by_ = by_;
  copy->cumulative_ = cumulative_;
  return copy;
}

}  // namespace platform
