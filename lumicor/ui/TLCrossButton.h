#pragma once

#include "platform/uikit/controls/UIButton.h"

namespace lumicor {

using namespace platform;

/// A button that is smaller than a finger: touches count up to seven points around it, 44 by 44 for one of 30. As long
/// as it has no image it draws a cross of its own. Main thread.
class TLCrossButton final : public Object<TLCrossButton, UIButton> {
 public:
  static constexpr double touchMargin = 7;
  bool pointInside(CGPoint point, const Ref<UIEvent>&) const override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
};

}  // namespace lumicor
