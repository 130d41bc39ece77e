#pragma once

#include "platform/uikit/touch/UIGestureRecognizer.h"

namespace platform {

/// The ways a swipe can go; flags.
struct UISwipeGestureRecognizerDirection {
  static constexpr unsigned right = 1;
  static constexpr unsigned left = 2;
  static constexpr unsigned up = 4;
  static constexpr unsigned down = 8;
};

/// A quick straight movement: 50 points within half a second. Discrete.
class UISwipeGestureRecognizer : public Object<UISwipeGestureRecognizer, UIGestureRecognizer> {
 public:
  unsigned direction() const { return direction_; }
  void setDirection(unsigned direction) { direction_ = direction; }
  std::int64_t numberOfTouchesRequired() const { return touchesRequired_; }
  void setNumberOfTouchesRequired(std::int64_t touches) { touchesRequired_ = touches; }

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;

 private:
  unsigned direction_ = UISwipeGestureRecognizerDirection::right;
  std::int64_t touchesRequired_ = 1;
  CGPoint start_;
  double startTime_ = 0;
};

}  // namespace platform
