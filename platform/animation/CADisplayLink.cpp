#include "platform/animation/CADisplayLink.h"

#include <algorithm>

#include "platform/animation/FrameClock.h"
#include "platform/dispatch/Clock.h"

namespace platform {

void CADisplayLink::init(const Ref<NSObject>& target, SEL action) {
  target_ = target;
  action_ = action;
}

CADisplayLink::~CADisplayLink() { FrameClock::shared().removeObserver(observer_); }

void CADisplayLink::addToRunLoop() {
  if (observer_ != 0) return;
  observer_ = FrameClock::shared().addObserver(FrameClock::Phase::update,
                                               [link = self()](double mediaTime) { link->frame(mediaTime); });
  timestamp_ = Clock::mediaTime();
  if (!paused_) FrameClock::shared().setNeedsFrame();
}

void CADisplayLink::invalidate() {
  FrameClock::shared().removeObserver(observer_);
  observer_ = 0;
}

void CADisplayLink::setPaused(bool paused) {
  paused_ = paused;
  if (!paused && observer_ != 0) FrameClock::shared().setNeedsFrame();
}

double CADisplayLink::targetTimestamp() const { return timestamp_ + FrameClock::frameDuration; }

void CADisplayLink::frame(double mediaTime) {
  if (paused_) return;
  const Ref<CADisplayLink> keeper = self();
  const Ref<NSObject> target = target_.lock();
  if (!target) return invalidate();
  timestamp_ = mediaTime;
  const std::string& name = action_.name();
  if (std::count(name.begin(), name.end(), ':') == 0) {
    target->perform(action_);
  } else {
    target->perform(action_, keeper);
  }
  if (observer_ != 0 && !paused_) FrameClock::shared().setNeedsFrame();
}

}  // namespace platform
