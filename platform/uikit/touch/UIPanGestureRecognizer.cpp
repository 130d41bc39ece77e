#include "platform/uikit/touch/UIPanGestureRecognizer.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

/// Points that the fingers move before it counts as a pan.
constexpr double hysteresis = 10;
/// Seconds of movement that the velocity is taken from.
constexpr double velocityWindow = 0.1;

bool isOver(const Ref<UITouch>& touch) {
  return touch->phase() == UITouchPhase::ended || touch->phase() == UITouchPhase::cancelled;
}

/// A distance in window coordinates as the view measures it.
CGPoint distanceInView(CGPoint distance, const TouchSurface* view) {
  if (!view) return distance;
  const CGPoint origin = view->pointFromWindow({0, 0}, nullptr);
  const CGPoint end = view->pointFromWindow(distance, nullptr);
  return {end.x - origin.x, end.y - origin.y};
}

}  // namespace

CGPoint UIPanGestureRecognizer::translationInView(const TouchSurface* view) const {
  return distanceInView({current_.x - start_.x, current_.y - start_.y}, view);
}

void UIPanGestureRecognizer::setTranslation(CGPoint translation, const TouchSurface* view) {
  if (view) {
    const CGPoint origin = view->pointToWindow({0, 0});
    const CGPoint end = view->pointToWindow(translation);
    translation = {end.x - origin.x, end.y - origin.y};
  }
  start_ = {current_.x - translation.x, current_.y - translation.y};
}

CGPoint UIPanGestureRecognizer::velocityInView(const TouchSurface* view) const {
  if (samples_.size() < 2) return {};
  const Sample& first = samples_.front();
  const Sample& last = samples_.back();
  const double seconds = last.time - first.time;
  if (seconds <= 0) return {};
  return distanceInView(
      {(last.location.x - first.location.x) / seconds, (last.location.y - first.location.y) / seconds}, view);
}

// ---- Touches

CGPoint UIPanGestureRecognizer::middle() const {
  CGPoint sum{};
  double fingers = 0;
  for (const Ref<UITouch>& touch : touches()) {
    if (isOver(touch)) continue;
    const CGPoint location = touch->locationInView(nullptr);
    sum.x += location.x;
    sum.y += location.y;
    ++fingers;
  }
  return fingers > 0 ? CGPoint{sum.x / fingers, sum.y / fingers} : lastSeen_;
}

void UIPanGestureRecognizer::follow(double time) {
  const CGPoint now = middle();
  current_.x += now.x - lastSeen_.x;
  current_.y += now.y - lastSeen_.y;
  lastSeen_ = now;
  samples_.push_back({time, current_});
  while (samples_.front().time < time - velocityWindow) samples_.pop_front();
}

void UIPanGestureRecognizer::touchesBegan(const UITouches& began, const Ref<UIEvent>&) {
  lastSeen_ = middle();
  if (numberOfTouches() == 1) {
    start_ = current_ = lastSeen_;
    samples_.assign(1, {began.front()->timestamp(), current_});
  }
  if (state() == UIGestureRecognizerState::possible && numberOfTouches() > maximumTouches_) {
    setState(UIGestureRecognizerState::failed);
  }
}

void UIPanGestureRecognizer::touchesMoved(const UITouches& moved, const Ref<UIEvent>&) {
  follow(moved.front()->timestamp());
  if (state() != UIGestureRecognizerState::possible) {
    setState(UIGestureRecognizerState::changed);
  } else if (!wantsToBegin_ && numberOfTouches() >= minimumTouches_ &&
             std::hypot(current_.x - start_.x, current_.y - start_.y) >= hysteresis) {
    wantsToBegin_ = true;
    start_ = current_;
    setState(UIGestureRecognizerState::began);
  }
}

void UIPanGestureRecognizer::touchesEnded(const UITouches& ended, const Ref<UIEvent>& event) {
  const double time = ended.front()->timestamp();
  const auto fingers = std::count_if(touches().begin(), touches().end(), [](const auto& one) { return !isOver(one); });
  const bool isUnderWay = state() != UIGestureRecognizerState::possible;
  if (fingers > 0 && !(isUnderWay && fingers < minimumTouches_)) {
    lastSeen_ = middle();
    return;
  }
  // A finger that stood still before it lifted leaves without speed.
  while (!samples_.empty() && samples_.front().time < time - velocityWindow) samples_.pop_front();
  if (fingers > 0) return setState(UIGestureRecognizerState::ended);
  UIGestureRecognizer::touchesEnded(ended, event);
}

void UIPanGestureRecognizer::reset() {
  samples_.clear();
  wantsToBegin_ = false;
}

}  // namespace platform
