#include "platform/graphics/UIImage.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "platform/engine/Engine.h"
#include "platform/graphics/PictureBudget.h"

namespace platform {

namespace {

double heldScale(double scale) { return std::isfinite(scale) && scale > 0 ? scale : 1; }

}  // namespace

Ref<UIImage> UIImage::imageWithData(std::string_view data, double scale) {
  CGImageRef bitmap = Engine::shared().decodeImage(data, {});
  return bitmap ? make<UIImage>(std::move(bitmap), heldScale(scale)) : nullptr;
}

Ref<UIImage> UIImage::imageWithData(std::string_view data, const PictureBudget& budget, double scale) {
  const std::optional<PictureFacts> facts = PictureFacts::of(data);
  if (!facts || budget.admittedFrames(*facts) == 0) return nullptr;
  CGImageRef bitmap = Engine::shared().decodeImage(data, budget.limits());
  return bitmap ? make<UIImage>(std::move(bitmap), heldScale(scale)) : nullptr;
}

Ref<UIImage> UIImage::imageWithContentsOfFile(const std::string& path, double scale) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return nullptr;
  const std::string data((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  return imageWithData(data, scale);
}

Ref<UIImage> UIImage::imageWithBitmap(Bitmap bitmap, double scale) {
  if (bitmap.isEmpty()) return nullptr;
  return make<UIImage>(std::make_shared<const Bitmap>(std::move(bitmap)), heldScale(scale));
}

Ref<UIImage> UIImage::animatedImage(std::vector<Ref<UIImage>> frames, double duration) {
  std::erase(frames, nullptr);
  if (frames.empty()) return nullptr;
  auto image = make<UIImage>(frames.front()->bitmap_, frames.front()->scale_);
  const bool usable = std::isfinite(duration) && duration > 0;
  image->duration_ = usable ? duration : static_cast<double>(frames.size()) / 10;
  image->frames_ = std::move(frames);
  return image;
}

const UIImage& UIImage::frameAt(double seconds) const {
  if (frames_.empty()) return *this;
  const double round = std::fmod(std::max(0.0, seconds), duration_) / duration_;
  const auto index = static_cast<std::size_t>(round * static_cast<double>(frames_.size()) + 1e-9);
  return *frames_[std::min(index, frames_.size() - 1)];
}

Ref<UIImage> UIImage::imageWithRenderingMode(UIImageRenderingMode mode) const {
  auto image = make<UIImage>(bitmap_, scale_);
  image->frames_ = frames_;
  image->duration_ = duration_;
  image->renderingMode_ = mode;
  return image;
}

Ref<UIImage> UIImage::imageWithTintColor(const UIColor& color) const {
  const auto byte = [](double part) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(part, 0.0, 1.0) * 255));
  };
  const std::uint32_t red = byte(color.red()), green = byte(color.green()), blue = byte(color.blue());
  const std::uint32_t opacity = byte(color.alpha());
  Bitmap tinted(bitmap_->width(), bitmap_->height());
  const std::size_t count = static_cast<std::size_t>(tinted.width()) * static_cast<std::size_t>(tinted.height());
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t alpha = ((bitmap_->data()[i] >> 24) * opacity + 127) / 255;
    const auto part = [alpha](std::uint32_t value) { return (value * alpha + 127) / 255; };
    tinted.data()[i] = alpha << 24 | part(red) << 16 | part(green) << 8 | part(blue);
  }
  return make<UIImage>(std::make_shared<const Bitmap>(std::move(tinted)), scale_);
}

std::string UIImage::pngRepresentation() const { return Engine::shared().encodePNG(*bitmap_); }

std::string UIImage::description() const {
  char text[96];
  std::snprintf(text, sizeof text, "<UIImage: %g x %g points at %g>", size().width, size().height, scale_);
  return text;
}

std::string UIImagePNGRepresentation(const UIImage& image) { return image.pngRepresentation(); }

}  // namespace platform
