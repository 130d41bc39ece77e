#include "platform/graphics/UIGraphicsImageRenderer.h"
#include "platform/graphics/UIImage.h"
#include "tests/platform/graphics/GIFFile.h"

namespace platform {
namespace {

Ref<UIImage> plain(std::uint32_t pixel, int width = 4, int height = 2) {
  Bitmap bitmap(width, height);
  for (int y = 0; y < height; ++y) std::fill(bitmap.row(y), bitmap.row(y) + width, pixel);
  return UIImage::imageWithBitmap(std::move(bitmap), 2);
}

TEST(UIImage, ComesBackFromPNGPixelByPixel) {
  Bitmap bitmap(64, 48);
  for (int y = 0; y < 48; ++y) {
    for (int x = 0; x < 64; ++x) bitmap.row(y)[x] = 0xFF000000u | static_cast<std::uint32_t>(x * 1031 + y * 77777);
  }
  const auto image = UIImage::imageWithBitmap(std::move(bitmap), 2);
  const auto read = UIImage::imageWithData(image->pngRepresentation(), 2);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->size(), (CGSize{32, 24}));
  EXPECT_TRUE(std::equal(read->cgImage()->data(), read->cgImage()->data() + 64 * 48, image->cgImage()->data()));
}

TEST(UIImage, IsNoneForDamagedForeignAndHugeData) {
  const std::string png = plain(0xFF00FF00, 40, 40)->pngRepresentation();
  EXPECT_EQ(UIImage::imageWithData(""), nullptr);
  EXPECT_EQ(UIImage::imageWithData("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"), nullptr);
  EXPECT_EQ(UIImage::imageWithData("\xFF\xD8\xFF\xE0 not a photograph"), nullptr);
  EXPECT_EQ(UIImage::imageWithData(png.substr(0, 20)), nullptr);
  // A header that asks for 100,000 x 100,000 pixels, 40 GB.
  std::string bomb = png;
  bomb.replace(16, 8, std::string("\x00\x01\x86\xA0\x00\x01\x86\xA0", 8));
  EXPECT_EQ(UIImage::imageWithData(bomb), nullptr);
  for (std::size_t i = 0; i < png.size(); i += 5) {
    std::string damaged = png;
    damaged[i] = static_cast<char>(~damaged[i]);
    (void)UIImage::imageWithData(damaged);
  }
}

TEST(UIImage, ShowsTheFirstFrameOfAGIF) {
  const auto image = UIImage::imageWithData(test::GIFFile(6, 3).add(0x112233, 5).add(0x445566, 5).bytes());
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->cgImage()->pixel(0, 0), 0xFF112233u);
  EXPECT_TRUE(image->images().empty());
}

TEST(UIImage, PlaysItsFramesRoundAfterRound) {
  const auto red = plain(0xFFFF0000), green = plain(0xFF00FF00), blue = plain(0xFF0000FF);
  const auto film = UIImage::animatedImage({red, nullptr, green, blue}, 0.3);
  ASSERT_NE(film, nullptr);
  EXPECT_EQ(film->size(), red->size());
  EXPECT_EQ(&film->frameAt(0), red.get());
  EXPECT_EQ(&film->frameAt(0.1), green.get());
  EXPECT_EQ(&film->frameAt(0.299), blue.get());
  EXPECT_EQ(&film->frameAt(0.3), red.get());
  EXPECT_EQ(&film->frameAt(3000.15), green.get());
  EXPECT_EQ(UIImage::animatedImage({}, 1), nullptr);
  EXPECT_DOUBLE_EQ(UIImage::animatedImage({red, green}, 0)->duration(), 0.2);
}

TEST(UIImage, TintsItsShape) {
  Bitmap bitmap(2, 1);
  bitmap.row(0)[0] = 0xFF336699;
  bitmap.row(0)[1] = 0x80402010;
  const auto tinted = UIImage::imageWithBitmap(std::move(bitmap))->imageWithTintColor(UIColor(1, 0, 0, 1));
  EXPECT_EQ(tinted->cgImage()->pixel(0, 0), 0xFFFF0000u);
  EXPECT_EQ(tinted->cgImage()->pixel(1, 0), 0x80800000u);
}

TEST(Bitmap, RefusesSizesThatAreNegativeOrBeyondTheLimit) {
  EXPECT_TRUE(Bitmap(-1, 5).isEmpty());
  EXPECT_TRUE(Bitmap(0, 5).isEmpty());
  EXPECT_TRUE(Bitmap(8001, 8000).isEmpty());
  EXPECT_EQ(Bitmap(3, 3).pixel(3, 0), 0u);
}

TEST(UIGraphicsImageRenderer, DrawsAtItsScale) {
  const auto image = UIGraphicsImageRenderer({5, 5}, 2).imageWithActions([](CGContext& context) {
    context.setFillColor(UIColor(0, 0, 1, 1));
    context.fill(CGRect(1, 1, 2, 3));
  });
  EXPECT_EQ(image->size(), (CGSize{5, 5}));
  EXPECT_EQ(image->cgImage()->pixel(2, 2), 0xFF0000FFu);
  EXPECT_EQ(image->cgImage()->pixel(5, 7), 0xFF0000FFu);
  EXPECT_EQ(image->cgImage()->pixel(6, 7), 0u);
  EXPECT_EQ(image->cgImage()->pixel(1, 2), 0u);
}

}  // namespace
}  // namespace platform
