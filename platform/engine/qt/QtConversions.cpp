#include "platform/engine/qt/QtConversions.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace platform {

namespace {

float part(double value) { return std::isfinite(value) ? static_cast<float>(std::clamp(value, 0.0, 1.0)) : 0.0f; }

}  // namespace

QColor toQt(const UIColor& color) {
  return QColor::fromRgbF(part(color.red()), part(color.green()), part(color.blue()), part(color.alpha()));
}

QPainterPath toQt(const CGPath& path, bool evenOdd) {
  QPainterPath result;
  result.setFillRule(evenOdd ? Qt::OddEvenFill : Qt::WindingFill);
  for (const CGPath::Element& e : path.elements()) {
    switch (e.kind) {
      case CGPath::Kind::move:
        result.moveTo(toQt(e.points[0]));
        break;
      case CGPath::Kind::line:
        result.lineTo(toQt(e.points[0]));
        break;
      case CGPath::Kind::curve:
        result.cubicTo(toQt(e.points[0]), toQt(e.points[1]), toQt(e.points[2]));
        break;
      case CGPath::Kind::close:
        result.closeSubpath();
        break;
    }
  }
  return result;
}

QPen toQt(const CGStrokeStyle& style, const UIColor& color) {
  QPen pen(toQt(color));
  pen.setWidthF(style.width);
  pen.setCapStyle(style.cap == CGLineCap::round    ? Qt::RoundCap
                  : style.cap == CGLineCap::square ? Qt::SquareCap
                                                   : Qt::FlatCap);
  pen.setJoinStyle(style.join == CGLineJoin::round   ? Qt::RoundJoin
                   : style.join == CGLineJoin::bevel ? Qt::BevelJoin
                                                     : Qt::SvgMiterJoin);
  pen.setMiterLimit(style.miterLimit);
  if (!style.dashes.empty() && style.width > 0) {
    // Qt counts dashes in line widths and wants them in pairs.
    QList<qreal> pattern;
    for (int turn = 0; turn < (style.dashes.size() % 2 == 0 ? 1 : 2); ++turn) {
      for (const double dash : style.dashes) pattern.append(std::max(dash, 0.0) / style.width);
    }
    pen.setDashPattern(pattern);
    pen.setDashOffset(style.dashPhase / style.width);
  }
  return pen;
}

QImage toQt(Bitmap& bitmap) {
  return {reinterpret_cast<uchar*>(bitmap.data()), bitmap.width(), bitmap.height(),
          static_cast<qsizetype>(bitmap.bytesPerRow()), QImage::Format_ARGB32_Premultiplied};
}

QImage toQt(const Bitmap& bitmap) {
  return {reinterpret_cast<const uchar*>(bitmap.data()), bitmap.width(), bitmap.height(),
          static_cast<qsizetype>(bitmap.bytesPerRow()), QImage::Format_ARGB32_Premultiplied};
}

Bitmap fromQt(const QImage& image) {
  const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  Bitmap bitmap(pixels.width(), pixels.height());
  for (int y = 0; y < bitmap.height(); ++y) std::memcpy(bitmap.row(y), pixels.constScanLine(y), bitmap.bytesPerRow());
  return bitmap;
}

}  // namespace platform
