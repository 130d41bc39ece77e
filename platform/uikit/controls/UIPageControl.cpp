#include "platform/uikit/controls/UIPageControl.h"

#include <algorithm>

#include "platform/graphics/CGContext.h"

namespace platform {

namespace {

constexpr double dot = 7;
constexpr double pitch = 16;
constexpr double height = 26;
constexpr std::int64_t mostDots = 100;

}  // namespace

void UIPageControl::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setContentMode(UIViewContentMode::redraw);
}

void UIPageControl::setNumberOfPages(std::int64_t pages) {
  pages_ = std::max<std::int64_t>(0, pages);
  setCurrentPage(current_);
  setHidden(hidesForSinglePage_ && pages_ <= 1);
  invalidateIntrinsicContentSize();
  setNeedsDisplay();
}

void UIPageControl::setCurrentPage(std::int64_t page) {
  current_ = std::clamp<std::int64_t>(page, 0, std::max<std::int64_t>(0, pages_ - 1));
  setNeedsDisplay();
}

void UIPageControl::setHidesForSinglePage(bool hides) {
  hidesForSinglePage_ = hides;
  setNumberOfPages(pages_);
}

void UIPageControl::setPageIndicatorTintColor(std::optional<UIColor> color) {
  tint_ = color;
  setNeedsDisplay();
}

void UIPageControl::setCurrentPageIndicatorTintColor(std::optional<UIColor> color) {
  currentTint_ = color;
  setNeedsDisplay();
}

CGSize UIPageControl::intrinsicContentSize() const {
  return {static_cast<double>(std::min(pages_, mostDots)) * pitch + pitch, height};
}

CGSize UIPageControl::sizeThatFits(CGSize) const { return intrinsicContentSize(); }

void UIPageControl::draw(CGRect, CGContext& context) {
  const CGRect all = bounds();
  const std::int64_t dots = std::min(pages_, mostDots);
  double x = all.midX() - static_cast<double>(dots) * pitch / 2 + (pitch - dot) / 2;
  for (std::int64_t page = 0; page < dots; ++page, x += pitch) {
    const UIColor color =
        page == current_ ? currentTint_.value_or(UIColor::darkGray()) : tint_.value_or(UIColor::systemGray3());
    context.setFillColor(isEnabled() ? color : color.colorWithAlphaComponent(color.alpha() * 0.4));
    context.fillEllipse({x, all.midY() - dot / 2, dot, dot});
  }
}

void UIPageControl::endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>&) {
  const std::int64_t before = current_;
  setCurrentPage(current_ + (touch->locationInView(this).x > bounds().midX() ? 1 : -1));
  if (current_ != before) sendActionsForControlEvents(UIControlEvents::valueChanged);
}

}  // namespace platform
