#pragma once

#include <memory>
#include <vector>

#include "platform/engine/Engine.h"
#include "platform/engine/Painter.h"
#include "platform/geometry/Bitmap.h"

namespace platform {

/// A clear bitmap to paint a part of a picture on, with a canvas. Its memory is used again by the next one. Main
/// thread.
class ScratchBitmap {
 public:
  ScratchBitmap(int width, int height) {
    std::vector<Bitmap>& unused = unusedBitmaps();
    if (!unused.empty()) {
      bitmap_ = std::move(unused.back());
      unused.pop_back();
    }
    bitmap_.reset(width, height);
    canvas_ = Engine::shared().makeCanvas(bitmap_);
  }
  ~ScratchBitmap() {
    canvas_.reset();
    unusedBitmaps().push_back(std::move(bitmap_));
  }
  ScratchBitmap(const ScratchBitmap&) = delete;
  ScratchBitmap& operator=(const ScratchBitmap&) = delete;

  Bitmap& bitmap() { return bitmap_; }
  Canvas& canvas() { return *canvas_; }

 private:
  static std::vector<Bitmap>& unusedBitmaps() {
    static std::vector<Bitmap>* const bitmaps = new std::vector<Bitmap>;
    return *bitmaps;
  }
  Bitmap bitmap_;
  std::unique_ptr<Canvas> canvas_;
};

}  // namespace platform
