#include "platform/geometry/TiledBitmap.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <mutex>
#include <new>

namespace platform {

namespace {

constexpr int side = TiledBitmap::tileSide;
constexpr std::uint32_t black = 0xff000000u;

/// Whole pixels; `right` and `bottom` lie outside.
struct PixelRect {
  int left, top, right, bottom;
  bool isEmpty() const { return left >= right || top >= bottom; }
};

/// All pixels that the rectangle touches, of those inside the limits.
PixelRect pixelsOf(const CGRect& rect, const PixelRect& limits) {
  if (rect.isEmpty()) return {0, 0, 0, 0};
  const auto bounded = [](double value, int low, int high) {
    return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
  };
  return {bounded(std::floor(rect.minX()), limits.left, limits.right),
          bounded(std::floor(rect.minY()), limits.top, limits.bottom),
          bounded(std::ceil(rect.maxX()), limits.left, limits.right),
          bounded(std::ceil(rect.maxY()), limits.top, limits.bottom)};
}

/// Memory of tiles that are gone, for those to come: a moving screen lets go of as many as it makes, and asking the
/// system each time would cost more than filling them. Given back when no tile is left. Any thread.
class TilePool {
 public:
  static TilePool& shared() {
    static TilePool* const only = new TilePool;  // tiles may outlast everything
    return *only;
  }
  void* take(std::size_t bytes) {
    {
      const std::lock_guard lock(mutex_);
      ++live_;
      if (!spare_.empty() && bytes == bytes_) {
        void* const memory = spare_.back();
        spare_.pop_back();
        return memory;
      }
      bytes_ = bytes;
    }
    return ::operator new(bytes);
  }
  void giveBack(void* memory) {
    std::vector<void*> surplus;
    {
      const std::lock_guard lock(mutex_);
      spare_.push_back(memory);
      if (--live_ == 0) surplus.swap(spare_);
    }
    for (void* const spare : surplus) ::operator delete(spare);
  }

 private:
  std::mutex mutex_;
  std::vector<void*> spare_;
  std::size_t bytes_ = 0;  // of each: a tile and its counters are always as large
  std::size_t live_ = 0;
};

template <class T>
struct TileAllocator {
  using value_type = T;
  TileAllocator() = default;
  template <class U>
  TileAllocator(const TileAllocator<U>&) {}
  T* allocate(std::size_t count) { return static_cast<T*>(TilePool::shared().take(count * sizeof(T))); }
  void deallocate(T* memory, std::size_t) { TilePool::shared().giveBack(memory); }
  template <class U>
  bool operator==(const TileAllocator<U>&) const {
    return true;
  }
};

void copyRows(TiledBitmap::Tile& tile, const Bitmap& bitmap, const PixelRect& place) {
  const std::size_t bytes = static_cast<std::size_t>(place.right - place.left) * sizeof(std::uint32_t);
  for (int y = place.top; y < place.bottom; ++y) {
    std::memcpy(tile.row(y - place.top), bitmap.row(y) + place.left, bytes);
  }
}

bool hasSameRows(const TiledBitmap::Tile& tile, const Bitmap& bitmap, const PixelRect& place) {
  const std::size_t bytes = static_cast<std::size_t>(place.right - place.left) * sizeof(std::uint32_t);
  for (int y = place.top; y < place.bottom; ++y) {
    if (std::memcmp(tile.row(y - place.top), bitmap.row(y) + place.left, bytes) != 0) return false;
  }
  return true;
}

void blank(TiledBitmap::Tile& tile, const PixelRect& place, const std::vector<CGRect>& blanked) {
  for (const CGRect& rect : blanked) {
    const PixelRect part = pixelsOf(rect, place);
    if (part.isEmpty()) continue;
    for (int y = part.top; y < part.bottom; ++y) {
      std::uint32_t* const row = tile.row(y - place.top);
      std::fill(row + part.left - place.left, row + part.right - place.left, black);
    }
  }
}

}  // namespace

TiledBitmap::TiledBitmap(const Bitmap& bitmap)
    : TiledBitmap(TiledBitmap().updated(bitmap, CGRect(0, 0, bitmap.width(), bitmap.height()))) {}

TiledBitmap TiledBitmap::updated(const Bitmap& bitmap, const CGRect& changed,
                                 const std::vector<CGRect>& blanked) const {
  const PixelRect whole{0, 0, bitmap.width(), bitmap.height()};
  TiledBitmap result;
  PixelRect dirty = whole;
  if (isLike(bitmap)) {
    result = *this;
    dirty = pixelsOf(changed, whole);
  } else {
    result.width_ = bitmap.width();
    result.height_ = bitmap.height();
    result.columns_ = (bitmap.width() + side - 1) / side;
    result.rows_ = (bitmap.height() + side - 1) / side;
    result.tiles_.resize(static_cast<std::size_t>(result.columns_) * static_cast<std::size_t>(result.rows_));
  }
  if (dirty.isEmpty()) return result;
  for (int row = dirty.top / side; row <= (dirty.bottom - 1) / side; ++row) {
    for (int column = dirty.left / side; column <= (dirty.right - 1) / side; ++column) {
      TileRef& tile = result.tiles_[static_cast<std::size_t>(row) * static_cast<std::size_t>(result.columns_) +
                                    static_cast<std::size_t>(column)];
      tile = result.tileOf(bitmap, column, row, blanked);
    }
  }
  return result;
}

TiledBitmap::TileRef TiledBitmap::tileOf(const Bitmap& bitmap, int column, int row,
                                         const std::vector<CGRect>& blanked) const {
  const TileRef& old = tile(column, row);
  const PixelRect place{column * side, row * side, std::min(width_, (column + 1) * side),
                        std::min(height_, (row + 1) * side)};
  if (old && blanked.empty() && hasSameRows(*old, bitmap, place)) return old;
  const bool isWhole = place.right - place.left == side && place.bottom - place.top == side;
  // What is written over in any case is not cleared first.
  const auto fresh = std::allocate_shared_for_overwrite<Tile>(TileAllocator<Tile>());
  if (!isWhole) fresh->pixels.fill(0);
  copyRows(*fresh, bitmap, place);
  blank(*fresh, place, blanked);
  if (old && !blanked.empty() && old->pixels == fresh->pixels) return old;
  return fresh;
}

bool TiledBitmap::isSameAs(const TiledBitmap& other) const {
  return width_ == other.width_ && height_ == other.height_ && tiles_ == other.tiles_;
}

Bitmap TiledBitmap::bitmap() const {
  Bitmap result(width_, height_);
  for (int y = 0; y < result.height(); ++y) {
    for (int column = 0; column < columns_; ++column) {
      const int left = column * side;
      const std::size_t bytes = static_cast<std::size_t>(std::min(side, width_ - left)) * sizeof(std::uint32_t);
      std::memcpy(result.row(y) + left, tile(column, y / side)->row(y % side), bytes);
    }
  }
  return result;
}

}  // namespace platform
