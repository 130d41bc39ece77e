#include <algorithm>

#include "platform/geometry/TiledBitmap.h"

namespace platform {
namespace {

constexpr int side = TiledBitmap::tileSide;

/// Every pixel another.
Bitmap patterned(int width, int height) {
  Bitmap bitmap(width, height);
  std::uint32_t value = 0xff000000u;
  std::generate_n(bitmap.data(), static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                  [&value] { return value++; });
  return bitmap;
}

void expectSame(const TiledBitmap& tiled, const Bitmap& bitmap) {
  const Bitmap copy = tiled.bitmap();
  ASSERT_EQ(copy.width(), bitmap.width());
  ASSERT_EQ(copy.height(), bitmap.height());
  const std::size_t count = static_cast<std::size_t>(bitmap.width()) * static_cast<std::size_t>(bitmap.height());
  EXPECT_TRUE(std::equal(copy.data(), copy.data() + count, bitmap.data()));
}

int tilesShared(const TiledBitmap& a, const TiledBitmap& b) {
  int shared = 0;
  for (int row = 0; row < a.rows(); ++row) {
    for (int column = 0; column < a.columns(); ++column) shared += a.tile(column, row) == b.tile(column, row);
  }
  return shared;
}

TEST(TiledBitmap, HoldsAPictureOfAnySize) {
  const int sizes[][2] = {{1, 1}, {side, side}, {side + 1, side - 1}, {3 * side, 2 * side + 7}};
  for (const auto& size : sizes) {
    const Bitmap bitmap = patterned(size[0], size[1]);
    expectSame(TiledBitmap(bitmap), bitmap);
  }
  EXPECT_TRUE(TiledBitmap(Bitmap()).isEmpty());
}

TEST(TiledBitmap, MakesOnlyThoseTilesAnewThatLookDifferent) {
  Bitmap bitmap = patterned(3 * side + 10, 3 * side + 10);  // 4 x 4 tiles
  const TiledBitmap before(bitmap);
  bitmap.row(side)[side] = 1;                  // the first pixel of a tile in the middle
  bitmap.row(3 * side + 9)[3 * side + 9] = 2;  // the last one of all
  const CGRect whole(0, 0, bitmap.width(), bitmap.height());
  const TiledBitmap after = before.updated(bitmap, whole);
  expectSame(after, bitmap);
  EXPECT_EQ(tilesShared(before, after), 14);
  EXPECT_FALSE(after.isSameAs(before));
  EXPECT_TRUE(after.updated(bitmap, whole).isSameAs(after));
  EXPECT_EQ(before.tile(1, 1)->row(0)[0], patterned(bitmap.width(), bitmap.height()).pixel(side, side))
      << "the earlier picture stays as it was";
}

TEST(TiledBitmap, LooksOnlyWhereItIsTold) {
  Bitmap bitmap = patterned(2 * side, side);
  const TiledBitmap before(bitmap);
  bitmap.row(5)[5] = bitmap.row(5)[side + 5] = 1;
  EXPECT_EQ(tilesShared(before, before.updated(bitmap, CGRect(side + 5.5, 5.5, 0.1, 0.1))), 1);
  const CGRect nowhere[] = {CGRectZero, CGRect(-50, 0, 40, 40), CGRect(1e12, 0, 5, 5)};
  for (const CGRect& rect : nowhere) EXPECT_TRUE(before.updated(bitmap, rect).isSameAs(before));
  const CGRect everywhere(-1e12, -1e12, 2e12, 2e12);
  expectSame(before.updated(bitmap, everywhere), bitmap);
  const Bitmap other = patterned(side, side + 1);
  expectSame(before.updated(other, CGRectZero), other);
}

TEST(TiledBitmap, BlanksWhatIsNotToBeSeen) {
  const Bitmap bitmap = patterned(2 * side, 2 * side);
  const CGRect secret(side - 10, side - 10, 20, 20);
  const CGRect whole(0, 0, bitmap.width(), bitmap.height());
  const TiledBitmap blanked = TiledBitmap().updated(bitmap, whole, {secret});
  const Bitmap seen = blanked.bitmap();
  int wrong = 0;
  for (int y = 0; y < seen.height(); ++y) {
    for (int x = 0; x < seen.width(); ++x) {
      const bool isSecret = secret.contains(CGPoint{double(x), double(y)});
      wrong += seen.pixel(x, y) != (isSecret ? 0xff000000u : bitmap.pixel(x, y));
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_TRUE(blanked.updated(bitmap, whole, {secret}).isSameAs(blanked));
  expectSame(blanked.updated(bitmap, secret), bitmap);
}

}  // namespace
}  // namespace platform
