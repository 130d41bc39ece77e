#pragma once

#include <QImage>
#include <QPainter>

#include "platform/engine/Painter.h"
#include "platform/engine/qt/QtBitmaps.h"
#include "platform/engine/qt/QtShadows.h"

namespace platform {

/// Paints on a bitmap with QPainter. Borrows the bitmap and the engine's caches.
class QtCanvas final : public Canvas {
 public:
  QtCanvas(Bitmap& bitmap, QtBitmaps& bitmaps, QtShadows& shadows);

  void save() override { painter_.save(); }
  void restore() override { painter_.restore(); }
  void concat(const CGAffineTransform& transform) override;
  void clip(const CGRect& rect) override;
  void clip(const CGPath& path, bool evenOdd) override;
  void fill(const CGRect& rect, const UIColor& color) override;
  void fill(const CGPath& path, const UIColor& color, bool evenOdd) override;
  void stroke(const CGPath& path, const CGStrokeStyle& style, const UIColor& color) override;
  void shadow(const CGPath& path, CGSize offset, double blur, const UIColor& color) override;
  void gradient(const CGGradient& gradient, CGPoint start, CGPoint end, double alpha) override;
  void bitmap(const CGImageRef& bitmap, const CGRect& rect, double alpha) override;
  void text(const std::shared_ptr<const TextLayout>& layout, CGPoint origin, const UIColor& color) override;
  void clear(const CGRect& rect) override;
  void setTransform(const CGAffineTransform& transform) override;
  void composite(const Bitmap& bitmap, int x, int y, double alpha, Composite mode) override;

 private:
  /// Draws pixel by pixel, whatever the transform.
  void drawPixels(const QImage& image, QPoint at, double alpha);
  void enlarged(const QImage& image, const QRectF& rect, double alpha);
  QRectF everywhere() const;

  QImage image_;
  QPainter painter_;
  QtBitmaps& bitmaps_;
  QtShadows& shadows_;
};

}  // namespace platform
