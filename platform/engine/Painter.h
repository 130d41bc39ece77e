#pragma once

#include <memory>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGradient.h"
#include "platform/geometry/CGPath.h"
#include "platform/geometry/UIColor.h"

namespace platform {

class TextLayout;

/// Strokes of the brush, as the engine offers them: CGContext and the layer compositor draw through it. A transform and
/// a clip are its only state. Edges are antialiased. Points under the transform; y grows downwards. Main thread.
class Painter {
 public:
  Painter() = default;
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;
  virtual ~Painter() = default;

  virtual void save() = 0;
  /// Goes with a save; one too many is a programming error.
  virtual void restore() = 0;
  /// The new transform comes before the one in force.
  virtual void concat(const CGAffineTransform& transform) = 0;
  virtual void clip(const CGRect& rect) = 0;
  virtual void clip(const CGPath& path, bool evenOdd) = 0;

  virtual void fill(const CGRect& rect, const UIColor& color) = 0;
  virtual void fill(const CGPath& path, const UIColor& color, bool evenOdd) = 0;
  virtual void stroke(const CGPath& path, const CGStrokeStyle& style, const UIColor& color) = 0;
  /// The blurred shape of a filled path, moved by the offset; `blur` is the radius over which an edge fades. Blurred
  /// shapes are remembered, so that drawing one again is a copy.
  virtual void shadow(const CGPath& path, CGSize offset, double blur, const UIColor& color) = 0;
  /// Over the clip.
  virtual void gradient(const CGGradient& gradient, CGPoint start, CGPoint end, double alpha) = 0;
  /// Stretched to the rectangle.
  virtual void bitmap(const CGImageRef& bitmap, const CGRect& rect, double alpha) = 0;
  virtual void text(const std::shared_ptr<const TextLayout>& layout, CGPoint origin, const UIColor& color) = 0;
  virtual void clear(const CGRect& rect) = 0;
};

/// A painter onto the pixels of a bitmap that it borrows for its life.
class Canvas : public Painter {
 public:
  /// How two bitmaps are put together pixel by pixel.
  enum class Composite {
    over,  ///< the usual way
    mask   ///< what is there stays only where the new one is opaque
  };
  /// Takes the place of the transform in force.
  virtual void setTransform(const CGAffineTransform& transform) = 0;
  /// Pixel to pixel at (x, y) of the canvas, whatever the transform; the clip holds. What the other bitmap does not
  /// reach stays as it is.
  virtual void composite(const Bitmap& bitmap, int x, int y, double alpha, Composite mode) = 0;
};

}  // namespace platform
