#pragma once

#include "platform/uikit/touch/UIGestureRecognizer.h"

namespace platform {

/// One or more quick taps with one or more fingers. Discrete.
class UITapGestureRecognizer : public Object<UITapGestureRecognizer, UIGestureRecognizer> {
 public:
  std::int64_t numberOfTapsRequired() const { return tapsRequired_; }
  void setNumberOfTapsRequired(std::int64_t taps) { tapsRequired_ = taps; }
  std::int64_t numberOfTouchesRequired() const { return touchesRequired_; }
  void setNumberOfTouchesRequired(std::int64_t touches) { touchesRequired_ = touches; }

  void touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesMoved(const UITouches& touches, const Ref<UIEvent>& event) override;
  void touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) override;
  void reset() override;
  /// A tap does not prevent a recogniser that waits for more taps.
  bool canPreventGestureRecognizer(const Ref<UIGestureRecognizer>& other) override;

 private:
  void failUnlessProgressWithin(double seconds);
  std::int64_t tapsRequired_ = 1;
  std::int64_t touchesRequired_ = 1;
  std::int64_t taps_ = 0;
  std::size_t mostTouches_ = 0;
  std::vector<CGPoint> starts_;  // of the fingers that are down, in the order of touches(); window coordinates
  CGPoint firstTap_;
  std::uint64_t progress_ = 0;  // grows with every finger down or up; a timer of an older value is stale
};

}  // namespace platform
