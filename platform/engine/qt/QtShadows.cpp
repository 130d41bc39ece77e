#include "platform/engine/qt/QtShadows.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/geometry/AlphaBlur.h"

namespace platform {

namespace {

/// Nothing that large is ever on a screen.
constexpr double maximumSide = 16384;

}  // namespace

QtShadows::Shadow QtShadows::shadow(const QPainterPath& path, double deviation, QColor color) {
  const QRectF bounds = path.boundingRect();
  if (bounds.width() > maximumSide || bounds.height() > maximumSide || !std::isfinite(deviation)) return {};
  const int margin = AlphaMap::blurMargin(deviation);
  // Places a sixteenth of a pixel apart share their shadow.
  const QPoint whole(static_cast<int>(std::floor(bounds.left())), static_cast<int>(std::floor(bounds.top())));
  const double dx = std::round((bounds.left() - whole.x()) * 16) / 16 - bounds.left();
  const double dy = std::round((bounds.top() - whole.y()) * 16) / 16 - bounds.top();
  const QPainterPath moved = path.translated(dx, dy);
  for (auto it = recent_.begin(); it != recent_.end(); ++it) {
    if (it->deviation != deviation || it->color != color.rgba() || it->path != moved) continue;
    recent_.splice(recent_.begin(), recent_, it);
    return {it->image, whole - QPoint(margin, margin)};
  }
  const QSize size(static_cast<int>(std::ceil(bounds.width())) + 2 * margin + 1,
                   static_cast<int>(std::ceil(bounds.height())) + 2 * margin + 1);
  const QImage image = blurred(moved.translated(margin, margin), size, deviation, color);
  recent_.push_front({moved, deviation, color.rgba(), image, margin});
  bytes_ += image.sizeInBytes();
  while (recent_.size() > 1 && (recent_.size() > maximumCount || bytes_ > maximumBytes)) {
    bytes_ -= recent_.back().image.sizeInBytes();
    recent_.pop_back();
  }
  return {image, whole - QPoint(margin, margin)};
}

QImage QtShadows::blurred(const QPainterPath& path, QSize size, double deviation, QColor color) {
  AlphaMap map(size.width(), size.height());
  if (map.alpha.empty()) return {};
  {
    QImage shape(map.alpha.data(), map.width, map.height, map.width, QImage::Format_Alpha8);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, Qt::black);
  }
  map.blur(deviation);
  QImage result(size, QImage::Format_ARGB32_Premultiplied);
  std::array<QRgb, 256> tints;
  for (std::size_t i = 0; i < tints.size(); ++i) {
    const int alpha = static_cast<int>(std::lround(color.alphaF() * static_cast<double>(i)));
    tints[i] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), alpha));
  }
  for (int y = 0; y < size.height(); ++y) {
    const std::uint8_t* const from = map.alpha.data() + static_cast<std::ptrdiff_t>(y) * map.width;
    QRgb* const to = reinterpret_cast<QRgb*>(result.scanLine(y));
    for (int x = 0; x < size.width(); ++x) to[x] = tints[from[x]];
  }
  return result;
}

}  // namespace platform
