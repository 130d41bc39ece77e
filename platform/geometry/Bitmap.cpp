#include "platform/geometry/Bitmap.h"

#include <algorithm>
#include <utility>

namespace platform {

Bitmap::Bitmap(int width, int height) { reset(width, height); }

void Bitmap::reset(int width, int height) {
  const bool isUsable = width > 0 && height > 0 && static_cast<std::int64_t>(width) * height <= maximumPixels;
  width_ = isUsable ? width : 0;
  height_ = isUsable ? height : 0;
  const std::size_t count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  if (count > pixels_.capacity() && pixels_.capacity() > 0) {
    // One that is used again and again at growing sizes must not ask for fresh memory each time.
    const std::size_t room = std::max(count, pixels_.capacity() * 2);
    pixels_ = {};
    pixels_.reserve(room);
  }
  pixels_.assign(count, 0u);
}

Bitmap::Bitmap(Bitmap&& other) noexcept
    : width_(std::exchange(other.width_, 0)),
      height_(std::exchange(other.height_, 0)),
      pixels_(std::move(other.pixels_)) {}

Bitmap& Bitmap::operator=(Bitmap&& other) noexcept {
  width_ = std::exchange(other.width_, 0);
  height_ = std::exchange(other.height_, 0);
  pixels_ = std::move(other.pixels_);
  return *this;
}

Bitmap Bitmap::copy() const {
  Bitmap result;
  result.width_ = width_;
  result.height_ = height_;
  result.pixels_ = pixels_;
  return result;
}

std::uint32_t Bitmap::pixel(int x, int y) const {
  return x >= 0 && y >= 0 && x < width_ && y < height_ ? row(y)[x] : 0;
}

UIColor Bitmap::color(int x, int y) const {
  const std::uint32_t value = pixel(x, y);
  const double alpha = (value >> 24) & 255;
  if (alpha == 0) return UIColor::clear();
  const auto part = [&](int shift) { return std::min(1.0, ((value >> shift) & 255) / alpha); };
  return {part(16), part(8), part(0), alpha / 255};
}

void Bitmap::clear() { std::fill(pixels_.begin(), pixels_.end(), 0u); }

void Bitmap::clear(int x, int y, int width, int height) {
  const int left = std::clamp(x, 0, width_), right = std::clamp(x + width, left, width_);
  const int top = std::clamp(y, 0, height_), bottom = std::clamp(y + height, top, height_);
  for (int line = top; line < bottom; ++line) std::fill(row(line) + left, row(line) + right, 0u);
}

}  // namespace platform
