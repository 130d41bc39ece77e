#include "platform/graphics/CGImageSource.h"

#include <cstdint>

#include "platform/engine/Engine.h"

namespace platform {

namespace {

/// Shorter delays are not meant: programs show such frames for a tenth of a second.
constexpr double shortestDelay = 0.02;
constexpr double usualDelay = 0.1;

/// Walks the blocks of a GIF for the delay of each frame. Stops at the first thing that makes no sense.
class GIFBlocks {
 public:
  explicit GIFBlocks(std::string_view data) : data_(data) {}

  static bool isGIF(std::string_view data) { return data.starts_with("GIF87a") || data.starts_with("GIF89a"); }

  std::vector<double> delays(std::size_t most) {
    std::vector<double> result;
    at_ = 13;
    skipColors(byte(10));
    double delay = usualDelay;
    while (at_ < data_.size() && result.size() < most) {
      const int block = byte(at_++);
      if (block == 0x2C) {  // a frame: place and size, its own colours, its pixels
        if (at_ + 10 > data_.size()) break;
        const int flags = byte(at_ + 8);
        at_ += 9;
        skipColors(flags);
        ++at_;
        if (!skipSubBlocks()) break;
        result.push_back(delay);
        delay = usualDelay;
      } else if (block == 0x21) {
        if (byte(at_++) == 0xF9 && byte(at_) >= 4) {  // how the next frame is shown
          const double seconds = (byte(at_ + 2) + byte(at_ + 3) * 256) / 100.0;
          delay = seconds < shortestDelay ? usualDelay : seconds;
        }
        if (!skipSubBlocks()) break;
      } else {
        break;
      }
    }
    return result;
  }

 private:
  int byte(std::size_t at) const { return at < data_.size() ? static_cast<unsigned char>(data_[at]) : 0; }
  void skipColors(int flags) {
    if (flags & 0x80) at_ += std::size_t{3} << ((flags & 7) + 1);
  }
  bool skipSubBlocks() {
    while (at_ < data_.size()) {
      const int length = byte(at_++);
      if (length == 0) return true;
      at_ += static_cast<std::size_t>(length);
    }
    return false;
  }

  std::string_view data_;
  std::size_t at_ = 0;
};

/// More frames than this are not read.
constexpr std::size_t maximumFrames = 4096;

}  // namespace

CGImageSource::CGImageSource(std::unique_ptr<ImageSequence> sequence, std::vector<double> delays)
    : sequence_(std::move(sequence)), delays_(std::move(delays)) {}

CGImageSource::~CGImageSource() = default;

CGImageRef CGImageSource::imageAt(std::size_t index) {
  if (index >= delays_.size()) return nullptr;
  if (index < next_) {
    sequence_->rewind();
    next_ = 0;
  }
  CGImageRef image;
  while (next_ <= index) {
    image = sequence_->next();
    ++next_;
    if (!image) return nullptr;
  }
  const auto pixels = static_cast<std::uint64_t>(image->width()) * static_cast<std::uint64_t>(image->height());
  return pixels * (index + 1) <= static_cast<std::uint64_t>(Bitmap::maximumPixels) ? image : nullptr;
}

std::optional<double> CGImageSource::delayAt(std::size_t index) const {
  if (index >= delays_.size() || delays_[index] < 0) return std::nullopt;
  return delays_[index];
}

CGImageSourceRef CGImageSourceCreateWithData(std::string_view data) {
  std::unique_ptr<ImageSequence> sequence = Engine::shared().openImageSequence(data);
  if (!sequence) return nullptr;
  std::vector<double> delays{-1};
  if (GIFBlocks::isGIF(data)) delays = GIFBlocks(data).delays(maximumFrames);
  return std::make_shared<CGImageSource>(std::move(sequence), std::move(delays));
}

std::size_t CGImageSourceGetCount(const CGImageSourceRef& source) { return source ? source->count() : 0; }

CGImageRef CGImageSourceCreateImageAtIndex(const CGImageSourceRef& source, std::size_t index) {
  return source ? source->imageAt(index) : nullptr;
}

std::optional<JSONValue> CGImageSourceCopyPropertiesAtIndex(const CGImageSourceRef& source, std::size_t index) {
  if (!source || index >= source->count()) return std::nullopt;
  JSONValue properties = JSONValue::object();
  if (const std::optional<double> delay = source->delayAt(index)) {
    JSONValue gif = JSONValue::object({{std::string(kCGImagePropertyGIFDelayTime), *delay}});
    properties.set(std::string(kCGImagePropertyGIFDictionary), std::move(gif));
  }
  return properties;
}

}  // namespace platform
