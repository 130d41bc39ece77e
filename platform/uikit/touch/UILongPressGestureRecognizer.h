#pragma once

#include "platform/uikit/touch/UIGestureRecognizer.h"

namespace platform {

/// A finger that rests. Continuous: began when it has rested long enough, then changed as it moves, ended when it
/// lifts.
class UILongPressGestureRecognizer : public Object<UILongPressGestureRecognizer, UIGestureRecognizer> {
 public:
  /// Seconds.
  double minimumPressDuration() const { return minimumDuration_; }
  void setMinimumPressDuration(double seconds) { minimumDuration_ = seconds; }
  /// Points that the finger may stray before it has rested long enough.
  double allowableMovement() const { return allowableMovement_; }
  void setAllowableMovement(double points) { allowableMovement_ = points; }
  std::int64_t numberOfTouchesRequired() const { return touchesRequired_; }
  void setNumberOfTouchesRequired(std::int64_t touches) { touchesRequired_ = touches; }

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void reset() override;

 private:
  double minimumDuration_ = 0.5;
  double allowableMovement_ = 10;
  std::int64_t touchesRequired_ = 1;
  CGPoint start_;
  std::uint64_t press_ = 0;
};

}  // namespace platform
