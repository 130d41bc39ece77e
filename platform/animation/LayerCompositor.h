#pragma once

#include "platform/engine/Painter.h"
#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"

namespace platform {

class CALayer;

/// Paints a layer tree as it shows at one instant. Plain layers go straight onto the canvas; a layer that is
/// see-through as a whole, or masked, is painted apart and put on the canvas as one picture. What lies outside the clip
/// is skipped. Main thread.
class LayerCompositor {
 public:
  explicit LayerCompositor(double mediaTime) : mediaTime_(mediaTime) {}

  /// Layers nested deeper than anybody builds a screen are not painted: painting goes down by calls.
  static constexpr int deepestLevel = 500;

  /// The layer without its own position and transform: `toPixels` takes its coordinates to the canvas. `clip` in pixels
  /// of the canvas; the caller has clipped the canvas to it.
  void paintRoot(Canvas& canvas, const CALayer& root, const CGAffineTransform& toPixels, const CGRect& clip);

  /// Where a layer's coordinates are on the canvas. Layers that rest begin on whole pixels, so that edges and letters
  /// are sharp.
  static CGAffineTransform place(const CALayer& shown, const CGAffineTransform& parentToPixels, bool isMoving);
  /// What a layer itself may paint, its shadow included, in pixels.
  static CGRect ownArea(const CALayer& shown, const CGAffineTransform& toPixels);
  /// Where a layer and all below it may paint, in pixels.
  CGRect areaOf(const CALayer& layer, const CGAffineTransform& parentToPixels, bool isMoving) const;

 private:
  /// A layer, its values at this instant, and where it is.
  struct Placed {
    const CALayer& model;
    const CALayer& shown;
    CGAffineTransform toPixels;
    bool isMoving;
  };
  void paint(Canvas& canvas, const CALayer& layer, const CGAffineTransform& parentToPixels, bool isMoving,
             const CGRect& clip);
  void paintPlaced(Canvas& canvas, const Placed& layer, const CGRect& clip);
  void paintGroup(Canvas& canvas, const Placed& layer, const CGRect& clip);
  void paintParts(Canvas& canvas, const Placed& layer, const CGRect& clip, double opacity);
  void paintInside(Canvas& canvas, const Placed& layer, const CGRect& clip);
  void paintShadow(Canvas& canvas, const Placed& layer, const CGRect& clip);
  void paintShadowOfContents(Canvas& canvas, const Placed& layer, const CGRect& clip);
  static void paintBorder(Canvas& canvas, const CALayer& shown);
  /// True when the clip reaches into a round corner.
  static bool touchesCorners(const Placed& layer, const CGRect& clip);
  CGRect treeArea(const Placed& layer) const;

  double mediaTime_;
  mutable int depth_ = 0;
};

}  // namespace platform
