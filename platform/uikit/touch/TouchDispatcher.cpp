#include "platform/uikit/touch/TouchDispatcher.h"

#include <algorithm>
#include <cmath>

#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/touch/ApplicationHost.h"
#include "platform/uikit/touch/GestureEnvironment.h"

namespace platform {

namespace {

/// Two contacts belong to one double tap when the second follows within this time and this near.
constexpr double tapInterval = 0.35;
constexpr double tapDistance = 45;
/// Points that a finger may move and still tap.
constexpr double tapSlop = 10;

bool isOver(UITouchPhase phase) { return phase == UITouchPhase::ended || phase == UITouchPhase::cancelled; }

}  // namespace

TouchDispatcher& TouchDispatcher::shared() {
  static TouchDispatcher* const dispatcher = new TouchDispatcher;
  return *dispatcher;
}

// ---- Fingers in

void TouchDispatcher::deliver(const Ref<TouchSurface>& window, std::int64_t identifier, UITouchPhase phase,
                              CGPoint location, double timestamp) {
  const bool ignored = ApplicationHost::shared().isIgnoringInteractionEvents();
  std::shared_ptr<Track> track = find(*window, identifier);
  if (phase == UITouchPhase::began) {
    if (track) advance(track, UITouchPhase::cancelled, track->touch->location_, timestamp);  // its end was lost
    if (ignored) return;
    track = begin(window, identifier, location, timestamp);
  }
  if (!track) return;
  if (ignored) {
    if (!isOver(phase)) return;
    phase = UITouchPhase::cancelled;  // nobody may hear of an action, yet nobody may wait for ever
  }
  advance(track, phase, location, timestamp);
}

std::shared_ptr<TouchDispatcher::Track> TouchDispatcher::find(const TouchSurface& window,
                                                              std::int64_t identifier) const {
  for (const auto& track : tracks_) {
    if (track->window == &window && track->identifier == identifier && !track->lifted) return track;
  }
  return nullptr;
}

std::shared_ptr<TouchDispatcher::Track> TouchDispatcher::begin(const Ref<TouchSurface>& window, std::int64_t identifier,
                                                               CGPoint location, double timestamp) {
  const Ref<TouchSurface> view = window->surfaceAt(location, makeEvent(timestamp));
  if (!view) return nullptr;
  auto track = std::make_shared<Track>();
  track->identifier = identifier;
  track->window = window.get();
  track->view = view;
  track->touch = make<UITouch>();
  track->touch->view_ = view;
  track->touch->window_ = window;
  track->touch->location_ = location;
  track->began = location;
  track->touch->tapCount_ = tapCountAt(*window, location, timestamp);
  track->silenced = !view->isMultipleTouchEnabled() &&
                    std::any_of(tracks_.begin(), tracks_.end(),
                                [&](const auto& other) { return other->view == view && !other->lifted; });
  tracks_.push_back(track);
  watch(*track);
  return track;
}

/// Collects the recognisers that want the touch: those of the view first, then its superviews'.
void TouchDispatcher::watch(Track& track) {
  static const SEL shouldReceive = sel("gestureRecognizer:shouldReceiveTouch:");
  for (Ref<TouchSurface> view = track.view; view; view = view->surfaceAround()) {
    const auto recognizers = view->gestureRecognizers();
    for (const Ref<UIGestureRecognizer>& recognizer : recognizers) {
      if (!recognizer->isEnabled()) continue;
      if (!askOptional<bool>(recognizer->delegate(), shouldReceive, recognizer, track.touch).value_or(true)) continue;
      track.recognizers.push_back(recognizer);
      track.touch->recognizers_.push_back(recognizer);
    }
  }
}

std::int64_t TouchDispatcher::tapCountAt(const TouchSurface& window, CGPoint location, double timestamp) const {
  const bool follows = lastTap_.window == &window && timestamp - lastTap_.timestamp <= tapInterval &&
                       std::hypot(location.x - lastTap_.location.x, location.y - lastTap_.location.y) <= tapDistance;
  return follows ? lastTap_.count + 1 : 1;
}

void TouchDispatcher::advance(const std::shared_ptr<Track>& track, UITouchPhase phase, CGPoint location,
                              double timestamp) {
  UITouch& touch = *track->touch;
  touch.phase_ = phase;
  touch.timestamp_ = timestamp;
  touch.previousLocation_ = phase == UITouchPhase::began ? location : touch.location_;
  touch.location_ = location;
  track->strayed = track->strayed || std::hypot(location.x - track->began.x, location.y - track->began.y) > tapSlop;
  if (isOver(phase)) {
    track->lifted = true;
    const bool isTap = phase == UITouchPhase::ended && !track->strayed;
    lastTap_ = isTap ? LastTap{track->window, location, timestamp, touch.tapCount_} : LastTap{};
  }

  GestureEnvironment& gestures = GestureEnvironment::shared();
  const Ref<UIEvent> event = makeEvent(timestamp);
  const auto recognizers = track->recognizers;
  for (const Ref<UIGestureRecognizer>& recognizer : recognizers) gestures.send(recognizer, track->touch, event);

  if (!track->held.empty() && phase == UITouchPhase::moved && track->held.back().phase == UITouchPhase::moved) {
    track->held.back().location = location;
    track->held.back().timestamp = timestamp;
  } else {
    track->held.push_back({phase, location, touch.previousLocation_, timestamp});
  }
  gestures.settle();
  flush();
}

Ref<UIEvent> TouchDispatcher::makeEvent(double timestamp) const {
  Ref<UIEvent> event = make<UIEvent>();
  event->timestamp = timestamp;
  for (const auto& track : tracks_) event->allTouches.push_back(track->touch);
  return event;
}

// ---- Out to the views

bool TouchDispatcher::mustHold(const Track& track, UITouchPhase phase) const {
  if (phase == UITouchPhase::cancelled) return false;
  return std::any_of(track.recognizers.begin(), track.recognizers.end(), [&](const auto& recognizer) {
    const bool wants = (!track.viewKnows && recognizer->delaysTouchesBegan()) ||
                       (phase == UITouchPhase::ended && recognizer->delaysTouchesEnded());
    return wants && GestureEnvironment::shared().isUndecided(*recognizer, track.touch);
  });
}

void TouchDispatcher::flush() {
  const auto tracks = tracks_;
  for (const std::shared_ptr<Track>& track : tracks) {
    while (!track->held.empty() && (track->silenced || !mustHold(*track, track->held.front().phase))) {
      const Step step = track->held.front();
      track->held.pop_front();
      if (!track->silenced) tell(*track, step);
    }
    if (track->lifted && track->held.empty()) std::erase(tracks_, track);
  }
}

void TouchDispatcher::tell(Track& track, const Step& step) {
  if (step.phase == UITouchPhase::began) track.viewKnows = true;
  if (!track.viewKnows) return;  // it never heard of the touch, or has been told of its end
  if (isOver(step.phase)) track.viewKnows = false;
  UITouch& touch = *track.touch;
  const Step now{touch.phase_, touch.location_, touch.previousLocation_, touch.timestamp_};
  const auto show = [&](const Step& shown) {
    touch.phase_ = shown.phase;
    touch.location_ = shown.location;
    touch.previousLocation_ = shown.previous;
    touch.timestamp_ = shown.timestamp;
  };
  show(step);
  const UITouches touches{track.touch};
  const Ref<UIEvent> event = makeEvent(step.timestamp);
  const Ref<TouchSurface> view = track.view;
  switch (step.phase) {
    case UITouchPhase::began:
      view->touchesBegan(touches, event);
      break;
    case UITouchPhase::ended:
      view->touchesEnded(touches, event);
      break;
    case UITouchPhase::cancelled:
      view->touchesCancelled(touches, event);
      break;
    default:
      view->touchesMoved(touches, event);
  }
  show(now);
}

// ---- Cancelling

void TouchDispatcher::cancel(const std::shared_ptr<Track>& track) {
  if (std::exchange(track->silenced, true)) return;
  track->held.clear();
  const UITouch& touch = *track->touch;
  tell(*track, {UITouchPhase::cancelled, touch.location_, touch.previousLocation_, touch.timestamp_});
}

void TouchDispatcher::silence(const UITouches& touches) {
  const auto tracks = tracks_;
  for (const auto& track : tracks) {
    if (std::find(touches.begin(), touches.end(), track->touch) != touches.end()) cancel(track);
  }
}

void TouchDispatcher::viewLeftWindow(const TouchSurface& view) {
  const auto tracks = tracks_;
  for (const auto& track : tracks) {
    if (track->view.get() == &view) cancel(track);
  }
}

void TouchDispatcher::windowClosed(const TouchSurface& window) {
  if (lastTap_.window == &window) lastTap_ = {};
  const auto tracks = tracks_;
  for (const auto& track : tracks) {
    if (track->window != &window) continue;
    if (!track->lifted) advance(track, UITouchPhase::cancelled, track->touch->location_, track->touch->timestamp_);
    cancel(track);
    std::erase(tracks_, track);
  }
}

}  // namespace platform
