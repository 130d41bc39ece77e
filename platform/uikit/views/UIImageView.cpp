#include "platform/uikit/views/UIImageView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"

namespace platform {

/// A run of pictures that is on: since when, and until how many rounds are over.
struct UIImageView::Playback {
  double startedAt = 0;
  std::int64_t rounds = 0;  ///< 0 for ever
};

UIImageView::UIImageView() = default;
UIImageView::~UIImageView() = default;

void UIImageView::init(const Ref<UIImage>& image) {
  initWithFrame(CGRect{CGPoint{}, image ? image->size() : CGSize{}});
  setImage(image);
}

void UIImageView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setUserInteractionEnabled(false);
}

Ref<UIImage> UIImageView::image() const { return image_; }

void UIImageView::setImage(const Ref<UIImage>& image) {
  if (image_ == image) return;
  const bool resized = (image_ ? image_->size() : CGSize{-1, -1}) != (image ? image->size() : CGSize{-1, -1});
  image_ = image;
  if (animationImages_.empty()) playback_ = nullptr;
  setNeedsDisplay();
  if (resized) invalidateIntrinsicContentSize();
  play();
}

void UIImageView::setHighlightedImage(const Ref<UIImage>& image) {
  highlightedImage_ = image;
  setNeedsDisplay();
}

void UIImageView::setHighlighted(bool highlighted) {
  if (highlighted_ == highlighted) return;
  highlighted_ = highlighted;
  setNeedsDisplay();
}

void UIImageView::setContentMode(UIViewContentMode mode) {
  Super::setContentMode(mode);
  setNeedsDisplay();
}

void UIImageView::tintColorDidChange() {
  Super::tintColorDidChange();
  setNeedsDisplay();
}

CGSize UIImageView::intrinsicContentSize() const {
  return image_ ? image_->size() : CGSize{UIViewNoIntrinsicMetric, UIViewNoIntrinsicMetric};
}

CGSize UIImageView::sizeThatFits(CGSize) const { return image_ ? image_->size() : CGSize{}; }

// ---- Moving pictures

void UIImageView::setAnimationImages(std::vector<Ref<UIImage>> images) {
  std::erase(images, nullptr);
  stopAnimating();
  animationImages_ = std::move(images);
}

void UIImageView::setAnimationDuration(double seconds) { animationDuration_ = std::max(0.0, seconds); }
void UIImageView::setAnimationRepeatCount(std::int64_t count) {
  animationRepeatCount_ = std::max<std::int64_t>(0, count);
}

std::vector<Ref<UIImage>> UIImageView::frames() const {
  if (!animationImages_.empty()) return animationImages_;
  return image_ ? image_->images() : std::vector<Ref<UIImage>>{};
}

double UIImageView::cycleDuration() const {
  constexpr double shortest = 0.01;
  if (animationImages_.empty()) return image_ ? std::max(image_->duration(), shortest) : shortest;
  const double standard = static_cast<double>(animationImages_.size()) / 30;
  return std::max(animationDuration_ > 0 ? animationDuration_ : standard, shortest);
}

void UIImageView::startAnimating() {
  if (frames().size() < 2) return;
  playback_ = std::make_shared<Playback>(Playback{Clock::mediaTime(), animationRepeatCount_});
  scheduleFrame();
}

void UIImageView::stopAnimating() {
  playback_ = nullptr;
  setNeedsDisplay();
}

bool UIImageView::isAnimating() const {
  if (!playback_) return false;
  return playback_->rounds == 0 ||
         Clock::mediaTime() < playback_->startedAt + static_cast<double>(playback_->rounds) * cycleDuration();
}

void UIImageView::play() {
  const bool movesByItself = animationImages_.empty() && image_ && image_->images().size() > 1;
  if (movesByItself && !playback_ && window()) startAnimating();
}

void UIImageView::didMoveToWindow() {
  Super::didMoveToWindow();
  if (!window()) return;
  play();
  if (playback_) scheduleFrame();
}

void UIImageView::scheduleFrame() {
  setNeedsDisplay();
  if (!isAnimating() || !window()) return;
  const double frame = cycleDuration() / static_cast<double>(frames().size());
  const double elapsed = Clock::mediaTime() - playback_->startedAt;
  const double next = (std::floor(elapsed / frame + 1e-6) + 1) * frame - elapsed;
  const Weak<UIImageView> weak = weakSelf();
  DispatchQueue::main().asyncAfter(next, [weak, playback = std::weak_ptr<Playback>(playback_)] {
    const Ref<UIImageView> view = weak.lock();
    if (view && view->playback_ && view->playback_ == playback.lock()) view->scheduleFrame();
  });
}

Ref<UIImage> UIImageView::displayedImage() const {
  if (highlighted_ && highlightedImage_) return highlightedImage_;
  if (!isAnimating()) return image_;
  const std::vector<Ref<UIImage>> all = frames();
  if (all.empty()) return image_;
  const double part = (Clock::mediaTime() - playback_->startedAt) / cycleDuration();
  const auto index = static_cast<std::size_t>((part - std::floor(part)) * static_cast<double>(all.size()) + 1e-6);
  return all[std::min(index, all.size() - 1)];
}

// ---- Drawing

namespace {

CGRect placed(CGSize picture, CGRect bounds, UIViewContentMode mode) {
  const auto centred = [&](CGSize size) {
    return CGRect{bounds.midX() - size.width / 2, bounds.midY() - size.height / 2, size.width, size.height};
  };
  const double x = bounds.size.width / picture.width;
  const double y = bounds.size.height / picture.height;
  CGRect rect = centred(picture);
  switch (mode) {
    case UIViewContentMode::scaleToFill:
    case UIViewContentMode::redraw:
      return bounds;
    case UIViewContentMode::scaleAspectFit:
      return centred({picture.width * std::min(x, y), picture.height * std::min(x, y)});
    case UIViewContentMode::scaleAspectFill:
      return centred({picture.width * std::max(x, y), picture.height * std::max(x, y)});
    case UIViewContentMode::center:
      return rect;
    case UIViewContentMode::top:
      rect.origin.y = bounds.minY();
      return rect;
    case UIViewContentMode::bottom:
      rect.origin.y = bounds.maxY() - rect.size.height;
      return rect;
    case UIViewContentMode::left:
      rect.origin.x = bounds.minX();
      return rect;
    case UIViewContentMode::right:
      rect.origin.x = bounds.maxX() - rect.size.width;
      return rect;
  }
  return bounds;
}

}  // namespace

void UIImageView::draw(CGRect, CGContext& context) {
  Ref<UIImage> picture = displayedImage();
  if (!picture || picture->size().width <= 0 || picture->size().height <= 0 || bounds().isEmpty()) return;
  if (picture->renderingMode() == UIImageRenderingMode::alwaysTemplate) {
    picture = picture->imageWithTintColor(tintColor());
  }
  context.drawImage(*picture, placed(picture->size(), bounds(), contentMode()));
}

}  // namespace platform
