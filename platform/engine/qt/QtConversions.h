#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGPath.h"
#include "platform/geometry/UIColor.h"

namespace platform {

// The platform's values as Qt's.

QColor toQt(const UIColor& color);
QPainterPath toQt(const CGPath& path, bool evenOdd);
QPen toQt(const CGStrokeStyle& style, const UIColor& color);
inline QRectF toQt(const CGRect& r) { return {r.minX(), r.minY(), r.width(), r.height()}; }
inline QPointF toQt(CGPoint p) { return {p.x, p.y}; }
inline QTransform toQt(const CGAffineTransform& t) { return {t.a, t.b, t.c, t.d, t.tx, t.ty}; }
/// Views of the same memory; the bitmap must stay.
QImage toQt(Bitmap& bitmap);
QImage toQt(const Bitmap& bitmap);
/// A copy of the pixels, in the platform's format.
Bitmap fromQt(const QImage& image);

}  // namespace platform
