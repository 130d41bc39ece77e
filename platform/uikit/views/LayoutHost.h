#pragma once

#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/Forward.h"

namespace platform {

/// Who lays views out, as views know it: told of what happens to them. The layout pass is the only one. Main thread.
class LayoutHost {
 public:
  static LayoutHost& shared();

  /// After bounds or position of the layer changed, by whomever.
  virtual void didChangeGeometry(UIView& view, CGSize oldSize) = 0;
  /// Before the view is unlinked from its superview, which is still set.
  virtual void willLeaveSuperview(UIView& view) = 0;
  /// After the view was linked below its superview.
  virtual void didEnterSuperview(UIView& view) = 0;
  virtual void didChangeSafeArea(UIView& view) = 0;

 protected:
  ~LayoutHost() = default;
};

}  // namespace platform
