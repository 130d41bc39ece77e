#pragma once

#include <vector>

#include "platform/geometry/CGGeometry.h"
#include "platform/uikit/touch/UIResponder.h"

namespace platform {

/// A piece of the screen, as touches and recognisers know it: it lies in another one, the outermost of them being a
/// window. UIView is the only kind; where this room says surface, callers hand it their views. Main thread.
class TouchSurface : public UIResponder {
 public:
  /// The innermost surface that takes a touch at this point of its own coordinates, or none.
  virtual Ref<TouchSurface> surfaceAt(CGPoint point, const Ref<UIEvent>& event) = 0;
  /// The one that it lies in, or none.
  virtual Ref<TouchSurface> surfaceAround() const = 0;
  /// From the coordinates of a window, or of its own outermost surface for none.
  virtual CGPoint pointFromWindow(CGPoint point, const TouchSurface* window) const = 0;
  /// To the coordinates of its outermost surface.
  virtual CGPoint pointToWindow(CGPoint point) const = 0;

  virtual const std::vector<Ref<UIGestureRecognizer>>& gestureRecognizers() const = 0;
  virtual bool gestureRecognizerShouldBegin(const Ref<UIGestureRecognizer>& recognizer) = 0;
  virtual bool isMultipleTouchEnabled() const = 0;
};

}  // namespace platform
