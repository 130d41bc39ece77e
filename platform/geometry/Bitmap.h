#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/geometry/UIColor.h"

namespace platform {

/// Pixels in memory: 32 bits each, 0xAARRGGBB in the machine's byte order, components multiplied by alpha, rows from
/// top to bottom without gaps. Sizes in pixels, never points. Movable, not copied by accident (`copy`). One thread at a
/// time; a `CGImageRef` is read by any.
class Bitmap {
 public:
  /// The most pixels that a picture from outside may have, all its frames together.
  static constexpr std::int64_t maximumPixels = 64'000'000;

  Bitmap() = default;
  /// All clear. A size that is not positive, or beyond `maximumPixels`, gives an empty bitmap.
  Bitmap(int width, int height);
  Bitmap(Bitmap&& other) noexcept;
  Bitmap& operator=(Bitmap&& other) noexcept;
  Bitmap copy() const;

  int width() const { return width_; }
  int height() const { return height_; }
  bool isEmpty() const { return pixels_.empty(); }
  std::size_t bytesPerRow() const { return static_cast<std::size_t>(width_) * 4; }
  std::uint32_t* data() { return pixels_.data(); }
  const std::uint32_t* data() const { return pixels_.data(); }
  std::uint32_t* row(int y) { return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_); }
  const std::uint32_t* row(int y) const {
    return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
  }

  /// The pixel as stored; 0 outside.
  std::uint32_t pixel(int x, int y) const;
  /// The pixel's colour, alpha divided out.
  UIColor color(int x, int y) const;
  /// Another size, all clear; memory that suffices is kept. Too large a size makes it empty.
  void reset(int width, int height);
  void clear();
  /// Clears the part of the rectangle that lies inside.
  void clear(int x, int y, int width, int height);

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint32_t> pixels_;
};

/// A picture that never changes any more, shared by whoever shows it. Any thread.
using CGImageRef = std::shared_ptr<const Bitmap>;

}  // namespace platform
