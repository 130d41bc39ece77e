#include "lumicor/ui/LumicorAnimatedImage.h"

#include <optional>
#include <utility>
#include <vector>

#include "platform/graphics/CGImageSource.h"
#include "platform/graphics/PictureBudget.h"

namespace lumicor {

namespace {

/// Seconds that the frame is shown, or none when the file does not tell.
std::optional<double> delayOf(const CGImageSourceRef& source, std::size_t index) {
  const auto properties = CGImageSourceCopyPropertiesAtIndex(source, index);
  const JSONValue* const gif = properties ? properties->find(kCGImagePropertyGIFDictionary) : nullptr;
  const JSONValue* const delay = gif ? gif->find(kCGImagePropertyGIFDelayTime) : nullptr;
  return delay ? delay->asDouble() : std::nullopt;
}

Ref<UIImage> animatedImage(const CGImageSourceRef& source) {
  std::vector<Ref<UIImage>> frames;
  double duration = 0;
  const std::size_t count = CGImageSourceGetCount(source);
  for (std::size_t i = 0; i < count; ++i) {
    const CGImageRef frame = CGImageSourceCreateImageAtIndex(source, i);
    const auto delay = delayOf(source, i);
    if (!frame || !delay) continue;
    frames.push_back(make<UIImage>(frame, 1.0));
    duration += *delay;
  }
  return UIImage::animatedImage(std::move(frames), duration);
}

}  // namespace

Ref<UIImage> animatedImageWithGIF(std::string_view data) {
  const auto source = CGImageSourceCreateWithData(data, PictureBudget::forAddresses());
  return source ? animatedImage(source) : nullptr;
}

Ref<UIImage> downloadedImage(std::string_view data) {
  const auto source = CGImageSourceCreateWithData(data, PictureBudget::forAddresses());
  if (source && CGImageSourceGetCount(source) > 1) {
    if (auto moving = animatedImage(source)) return moving;
  }
  return UIImage::imageWithData(data, PictureBudget::forAddresses());
}

}  // namespace lumicor
