#include "platform/uikit/touch/UISwipeGestureRecognizer.h"

#include <cmath>

namespace platform {

namespace {

constexpr double shortestSwipe = 50;
constexpr double longestSwipe = 0.5;
/// How many times longer than wide.
constexpr double straightness = 2;

using Direction = UISwipeGestureRecognizerDirection;

/// The direction of a movement, or none when it is not straight enough.
unsigned directionOf(double dx, double dy) {
  if (std::abs(dx) >= straightness * std::abs(dy)) return dx > 0 ? Direction::right : Direction::left;
  if (std::abs(dy) >= straightness * std::abs(dx)) return dy > 0 ? Direction::down : Direction::up;
  return 0;
}

}  // namespace

void UISwipeGestureRecognizer::touchesBegan(const UITouches& began, const Ref<UIEvent>&) {
  if (numberOfTouches() > touchesRequired_) setState(UIGestureRecognizerState::failed);
  start_ = locationInView(nullptr);
  startTime_ = began.front()->timestamp();
}

void UISwipeGestureRecognizer::touchesMoved(const UITouches& moved, const Ref<UIEvent>&) {
  const CGPoint now = locationInView(nullptr);
  const double dx = now.x - start_.x;
  const double dy = now.y - start_.y;
  if (moved.front()->timestamp() - startTime_ > longestSwipe) {
    setState(UIGestureRecognizerState::failed);
  } else if (std::hypot(dx, dy) >= shortestSwipe && numberOfTouches() == touchesRequired_) {
    const bool isOurs = (directionOf(dx, dy) & direction_) != 0;
    setState(isOurs ? UIGestureRecognizerState::ended : UIGestureRecognizerState::failed);
  }
}

void UISwipeGestureRecognizer::touchesEnded(const UITouches& ended, const Ref<UIEvent>& event) {
  touchesMoved(ended, event);
  UIGestureRecognizer::touchesEnded(ended, event);
}

}  // namespace platform
