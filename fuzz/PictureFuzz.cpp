#include "fuzz/Harnesses.h"
#include "platform/graphics/CGImageSource.h"
#include "platform/graphics/UIImage.h"

namespace fuzz {

using namespace platform;

void picture(std::string_view input) {
  // Small, so that many are tried.
  const PictureBudget budget{.pixels = 1 << 18,
                             .frames = 20,
                             .decodedBytes = 4 << 18,
                             .scans = 20,
                             .scannedPixels = 1 << 21,
                             .attachments = 1,
                             .seconds = 5};
  const auto image = UIImage::imageWithData(input, budget);
  const auto facts = PictureFacts::of(input);
  const auto isAsTold = [&facts](const Bitmap& bitmap) {
    return facts && std::int64_t{bitmap.width()} * bitmap.height() <= facts->width * facts->height;
  };
  expect(!image || isAsTold(*image->cgImage()), "a picture has no more pixels than its head says");
  const auto source = CGImageSourceCreateWithData(input, budget);
  for (std::size_t i = 0; i < std::min<std::size_t>(CGImageSourceGetCount(source), 30); ++i) {
    const CGImageRef frame = CGImageSourceCreateImageAtIndex(source, i);
    expect(!frame || isAsTold(*frame), "a frame has no more pixels than the film's heads say");
    (void)CGImageSourceCopyPropertiesAtIndex(source, i);
  }
}

}  // namespace fuzz
