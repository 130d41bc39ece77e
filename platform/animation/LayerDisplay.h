#pragma once

#include <cstdint>
#include <vector>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Ref.h"

namespace platform {

class CALayer;

/// Keeps the picture of one layer tree up to date: what changed since the last time is drawn again, the rest stays. A
/// tree with a display asks FrameClock for a frame whenever it changes and as long as something in it moves; calling
/// `update` at each frame is up to the display's owner. Main thread.
class LayerDisplay {
 public:
  /// Shows the root's bounds from the bitmap's top left corner; `size` in points, `scale` in pixels a point. Shares the
  /// root, which can have one display at a time (a second is a fatal programming error).
  LayerDisplay(Ref<CALayer> root, CGSize size, double scale);
  ~LayerDisplay();
  LayerDisplay(const LayerDisplay&) = delete;
  LayerDisplay& operator=(const LayerDisplay&) = delete;

  /// True when `update` would look at the tree.
  bool needsUpdate() const;
  /// Has owners draw what they were asked to, draws, and tells what changed, in pixels; CGRectZero when nothing did.
  CGRect update();
  const Bitmap& bitmap() const { return bitmap_; }
  CGSize sizeInPoints() const { return size_; }
  double scale() const { return scale_; }
  /// What of the bitmap pictures for others leave black (see CaptureBlanking), in pixels, as of the last update. What
  /// is new in it has been told as changed.
  std::vector<CGRect> areasHiddenFromCapture() const;
  /// Everything is drawn anew next time.
  void invalidate();

 private:
  friend class CALayer;
  /// One layer on the way down the tree.
  struct Visit {
    CGAffineTransform parentToPixels;
    CGRect clip;
    bool isParentChanged;
    bool isParentMoving;
    int depth = 0;
  };
  void rootChanged();
  /// Finds where everything is now, and adds to `dirty_` where something was or is that changed.
  void collect(CALayer& layer, const Visit& visit);
  /// True when it shows something else at the next instant without being touched. Remembers it then.
  bool noteMoving(CALayer& layer);
  void noteMask(CALayer& mask);
  CGAffineTransform rootToPixels() const;
  bool rootCovers(const CGRect& pixels) const;

  Ref<CALayer> root_;
  CGSize size_;
  double scale_;
  Bitmap bitmap_;
  CGRect dirty_;
  double mediaTime_ = 0;
  bool everything_ = true;
  bool isUpdating_ = false;
  std::vector<Weak<CALayer>> moving_;
};

}  // namespace platform
