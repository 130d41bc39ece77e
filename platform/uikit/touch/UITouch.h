#pragma once

#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/touch/TouchSurface.h"

namespace platform {

enum class UITouchPhase { began, moved, stationary, ended, cancelled };

/// One finger on the screen, from its beginning to its end. Main thread.
class UITouch : public Object<UITouch, NSObject> {
 public:
  UITouchPhase phase() const { return phase_; }
  /// Seconds on the clock's media time.
  double timestamp() const { return timestamp_; }
  std::int64_t tapCount() const { return tapCount_; }
  Ref<UIView> view() const;      // with the views
  Ref<UIWindow> window() const;  // with the windows
  /// The recognisers that watch it.
  std::vector<Ref<UIGestureRecognizer>> gestureRecognizers() const;
  /// In points, in the view's own coordinates; in the window's for none.
  CGPoint locationInView(const TouchSurface* view) const;
  CGPoint previousLocationInView(const TouchSurface* view) const;

 private:
  friend class GestureEnvironment;
  friend class TouchDispatcher;
  UITouchPhase phase_ = UITouchPhase::began;
  double timestamp_ = 0;
  std::int64_t tapCount_ = 1;
  CGPoint location_;
  CGPoint previousLocation_;
  Weak<TouchSurface> view_;
  Weak<TouchSurface> window_;
  std::vector<Weak<UIGestureRecognizer>> recognizers_;
};

/// The touches that changed at one instant.
class UIEvent : public Object<UIEvent, NSObject> {
 public:
  double timestamp = 0;
  UITouches allTouches;
};

}  // namespace platform
