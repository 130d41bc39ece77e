#include "platform/engine/qt/QtBitmaps.h"

#include "platform/engine/qt/QtConversions.h"

namespace platform {

QImage QtBitmaps::shrunk(const CGImageRef& bitmap, QSize size) {
  for (auto it = recent_.begin(); it != recent_.end();) {
    const CGImageRef known = it->bitmap.lock();
    if (!known) {
      it = recent_.erase(it);
      continue;
    }
    if (known == bitmap && it->image.size() == size) {
      recent_.splice(recent_.begin(), recent_, it);
      return recent_.front().image;
    }
    ++it;
  }
  const QImage image = toQt(*bitmap).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  recent_.push_front({bitmap, image.convertToFormat(QImage::Format_ARGB32_Premultiplied)});
  if (recent_.size() > maximumCount) recent_.pop_back();
  return recent_.front().image;
}

}  // namespace platform
