#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGImageSource.h"
#include "platform/graphics/PictureBudget.h"
#include "platform/graphics/UIImage.h"
#include "tests/platform/graphics/GIFFile.h"

namespace platform {
namespace {

using test::GIFFile;

std::string big(std::uint32_t value, int bytes) {
  std::string text;
  while (bytes-- > 0) text.push_back(static_cast<char>(value >> bytes * 8));
  return text;
}

std::string chunk(const std::string& name, const std::string& content) {
  return big(static_cast<std::uint32_t>(content.size()), 4) + name + content + std::string(4, '\0');
}

/// The head of a PNG file, without its pixels.
std::string pngHead(std::uint32_t width, std::uint32_t height, char depth = 8) {
  return "\x89PNG\r\n\x1A\n" + chunk("IHDR", big(width, 4) + big(height, 4) + depth + std::string("\2\0\0\0", 4));
}

/// A grey progressive JPEG that goes over its pixels so many times, each time in ten bytes.
std::string progressiveJPEG(std::uint32_t width, std::uint32_t height, int scans) {
  const auto segment = [](char marker, const std::string& content) {
    return std::string("\xFF") + marker + big(static_cast<std::uint32_t>(content.size() + 2), 2) + content;
  };
  const std::string oneCode = '\1' + std::string(16, '\0');  // one code of one bit, which means: nothing here
  std::string file = "\xFF\xD8" + segment('\xDB', '\0' + std::string(64, '\1')) +
                     segment('\xC2', '\b' + big(height, 2) + big(width, 2) + std::string("\1\1\x11\0", 4)) +
                     segment('\xC4', '\0' + oneCode) + segment('\xC4', '\x10' + oneCode);
  for (int i = 0; i < scans; ++i) {
    const std::string band = i == 0 ? std::string("\0\0\0", 3) : std::string("\1\x3F\0", 3);
    file += segment('\xDA', std::string("\1\1\0", 3) + band) + '\0';
  }
  return file + "\xFF\xD9";
}

std::size_t admitted(const std::string& file, const PictureBudget& budget = PictureBudget::forAddresses()) {
  const auto facts = PictureFacts::of(file);
  return facts ? budget.admittedFrames(*facts) : 0;
}

TEST(PictureBudget, CountsThePassesOfAProgressivePictureBeforeDecodingIt) {
  const std::string file = progressiveJPEG(16, 16, 2000);
  ASSERT_EQ(PictureFacts::of(file)->scans, 2000u);
  EXPECT_NE(UIImage::imageWithData(file), nullptr) << "it is a picture, and of a host's own";
  EXPECT_EQ(UIImage::imageWithData(file, PictureBudget::forAddresses()), nullptr);
  EXPECT_NE(UIImage::imageWithData(progressiveJPEG(16, 16, 100), PictureBudget::forAddresses()), nullptr);
  // Fewer passes over more pixels are as much work.
  EXPECT_EQ(admitted(progressiveJPEG(4000, 4000, 12)), 1u);
  EXPECT_EQ(admitted(progressiveJPEG(4000, 4000, 13)), 0u);
}

TEST(PictureBudget, FindsPassesWhereADecoderFindsThem) {
  std::string file = progressiveJPEG(16, 16, 2);
  const std::string scan = "\xFF\xDA";
  const auto scansWith = [&file](const std::string& inserted) {
    std::string other = file;
    return PictureFacts::of(other.insert(other.size() - 2, inserted))->scans;
  };
  EXPECT_EQ(scansWith("\xFF\xFE" + big(4, 2) + scan), 2u) << "inside a remark";
  EXPECT_EQ(scansWith(std::string("\xFF\x00\xDA", 3)), 2u) << "an escaped byte of pixels";
  EXPECT_EQ(scansWith("\xFF\xD3\xFF\xFF\xFF\xDA"), 3u) << "after a restart, behind filling";
  EXPECT_EQ(scansWith("no marker" + scan), 3u);
  EXPECT_EQ(PictureFacts::of(file + scan)->scans, 2u) << "after the end";
  EXPECT_FALSE(PictureFacts::of("\xFF\xD8\xFF\xDA" + big(2, 2)));
}

TEST(PictureBudget, BoundsPixelsAndWhatTheyTakeInMemory) {
  EXPECT_EQ(admitted(pngHead(8000, 8000)), 0u);
  EXPECT_EQ(admitted(pngHead(4096, 4096)), 1u);
  EXPECT_EQ(admitted(pngHead(4097, 4096)), 0u);
  EXPECT_EQ(admitted(pngHead(0xFFFFFFFF, 0xFFFFFFFF)), 0u);
  EXPECT_EQ(admitted(pngHead(4000, 4000, 16)), 0u) << "sixteen bits a component take twice as much";
  EXPECT_EQ(admitted(pngHead(2800, 2800, 16)), 1u);

  Bitmap bitmap(10, 10);
  const std::string png = UIImage::imageWithBitmap(std::move(bitmap))->pngRepresentation();
  EXPECT_NE(UIImage::imageWithData(png, {.pixels = 100}), nullptr);
  EXPECT_EQ(UIImage::imageWithData(png, {.pixels = 99}), nullptr);
  EXPECT_EQ(UIImage::imageWithData(png, {.decodedBytes = 399}), nullptr);
}

TEST(PictureBudget, BoundsWhatUnfoldsBesideThePixels) {
  std::string file = pngHead(8, 8);
  for (int i = 0; i < 8; ++i) file += chunk(i % 2 ? "zTXt" : "iCCP", "x");
  EXPECT_EQ(admitted(file + chunk("tEXt", "zTXt")), 1u);
  EXPECT_EQ(admitted(file + chunk("iTXt", "x")), 0u);
}

TEST(PictureBudget, BoundsTheFramesOfAFilmTogether) {
  GIFFile bomb(8000, 8000);
  for (int i = 0; i < 60; ++i) bomb.addDamaged(8000, 8000);
  EXPECT_EQ(CGImageSourceCreateWithData(bomb.bytes(), PictureBudget::forAddresses()), nullptr);

  GIFFile film(20, 10);
  for (int i = 0; i < 5; ++i) film.add(0x112233, 5);
  const auto source = CGImageSourceCreateWithData(film.bytes(), {.decodedBytes = 3 * 20 * 10 * 4});
  ASSERT_EQ(CGImageSourceGetCount(source), 5u);
  EXPECT_NE(CGImageSourceCreateImageAtIndex(source, 2), nullptr);
  EXPECT_EQ(CGImageSourceCreateImageAtIndex(source, 3), nullptr);
  EXPECT_EQ(admitted(film.bytes(), {.frames = 4}), 4u);
  // A frame that sticks out makes the area grow for all of them.
  EXPECT_EQ(admitted(GIFFile(20, 10).add(1, 5).addDamaged(4000, 5000).bytes()), 0u);
}

TEST(PictureBudget, EndsWithItsTime) {
  const VirtualTime time;
  const std::string file = GIFFile(4, 4).add(0xFF0000, 5).add(0x00FF00, 5).bytes();
  const auto source = CGImageSourceCreateWithData(file, PictureBudget::forAddresses());
  EXPECT_NE(CGImageSourceCreateImageAtIndex(source, 0), nullptr);
  RunLoop::advance(2.9);
  EXPECT_NE(CGImageSourceCreateImageAtIndex(source, 1), nullptr);
  RunLoop::advance(0.1);
  EXPECT_EQ(CGImageSourceCreateImageAtIndex(source, 0), nullptr);
  EXPECT_EQ(UIImage::imageWithData(file, {.seconds = 0}), nullptr);
}

}  // namespace
}  // namespace platform
