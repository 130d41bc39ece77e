#pragma once

#include <optional>

#include "platform/uikit/controls/UIControl.h"

namespace platform {

/// Dots for pages, one of them the current. A tap beside it turns a page and sends valueChanged. Main thread.
class UIPageControl : public Object<UIPageControl, UIControl> {
 public:
  void initWithFrame(CGRect frame) override;
  std::int64_t numberOfPages() const { return pages_; }
  void setNumberOfPages(std::int64_t pages);
  std::int64_t currentPage() const { return current_; }
  /// Held to the pages there are.
  void setCurrentPage(std::int64_t page);
  bool hidesForSinglePage() const { return hidesForSinglePage_; }
  void setHidesForSinglePage(bool hides);
  void setPageIndicatorTintColor(std::optional<UIColor> color);
  void setCurrentPageIndicatorTintColor(std::optional<UIColor> color);

  CGSize sizeThatFits(CGSize size) const override;
  CGSize intrinsicContentSize() const override;
  bool drawsItself() const override { return true; }
  void draw(CGRect rect, CGContext& context) override;
  void stateDidChange() override { setNeedsDisplay(); }
  void endTracking(const Ref<UITouch>& touch, const Ref<UIEvent>& event) override;

 private:
  std::int64_t pages_ = 0;
  std::int64_t current_ = 0;
  bool hidesForSinglePage_ = false;
  std::optional<UIColor> tint_;
  std::optional<UIColor> currentTint_;
};

}  // namespace platform
