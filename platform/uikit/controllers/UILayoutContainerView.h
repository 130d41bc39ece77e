#pragma once

#include <functional>

#include "platform/uikit/views/UIView.h"

namespace platform {

/// The root view of the platform's own containers: its owner lays it out, and it swallows touches while the owner moves
/// things. Main thread.
class UILayoutContainerView : public Object<UILayoutContainerView, UIView> {
 public:
  /// Called when it lays out its subviews. Captures its owner weakly.
  void setLayout(std::function<void()> layout) { layout_ = std::move(layout); }
  void setBlocksTouches(bool blocks) { blocksTouches_ = blocks; }

  void layoutSubviews() override {
    Super::layoutSubviews();
    if (layout_) layout_();
  }
  Ref<UIView> hitTest(CGPoint point, const Ref<UIEvent>& event) override {
    const Ref<UIView> hit = Super::hitTest(point, event);
    return hit && blocksTouches_ ? self() : hit;
  }

 private:
  std::function<void()> layout_;
  bool blocksTouches_ = false;
};

}  // namespace platform
