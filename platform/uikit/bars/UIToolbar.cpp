#include "platform/uikit/bars/UIToolbar.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/bars/UIBarButtonItem.h"
#include "platform/uikit/bars/_UIBarBackground.h"

namespace platform {

namespace {

constexpr double edge = 8;

}  // namespace

UIToolbar::UIToolbar() = default;
UIToolbar::~UIToolbar() = default;

void UIToolbar::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  background_ = make<_UIBarBackground>(_UIBarBackground::Edge::top);
  addSubview(background_);
}

void UIToolbar::setItems(std::vector<Ref<UIBarButtonItem>> items, bool animated) {
  std::erase(items, nullptr);
  if (items == items_) return;
  const auto old = std::exchange(items_, std::move(items));
  for (const Ref<UIBarButtonItem>& item : old) {
    const Ref<UIView> view = item->view();
    const bool stays = std::find(items_.begin(), items_.end(), item) != items_.end();
    if (view && !stays && view->superview().get() == this) view->removeFromSuperview();
    if (!stays && item->bar_.lock().get() == this) item->bar_.reset();
  }
  std::vector<Ref<UIView>> fresh;
  for (const Ref<UIBarButtonItem>& item : items_) {
    const Ref<UIView> view = item->ensureView();
    item->bar_ = self();
    if (!view || view->superview().get() == this) continue;
    addSubview(view);
    fresh.push_back(view);
  }
  setNeedsLayout();
  if (!animated || !window()) return;
  UIView::performWithoutAnimation([&] {
    layoutIfNeeded();
    for (const Ref<UIView>& view : fresh) view->setAlpha(0);
  });
  UIView::animateWithDuration(0.25, [&] {
    for (const Ref<UIView>& view : fresh) view->setAlpha(1);
  });
}

void UIToolbar::setBarTintColor(std::optional<UIColor> color) {
  barTintColor_ = color;
  background_->setColor(color);
}

void UIToolbar::setBottomExtension(double points) {
  if (bottomExtension_ == points) return;
  bottomExtension_ = points;
  setNeedsLayout();
}

CGSize UIToolbar::sizeThatFits(CGSize size) const { return {size.width, standardHeight}; }
CGSize UIToolbar::intrinsicContentSize() const { return {UIViewNoIntrinsicMetric, standardHeight}; }

void UIToolbar::layoutSubviews() {
  Super::layoutSubviews();
  const CGSize size = bounds().size;
  background_->setFrame({0, 0, size.width, size.height + bottomExtension_});

  double used = 2 * edge;
  int flexible = 0;
  std::vector<CGSize> sizes;
  for (const Ref<UIBarButtonItem>& item : items_) {
    const Ref<UIView> view = item->view();
    CGSize own = view ? sizeInBar(view, size) : CGSize{item->isFixedSpace() ? item->width() : 0, 0};
    flexible += item->isFlexibleSpace() ? 1 : 0;
    used += own.width;
    sizes.push_back(own);
  }
  const double share = flexible > 0 ? std::max(0.0, size.width - used) / flexible : 0;
  double x = edge;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    if (const Ref<UIView> view = items_[i]->view()) {
      view->setFrame({x, (size.height - sizes[i].height) / 2, sizes[i].width, sizes[i].height});
    }
    x += items_[i]->isFlexibleSpace() ? share : sizes[i].width;
  }
}

}  // namespace platform
