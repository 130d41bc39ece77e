#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"

namespace platform {

/// A picture that never changes any more, cut into tiles that the next picture of the same thing shares as far as it
/// looks the same: a copy costs some pointers, a new picture what is different in it, and whoever holds two of them
/// sees in which places they differ without looking at a pixel. Pixels as in `Bitmap`. A value; any thread.
class TiledBitmap {
 public:
  static constexpr int tileSide = 96;
  /// Rows of `tileSide` pixels without gaps; those beyond the picture's edges are 0.
  struct Tile {
    std::array<std::uint32_t, std::size_t{tileSide} * tileSide> pixels;
    const std::uint32_t* row(int y) const { return pixels.data() + y * tileSide; }
    std::uint32_t* row(int y) { return pixels.data() + y * tileSide; }
  };
  using TileRef = std::shared_ptr<const Tile>;

  /// Nothing at all.
  TiledBitmap() = default;
  explicit TiledBitmap(const Bitmap& bitmap);
  /// The picture when the pixels of that rectangle of the bitmap have come in. `blanked` rectangles are black in it,
  /// whatever the bitmap shows there; what is new in them must lie in `changed`. A bitmap of another size is taken
  /// whole.
  TiledBitmap updated(const Bitmap& bitmap, const CGRect& changed, const std::vector<CGRect>& blanked = {}) const;

  int width() const { return width_; }
  int height() const { return height_; }
  bool isEmpty() const { return tiles_.empty(); }
  int columns() const { return columns_; }
  int rows() const { return rows_; }
  const TileRef& tile(int column, int row) const {
    return tiles_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                  static_cast<std::size_t>(column)];
  }
  /// True when the other has the very same tiles, which looks the same.
  bool isSameAs(const TiledBitmap& other) const;
  /// All pixels, copied.
  Bitmap bitmap() const;

 private:
  bool isLike(const Bitmap& bitmap) const { return bitmap.width() == width_ && bitmap.height() == height_; }
  TileRef tileOf(const Bitmap& bitmap, int column, int row, const std::vector<CGRect>& blanked) const;

  int width_ = 0;
  int height_ = 0;
  int columns_ = 0;
  int rows_ = 0;
  std::vector<TileRef> tiles_;
};

}  // namespace platform
