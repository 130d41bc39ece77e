#pragma once

#include <QImage>
#include <QPainterPath>
#include <cstddef>
#include <list>

namespace platform {

/// Blurred shapes, kept because blurring is slow and shadows stay the same from frame to frame. Main thread.
class QtShadows {
 public:
  struct Shadow {
    QImage image;
    QPoint origin;  ///< where its top left pixel belongs
  };
  /// The shadow of a path in pixels; `deviation` in pixels.
  Shadow shadow(const QPainterPath& path, double deviation, QColor color);

 private:
  struct Entry {
    QPainterPath path;  // moved so that its bounds begin inside the first pixel
    double deviation;
    QRgb color;
    QImage image;
    int margin;
  };
  static constexpr std::size_t maximumCount = 64;
  static constexpr qsizetype maximumBytes = 32 << 20;
  static QImage blurred(const QPainterPath& path, QSize size, double deviation, QColor color);
  std::list<Entry> recent_;
  qsizetype bytes_ = 0;
};

}  // namespace platform
