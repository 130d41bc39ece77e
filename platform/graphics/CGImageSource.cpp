#include "platform/graphics/CGImageSource.h"

#include "platform/engine/Engine.h"

namespace platform {

CGImageSource::CGImageSource(std::unique_ptr<ImageSequence> sequence, PictureFacts facts, std::size_t admittedFrames)
    : sequence_(std::move(sequence)), facts_(std::move(facts)), admittedFrames_(admittedFrames) {}

CGImageSource::~CGImageSource() = default;

CGImageRef CGImageSource::imageAt(std::size_t index) {
  if (index >= admittedFrames_) return nullptr;
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
  return image;
}

std::optional<double> CGImageSource::delayAt(std::size_t index) const {
  return index < facts_.delays.size() ? std::optional(facts_.delays[index]) : std::nullopt;
}

CGImageSourceRef CGImageSourceCreateWithData(std::string_view data, const PictureBudget& budget) {
  std::optional<PictureFacts> facts = PictureFacts::of(data);
  const std::size_t admitted = facts ? budget.admittedFrames(*facts) : 0;
  if (admitted == 0) return nullptr;
  std::unique_ptr<ImageSequence> sequence = Engine::shared().openImageSequence(data, budget.limits());
  return sequence ? std::make_shared<CGImageSource>(std::move(sequence), std::move(*facts), admitted) : nullptr;
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
