#pragma once

#include <limits>
#include <string>

#include "platform/animation/AnimatableValue.h"
#include "platform/animation/CAMediaTimingFunction.h"
#include "platform/runtime/Object.h"

namespace platform {

class CompletionGroup;

/// What an animation shows before it begins and after it ends: itself (forwards, backwards) or the layer's own value.
enum class CAMediaTimingFillMode { removed, forwards, backwards, both };
inline constexpr CAMediaTimingFillMode kCAFillModeRemoved = CAMediaTimingFillMode::removed;
inline constexpr CAMediaTimingFillMode kCAFillModeForwards = CAMediaTimingFillMode::forwards;
inline constexpr CAMediaTimingFillMode kCAFillModeBackwards = CAMediaTimingFillMode::backwards;
inline constexpr CAMediaTimingFillMode kCAFillModeBoth = CAMediaTimingFillMode::both;
/// A repeat count without end.
inline constexpr double CARepeatForever = std::numeric_limits<double>::infinity();

/// When an animation runs and who hears of it. A layer takes a copy when it is added, so that later changes do nothing.
/// Seconds throughout. Main thread.
///
/// The delegate is held until the animation is over (the one delegate that is not held weakly), and asked by selector:
/// "animationDidStart:" and "animationDidStop:finished:" (an animation, and whether it ran to its end). Both optional.
class CAAnimation : public Object<CAAnimation, NSObject> {
 public:
  double duration() const { return duration_; }
  /// 0 stands for the transaction's duration, a quarter of a second by default.
  void setDuration(double seconds) { duration_ = seconds; }
  double beginTime() const { return beginTime_; }
  /// On the media clock; 0 for the instant at which it is added.
  void setBeginTime(double mediaTime) { beginTime_ = mediaTime; }
  double repeatCount() const { return repeatCount_; }
  void setRepeatCount(double count) { repeatCount_ = count; }
  bool autoreverses() const { return autoreverses_; }
  void setAutoreverses(bool autoreverses) { autoreverses_ = autoreverses; }
  CAMediaTimingFillMode fillMode() const { return fillMode_; }
  void setFillMode(CAMediaTimingFillMode mode) { fillMode_ = mode; }
  bool isRemovedOnCompletion() const { return removedOnCompletion_; }
  /// One that stays is still listed by its layer but shows only as its fill mode says.
  void setRemovedOnCompletion(bool removed) { removedOnCompletion_ = removed; }
  const CAMediaTimingFunction& timingFunction() const { return timingFunction_; }
  void setTimingFunction(const CAMediaTimingFunction& function) { timingFunction_ = function; }
  const Ref<NSObject>& delegate() const { return delegate_; }
  void setDelegate(Ref<NSObject> delegate) { delegate_ = std::move(delegate); }

  /// From begin to end, all repetitions; infinite for one without end.
  double activeDuration() const;

  /// Where it is at an instant: rounds completed, and how far the current one has come (timing applied).
  struct Progress {
    bool isShown = false;
    double iteration = 0;
    double fraction = 0;
  };
  Progress progressAt(double mediaTime) const;

 protected:
  friend class LayerAnimations;
  virtual Ref<CAAnimation> copy() const = 0;
  void copyTimingTo(CAAnimation& other) const;

 private:
  double duration_ = 0;
  double beginTime_ = 0;
  double repeatCount_ = 1;
  bool autoreverses_ = false;
  bool removedOnCompletion_ = true;
  CAMediaTimingFillMode fillMode_ = CAMediaTimingFillMode::removed;
  CAMediaTimingFunction timingFunction_;
  Ref<NSObject> delegate_;
  std::shared_ptr<CompletionGroup> completion_;
};

}  // namespace platform
