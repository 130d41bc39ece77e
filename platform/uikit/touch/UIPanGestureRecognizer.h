#pragma once

#include <deque>

#include "platform/uikit/touch/UIGestureRecognizer.h"

namespace platform {

/// Fingers that drag. Continuous: began once they have moved 10 points, ended when the last one lifts.
class UIPanGestureRecognizer : public Object<UIPanGestureRecognizer, UIGestureRecognizer> {
 public:
  std::int64_t minimumNumberOfTouches() const { return minimumTouches_; }
  void setMinimumNumberOfTouches(std::int64_t touches) { minimumTouches_ = touches; }
  std::int64_t maximumNumberOfTouches() const { return maximumTouches_; }
  void setMaximumNumberOfTouches(std::int64_t touches) { maximumTouches_ = touches; }

  /// How far the fingers have come since the pan began (so it starts at zero), in the view's coordinates (the window's
  /// for none).
  CGPoint translationInView(const TouchSurface* view) const;
  void setTranslation(CGPoint translation, const TouchSurface* view);
  /// Points a second over the last tenth of a second.
  CGPoint velocityInView(const TouchSurface* view) const;

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void reset() override;

 private:
  struct Sample {
    double time;
    CGPoint location;
  };
  void follow(double time);
  CGPoint middle() const;
  std::int64_t minimumTouches_ = 1;
  std::int64_t maximumTouches_ = INT64_MAX;
  CGPoint start_;     // window coordinates, where the movement is measured from
  CGPoint current_;   // the middle of the fingers, freed of the jumps when one comes or goes
  CGPoint lastSeen_;  // the middle as it was at the last event
  std::deque<Sample> samples_;
  bool wantsToBegin_ = false;
};

}  // namespace platform
