#include "platform/graphics/CGImageSource.h"
#include "platform/graphics/UIImage.h"
#include "tests/platform/graphics/GIFFile.h"

namespace platform {
namespace {

using test::GIFFile;

std::optional<double> delayOf(const CGImageSourceRef& source, std::size_t index) {
  const auto properties = CGImageSourceCopyPropertiesAtIndex(source, index);
  const JSONValue* const gif = properties ? properties->find(kCGImagePropertyGIFDictionary) : nullptr;
  const JSONValue* const delay = gif ? gif->find(kCGImagePropertyGIFDelayTime) : nullptr;
  return delay ? delay->asDouble() : std::nullopt;
}

std::uint32_t firstPixel(const CGImageRef& image) { return image ? image->pixel(0, 0) : 0; }

TEST(CGImageSource, GivesTheFramesOfAGIFWithTheirDelays) {
  const auto source =
      CGImageSourceCreateWithData(GIFFile(20, 15).add(0xFF0000, 5).add(0x00FF00, 25).add(0x0000FF, 100).bytes());
  ASSERT_EQ(CGImageSourceGetCount(source), 3u);
  EXPECT_EQ(firstPixel(CGImageSourceCreateImageAtIndex(source, 0)), 0xFFFF0000u);
  EXPECT_EQ(firstPixel(CGImageSourceCreateImageAtIndex(source, 2)), 0xFF0000FFu);
  EXPECT_EQ(firstPixel(CGImageSourceCreateImageAtIndex(source, 1)), 0xFF00FF00u) << "frames are also given backwards";
  EXPECT_EQ(delayOf(source, 0), 0.05);
  EXPECT_EQ(delayOf(source, 1), 0.25);
  EXPECT_EQ(delayOf(source, 2), 1.0);
  EXPECT_EQ(CGImageSourceCreateImageAtIndex(source, 3), nullptr);
  EXPECT_FALSE(CGImageSourceCopyPropertiesAtIndex(source, 3));
}

TEST(CGImageSource, TakesMissingAndTooShortDelaysForATenthOfASecond) {
  const auto source = CGImageSourceCreateWithData(GIFFile(2, 2).add(1, 0).add(2, 1).add(3, -1).add(4, 2).bytes());
  ASSERT_EQ(CGImageSourceGetCount(source), 4u);
  EXPECT_EQ(delayOf(source, 0), 0.1);
  EXPECT_EQ(delayOf(source, 1), 0.1);
  EXPECT_EQ(delayOf(source, 2), 0.1);
  EXPECT_EQ(delayOf(source, 3), 0.02);
}

TEST(CGImageSource, ReadsAStillPictureAsOneFrameWithoutADelay) {
  Bitmap bitmap(3, 3);
  bitmap.row(0)[0] = 0xFF123456;
  const std::string png = UIImage::imageWithBitmap(std::move(bitmap))->pngRepresentation();
  const auto source = CGImageSourceCreateWithData(png);
  ASSERT_EQ(CGImageSourceGetCount(source), 1u);
  EXPECT_EQ(firstPixel(CGImageSourceCreateImageAtIndex(source, 0)), 0xFF123456u);
  EXPECT_FALSE(delayOf(source, 0));
}

TEST(CGImageSource, IsNoneForWhatIsNoPicture) {
  EXPECT_EQ(CGImageSourceCreateWithData(""), nullptr);
  EXPECT_EQ(CGImageSourceCreateWithData("GIF89a"), nullptr);
  EXPECT_EQ(CGImageSourceCreateWithData(std::string(4096, 'x')), nullptr);
  EXPECT_EQ(CGImageSourceGetCount(nullptr), 0u);
  EXPECT_EQ(CGImageSourceCreateImageAtIndex(nullptr, 0), nullptr);
}

TEST(CGImageSource, SurvivesAFileCutShortAnywhere) {
  const std::string whole = GIFFile(8, 8).add(0xFF0000, 5).add(0x00FF00, 5).bytes();
  for (std::size_t length = 0; length < whole.size(); length += 3) {
    const auto source = CGImageSourceCreateWithData(whole.substr(0, length));
    for (std::size_t i = 0; i < CGImageSourceGetCount(source) + 1; ++i)
      (void)CGImageSourceCreateImageAtIndex(source, i);
    EXPECT_LE(CGImageSourceGetCount(source), 2u);
  }
}

TEST(CGImageSource, WritesNothingOnTheHostsErrorOutputAboutADamagedFile) {
  Bitmap bitmap(16, 16);
  for (int i = 0; i < 256; ++i)
    bitmap.row(i / 16)[i % 16] = 0xFF000000 | static_cast<std::uint32_t>(i * 2654435761U >> 8);
  const std::string whole = UIImage::imageWithBitmap(std::move(bitmap))->pngRepresentation();
  const auto isPicture = [](const std::string& file) {
    return CGImageSourceCreateImageAtIndex(CGImageSourceCreateWithData(file), 0) != nullptr;
  };
  testing::internal::CaptureStderr();
  for (std::size_t i = 0; i < whole.size(); ++i) {
    EXPECT_FALSE(isPicture(whole.substr(0, i))) << "cut after " << i;
    std::string damaged = whole;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
    (void)isPicture(damaged);
  }
  EXPECT_TRUE(isPicture(whole + "and more"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(CGImageSource, RefusesFramesBeyondTheLimitOfPixels) {
  // 65535 x 65535 pixels in a few bytes.
  EXPECT_EQ(CGImageSourceCreateWithData(GIFFile(65535, 65535).addDamaged(65535, 65535).bytes()), nullptr);
  // Each frame is small enough, all of them together are not.
  GIFFile film(4000, 4000);
  film.add(0xFF0000, 5);
  for (int i = 0; i < 5; ++i) film.addDamaged(1, 1);
  const auto source = CGImageSourceCreateWithData(film.bytes());
  ASSERT_EQ(CGImageSourceGetCount(source), 6u);
  EXPECT_NE(CGImageSourceCreateImageAtIndex(source, 0), nullptr);
  EXPECT_EQ(CGImageSourceCreateImageAtIndex(source, 5), nullptr);
}

}  // namespace
}  // namespace platform
