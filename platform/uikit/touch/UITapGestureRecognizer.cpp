#include "platform/uikit/touch/UITapGestureRecognizer.h"

#include <algorithm>
#include <cmath>

#include "platform/dispatch/DispatchQueue.h"

namespace platform {

namespace {

/// A finger that rests longer, or strays further, is no tap; nor is one that returns later or elsewhere a second tap.
constexpr double longestTap = 0.75;
constexpr double longestPause = 0.35;
constexpr double allowableMovement = 10;
constexpr double tapDistance = 45;

double distance(CGPoint a, CGPoint b) { return std::hypot(a.x - b.x, a.y - b.y); }

}  // namespace

void UITapGestureRecognizer::touchesBegan(const UITouches& began, const Ref<UIEvent>&) {
  const CGPoint location = began.front()->locationInView(nullptr);
  if (starts_.empty() && taps_ == 0) firstTap_ = location;
  starts_.push_back(location);
  mostTouches_ = std::max(mostTouches_, starts_.size());
  const bool isElsewhere = starts_.size() == 1 && distance(location, firstTap_) > tapDistance;
  if (isElsewhere || mostTouches_ > static_cast<std::size_t>(touchesRequired_)) {
    setState(UIGestureRecognizerState::failed);
    return;
  }
  failUnlessProgressWithin(longestTap);
}

void UITapGestureRecognizer::touchesMoved(const UITouches& moved, const Ref<UIEvent>&) {
  const auto finger = std::find(touches().begin(), touches().end(), moved.front());
  const auto index = static_cast<std::size_t>(finger - touches().begin());
  if (index < starts_.size() && distance(moved.front()->locationInView(nullptr), starts_[index]) > allowableMovement) {
    setState(UIGestureRecognizerState::failed);
  }
}

void UITapGestureRecognizer::touchesEnded(const UITouches& ended, const Ref<UIEvent>& event) {
  touchesMoved(ended, event);
  if (state() == UIGestureRecognizerState::failed) return;
  const auto finger = std::find(touches().begin(), touches().end(), ended.front());
  starts_.erase(starts_.begin() + (finger - touches().begin()));
  if (!starts_.empty()) return;
  if (mostTouches_ != static_cast<std::size_t>(touchesRequired_)) {
    setState(UIGestureRecognizerState::failed);
    return;
  }
  mostTouches_ = 0;
  ++taps_;
  if (taps_ >= tapsRequired_) {
    ++progress_;
    setState(UIGestureRecognizerState::ended);
  } else {
    failUnlessProgressWithin(longestPause);
  }
}

void UITapGestureRecognizer::reset() {
  taps_ = 0;
  mostTouches_ = 0;
  starts_.clear();
  ++progress_;
}

bool UITapGestureRecognizer::canPreventGestureRecognizer(const Ref<UIGestureRecognizer>& other) {
  const auto tap = as<UITapGestureRecognizer>(other);
  return !tap || tap->tapsRequired_ <= tapsRequired_;
}

void UITapGestureRecognizer::failUnlessProgressWithin(double seconds) {
  DispatchQueue::main().asyncAfter(seconds, [weak = weakSelf(), progress = ++progress_] {
    const Ref<UITapGestureRecognizer> tap = weak.lock();
    if (tap && tap->progress_ == progress) tap->setState(UIGestureRecognizerState::failed);
  });
}

}  // namespace platform
