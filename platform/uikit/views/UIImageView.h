#pragma once

#include <vector>

#include "platform/uikit/views/UIView.h"

namespace platform {

/// Shows a picture, or a run of pictures one after another. An image that itself holds frames plays at once. Main
/// thread.
class UIImageView : public Object<UIImageView, UIView> {
 public:
  UIImageView();
  ~UIImageView() override;
  using UIView::init;
  /// As large as the image.
  void init(const Ref<UIImage>& image);
  void initWithFrame(CGRect frame) override;

  virtual Ref<UIImage> image() const;
  virtual void setImage(const Ref<UIImage>& image);
  Ref<UIImage> highlightedImage() const { return highlightedImage_; }
  void setHighlightedImage(const Ref<UIImage>& image);
  bool isHighlighted() const { return highlighted_; }
  void setHighlighted(bool highlighted);

  const std::vector<Ref<UIImage>>& animationImages() const { return animationImages_; }
  void setAnimationImages(std::vector<Ref<UIImage>> images);
  /// Seconds of one cycle; 0 for a thirtieth of a second a picture.
  double animationDuration() const { return animationDuration_; }
  void setAnimationDuration(double seconds);
  /// 0 for ever.
  std::int64_t animationRepeatCount() const { return animationRepeatCount_; }
  void setAnimationRepeatCount(std::int64_t count);
  void startAnimating();
  void stopAnimating();
  bool isAnimating() const;
  /// The picture on the screen at this moment.
  Ref<UIImage> displayedImage() const;

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  void setContentMode(UIViewContentMode mode) override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void tintColorDidChange() override;
  void didMoveToWindow() override;

 private:
  struct Playback;
  std::vector<Ref<UIImage>> frames() const;
  double cycleDuration() const;
  void play();
  void scheduleFrame();

  Ref<UIImage> image_;
  Ref<UIImage> highlightedImage_;
  std::vector<Ref<UIImage>> animationImages_;
  double animationDuration_ = 0;
  std::int64_t animationRepeatCount_ = 0;
  bool highlighted_ = false;
  std::shared_ptr<Playback> playback_;
};

}  // namespace platform
