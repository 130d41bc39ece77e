#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/uikit/touch/UITouch.h"

namespace platform {

/// Turns raw fingers into UITouch objects and hands them first to the gesture recognisers around the view they hit,
/// then to that view, unless a recogniser holds them back or takes them away. One for the process. Main thread.
class TouchDispatcher {
 public:
  static TouchDispatcher& shared();

  /// One finger at one instant, in the window's coordinates. A finger that began while interaction was ignored, or that
  /// hit nothing, stays unknown.
  void deliver(const Ref<TouchSurface>& window, std::int64_t identifier, UITouchPhase phase, CGPoint location,
               double timestamp);
  /// Views hear no more of these touches, only that they are cancelled.
  void silence(const UITouches& touches);
  /// Gives views what was held back for them and is free now.
  void flush();
  /// The view is no longer in the window in which it was touched, or the window is closed.
  void viewLeftWindow(const TouchSurface& view);
  /// All touches of the window, at its end or when it is hidden.
  void windowClosed(const TouchSurface& window);

 private:
  struct Step {
    UITouchPhase phase;
    CGPoint location;
    CGPoint previous;
    double timestamp;
  };
  /// One finger from the first contact until its view has heard of its end.
  struct Track {
    std::int64_t identifier;
    const TouchSurface* window;
    Ref<UITouch> touch;
    Ref<TouchSurface> view;
    std::vector<Ref<UIGestureRecognizer>> recognizers;
    std::deque<Step> held;  ///< what the view has not heard yet
    bool viewKnows = false;
    bool silenced = false;
    bool lifted = false;
    bool strayed = false;  ///< too far from where it began for a tap
    CGPoint began;
  };
  struct LastTap {
    const TouchSurface* window = nullptr;
    CGPoint location;
    double timestamp = -1;
    std::int64_t count = 0;
  };

  std::shared_ptr<Track> find(const TouchSurface& window, std::int64_t identifier) const;
  std::shared_ptr<Track> begin(const Ref<TouchSurface>& window, std::int64_t identifier, CGPoint location,
                               double timestamp);
  void watch(Track& track);
  void advance(const std::shared_ptr<Track>& track, UITouchPhase phase, CGPoint location, double timestamp);
  bool mustHold(const Track& track, UITouchPhase phase) const;
  void tell(Track& track, const Step& step);
  void cancel(const std::shared_ptr<Track>& track);
  Ref<UIEvent> makeEvent(double timestamp) const;
  std::int64_t tapCountAt(const TouchSurface& window, CGPoint location, double timestamp) const;

  std::vector<std::shared_ptr<Track>> tracks_;
  LastTap lastTap_;
};

}  // namespace platform
