#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"
#include "platform/runtime/Object.h"

namespace platform {

struct PictureBudget;

/// How a control that has a tint colour shows a picture.
enum class UIImageRenderingMode : std::uint8_t { automatic, alwaysOriginal, alwaysTemplate };

/// A picture, or a moving one: frames of equal time. Never changes, so any thread may read it.
class UIImage : public Object<UIImage, NSObject> {
 public:
  UIImage(CGImageRef bitmap, double scale) : bitmap_(std::move(bitmap)), scale_(scale) {}

  /// From the bytes of a PNG, JPEG or GIF (its first frame). None for anything else, for damaged data and for more than
  /// Bitmap::maximumPixels. Any thread.
  static Ref<UIImage> imageWithData(std::string_view data, double scale = 1);
  /// The same of data that came from an address: none, and little work done, for what asks for more than the budget.
  static Ref<UIImage> imageWithData(std::string_view data, const PictureBudget& budget, double scale = 1);
  static Ref<UIImage> imageWithContentsOfFile(const std::string& path, double scale = 1);
  static Ref<UIImage> imageWithBitmap(Bitmap bitmap, double scale = 1);
  /// A moving picture; `duration` in seconds is that of one round (a tenth of a second a frame when not positive). None
  /// without frames.
  static Ref<UIImage> animatedImage(std::vector<Ref<UIImage>> frames, double duration);

  /// Points.
  CGSize size() const { return {bitmap_->width() / scale_, bitmap_->height() / scale_}; }
  /// Pixels a point.
  double scale() const { return scale_; }
  const CGImageRef& cgImage() const { return bitmap_; }

  /// The frames of a moving picture; empty for a still one.
  const std::vector<Ref<UIImage>>& images() const { return frames_; }
  double duration() const { return duration_; }
  /// The frame that shows after that many seconds, round after round; the picture itself when it is still.
  const UIImage& frameAt(double seconds) const;

  UIImageRenderingMode renderingMode() const { return renderingMode_; }
  Ref<UIImage> imageWithRenderingMode(UIImageRenderingMode mode) const;
  /// Its shape filled with the colour; a still picture.
  Ref<UIImage> imageWithTintColor(const UIColor& color) const;

  /// The bytes of a PNG file.
  std::string pngRepresentation() const;
  /// "<UIImage: 120 x 44 points at 2>": the same for every run of a program.
  std::string description() const override;

 private:
  CGImageRef bitmap_;
  double scale_;
  std::vector<Ref<UIImage>> frames_;
  double duration_ = 0;
  UIImageRenderingMode renderingMode_ = UIImageRenderingMode::automatic;
};

std::string UIImagePNGRepresentation(const UIImage& image);

}  // namespace platform
