#include "platform/engine/qt/QtCanvas.h"

#include <QLinearGradient>
#include <cmath>

#include "platform/engine/qt/QtConversions.h"
#include "platform/engine/qt/QtTextLayout.h"

namespace platform {

namespace {

/// Pixels. Far beyond any screen.
constexpr double largestSide = 16384;

}  // namespace

QtCanvas::QtCanvas(Bitmap& bitmap, QtBitmaps& bitmaps, QtShadows& shadows)
    : image_(toQt(bitmap)), painter_(&image_), bitmaps_(bitmaps), shadows_(shadows) {
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
}

void QtCanvas::concat(const CGAffineTransform& transform) { painter_.setWorldTransform(toQt(transform), true); }

void QtCanvas::setTransform(const CGAffineTransform& transform) { painter_.setWorldTransform(toQt(transform)); }

void QtCanvas::clip(const CGRect& rect) { painter_.setClipRect(toQt(rect), Qt::IntersectClip); }

void QtCanvas::clip(const CGPath& path, bool evenOdd) { painter_.setClipPath(toQt(path, evenOdd), Qt::IntersectClip); }

void QtCanvas::fill(const CGRect& rect, const UIColor& color) { painter_.fillRect(toQt(rect), toQt(color)); }

void QtCanvas::fill(const CGPath& path, const UIColor& color, bool evenOdd) {
  painter_.fillPath(toQt(path, evenOdd), toQt(color));
}

void QtCanvas::stroke(const CGPath& path, const CGStrokeStyle& style, const UIColor& color) {
  // A pen of no width would draw a hair line instead of nothing.
  if (style.width > 0) painter_.strokePath(toQt(path, false), toQt(style, color));
}

void QtCanvas::shadow(const CGPath& path, CGSize offset, double blur, const UIColor& color) {
  const QTransform transform = painter_.worldTransform();
  const double scale = std::sqrt(std::abs(transform.determinant()));
  const QPainterPath pixels = transform.map(toQt(path, false).translated(offset.width, offset.height));
  const QtShadows::Shadow shadow = shadows_.shadow(pixels, std::max(0.0, blur) / 2 * scale, toQt(color));
  if (!shadow.image.isNull()) drawPixels(shadow.image, shadow.origin, 1);
}

void QtCanvas::gradient(const CGGradient& gradient, CGPoint start, CGPoint end, double alpha) {
  QLinearGradient fill(toQt(start), toQt(end));
  const std::size_t count = gradient.colors.size();
  const bool isPlaced = gradient.locations.size() == count;
  QGradientStops stops;
  for (std::size_t i = 0; i < count; ++i) {
    const double even = count > 1 ? static_cast<double>(i) / static_cast<double>(count - 1) : 0;
    const double at = isPlaced ? gradient.locations[i] : even;
    stops.append({std::isfinite(at) ? std::clamp(at, 0.0, 1.0) : even, toQt(gradient.colors[i])});
  }
  fill.setStops(stops);
  painter_.save();
  painter_.setOpacity(alpha);
  painter_.fillRect(everywhere(), fill);
  painter_.restore();
}

void QtCanvas::bitmap(const CGImageRef& bitmap, const CGRect& rect, double alpha) {
  const QTransform transform = painter_.worldTransform();
  const QImage image = toQt(*bitmap);
  if (transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0) {
    const QRectF pixels = transform.mapRect(toQt(rect));
    if (!(pixels.width() < largestSide && pixels.height() < largestSide)) return enlarged(image, toQt(rect), alpha);
    const QSize size(static_cast<int>(std::lround(pixels.width())), static_cast<int>(std::lround(pixels.height())));
    const QPoint at(static_cast<int>(std::lround(pixels.left())), static_cast<int>(std::lround(pixels.top())));
    if (size == image.size()) return drawPixels(image, at, alpha);
    const bool isMuchSmaller = size.width() * 4 < image.width() * 3 && size.height() * 4 < image.height() * 3;
    if (isMuchSmaller && !size.isEmpty()) return drawPixels(bitmaps_.shrunk(bitmap, size), at, alpha);
  }
  painter_.save();
  painter_.setOpacity(alpha);
  painter_.drawImage(toQt(rect), image);
  painter_.restore();
}

/// A picture blown up beyond any screen: only what shows of it is drawn, so that its size costs nothing.
void QtCanvas::enlarged(const QImage& image, const QRectF& rect, double alpha) {
  const QRectF shown = everywhere().intersected(rect);
  if (shown.isEmpty()) return;
  const double x = image.width() / rect.width(), y = image.height() / rect.height();
  const QRectF part((shown.left() - rect.left()) * x, (shown.top() - rect.top()) * y, shown.width() * x,
                    shown.height() * y);
  painter_.save();
  painter_.setOpacity(alpha);
  painter_.drawImage(shown, image, part);
  painter_.restore();
}

/// What can be painted on, in the current coordinates.
QRectF QtCanvas::everywhere() const {
  const QRectF whole = painter_.worldTransform().inverted().mapRect(QRectF(image_.rect()));
  return painter_.hasClipping() ? whole.intersected(painter_.clipBoundingRect()) : whole;
}

void QtCanvas::drawPixels(const QImage& image, QPoint at, double alpha) {
  const QTransform transform = painter_.worldTransform();
  painter_.setWorldTransform({});
  painter_.setOpacity(alpha);
  painter_.drawImage(at, image);
  painter_.setOpacity(1);
  painter_.setWorldTransform(transform);
}

void QtCanvas::text(const std::shared_ptr<const TextLayout>& layout, CGPoint origin, const UIColor& color) {
  painter_.setPen(toQt(color));
  static_cast<const QtTextLayout&>(*layout).draw(painter_, toQt(origin));
}

void QtCanvas::clear(const CGRect& rect) {
  painter_.setCompositionMode(QPainter::CompositionMode_Clear);
  painter_.fillRect(toQt(rect), Qt::transparent);
  painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void QtCanvas::composite(const Bitmap& bitmap, int x, int y, double alpha, Composite mode) {
  if (bitmap.isEmpty()) return;
  if (mode == Composite::mask) painter_.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  drawPixels(toQt(bitmap), {x, y}, alpha);
  painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

}  // namespace platform
