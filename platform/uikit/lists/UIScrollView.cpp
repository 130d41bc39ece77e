#include "platform/uikit/lists/UIScrollView.h"

#include <algorithm>
#include <cmath>

#include "platform/uikit/lists/ScrollState.h"

namespace platform {

using Adjustment = UIScrollViewContentInsetAdjustmentBehavior;

UIScrollView::UIScrollView() = default;

UIScrollView::~UIScrollView() = default;

void UIScrollView::exportMethods(MethodTable<UIScrollView>& table) { table.add<&UIScrollView::onPan>("handlePan:"); }

void UIScrollView::initWithFrame(CGRect frame) {
  scroll_ = std::make_unique<ScrollState>(*this);
  Super::initWithFrame(frame);
  setClipsToBounds(true);
  scroll_->lastSize = bounds().size;
  scroll_->pan = make<UIPanGestureRecognizer>(self(), sel("handlePan:"));
  scroll_->pan->setMaximumNumberOfTouches(1);
  addGestureRecognizer(scroll_->pan);
}

// ---- Offset

CGPoint UIScrollView::contentOffset() const {
  if (ScrollState::questioned == this) ScrollState::questioned = nullptr;
  return bounds().origin;
}

void UIScrollView::setContentOffset(CGPoint offset, bool animated) {
  if (!std::isfinite(offset.x) || !std::isfinite(offset.y)) return;
  scroll_->stopMoving();
  scroll_->forgetWheel();
  const CGPoint from = contentOffset();
  if (offset == from) return;
  if (animated && UIView::areAnimationsEnabled() && window()) {
    constexpr double seconds = 0.3;
    scroll_->motionX = ScrollMotion::travel(from.x, offset.x, seconds);
    scroll_->motionY = ScrollMotion::travel(from.y, offset.y, seconds);
    scroll_->startMoving(ScrollState::Moving::scrolling);
    return;
  }
  setBounds(CGRect{offset, bounds().size});
}

void UIScrollView::setBounds(CGRect newBounds) {
  const CGPoint before = bounds().origin;
  newBounds.origin = {newBounds.origin.x + 0.0, newBounds.origin.y + 0.0};  // no zero that calls itself negative
  Super::setBounds(newBounds);
  if (!scroll_ || newBounds.origin == before) return;
  setNeedsLayout();
  scroll_->indicators.follow(*this, {bounds(), scroll_->contentSize, adjustedContentInset()});
  contentOffsetDidChange();
  static const SEL didScroll = sel("scrollViewDidScroll:");
  scroll_->tell(didScroll);
}

void UIScrollView::setFrame(CGRect frame) { Super::setFrame(frame); }

CGSize UIScrollView::contentSize() const { return scroll_->contentSize; }

void UIScrollView::setContentSize(CGSize size) {
  if (size == scroll_->contentSize) return;
  const bool shrinks = size.width < scroll_->contentSize.width || size.height < scroll_->contentSize.height;
  scroll_->contentSize = size;
  if (shrinks) scroll_->settleIntoRange();
  setNeedsLayout();
}

UIEdgeInsets UIScrollView::contentInset() const { return scroll_->contentInset; }

void UIScrollView::setContentInset(UIEdgeInsets insets) {
  scroll_->contentInset = insets;
  safeAreaInsetsDidChange();
}

Adjustment UIScrollView::contentInsetAdjustmentBehavior() const { return scroll_->adjustment; }

void UIScrollView::setContentInsetAdjustmentBehavior(Adjustment behavior) {
  scroll_->adjustment = behavior;
  safeAreaInsetsDidChange();
}

UIEdgeInsets UIScrollView::adjustedContentInset() const {
  UIEdgeInsets insets = scroll_->contentInset;
  if (scroll_->adjustment == Adjustment::never) return insets;
  const UIEdgeInsets safe = safeAreaInsets();
  const CGSize size = bounds().size;
  const bool always = scroll_->adjustment == Adjustment::always;
  const bool vertically =
      always || scroll_->alwaysBounceVertical || contentSize().height > size.height - safe.top - safe.bottom;
  const bool horizontally = always || scroll_->alwaysBounceHorizontal || contentSize().width > size.width;
  if (vertically) {
    insets.top += safe.top;
    insets.bottom += safe.bottom;
  }
  if (horizontally) {
    insets.left += safe.left;
    insets.right += safe.right;
  }
  return insets;
}

void UIScrollView::safeAreaInsetsDidChange() {
  Super::safeAreaInsetsDidChange();
  const UIEdgeInsets insets = adjustedContentInset();
  const UIEdgeInsets before = scroll_->lastAdjustedInset;
  if (insets == before || !scroll_->ownsOffset()) return;
  scroll_->lastAdjustedInset = insets;
  // Content that stood at its top or left edge stays there; any other keeps its place on the screen.
  CGPoint offset = contentOffset();
  if (offset.y <= -before.top) offset.y = -insets.top;
  if (offset.x <= -before.left) offset.x = -insets.left;
  if (offset != contentOffset() && !scroll_->dragging && scroll_->moving == ScrollState::Moving::no &&
      !scroll_->ending) {
    setBounds(CGRect{offset, bounds().size});
  }
  setNeedsLayout();
}

void UIScrollView::scrollRectToVisible(CGRect rect, bool animated) {
  const CGSize size = bounds().size;
  const UIEdgeInsets insets = adjustedContentInset();
  CGPoint offset = contentOffset();
  const auto reveal = [](double at, double first, double length, double lead, double room) {
    if (first < at + lead) return first - lead;
    if (first + length > at + lead + room) return std::min(first, first + length - room) - lead;
    return at;
  };
  offset.x = reveal(offset.x, rect.origin.x, rect.size.width, insets.left, size.width - insets.left - insets.right);
  offset.y = reveal(offset.y, rect.origin.y, rect.size.height, insets.top, size.height - insets.top - insets.bottom);
  setContentOffset(scroll_->clamped(offset), animated);
}

void UIScrollView::layoutSubviews() {
  Super::layoutSubviews();
  safeAreaInsetsDidChange();  // whether the content scrolls decides whether the safe area counts
  const CGSize size = bounds().size;
  if (size != scroll_->lastSize) {
    scroll_->lastSize = size;
    scroll_->settleIntoRange();
  }
  scroll_->indicators.follow(*this, {bounds(), scroll_->contentSize, adjustedContentInset()});
}

void UIScrollView::didMoveToWindow() {
  Super::didMoveToWindow();
  if (!window() && scroll_) scroll_->stopMoving();
}

// ---- Delegate and properties

Ref<NSObject> UIScrollView::delegate() const { return scroll_->delegate.lock(); }
void UIScrollView::setDelegate(const Ref<NSObject>& delegate) { scroll_->delegate = delegate; }

bool UIScrollView::isScrollEnabled() const { return scroll_->scrollEnabled; }
void UIScrollView::setScrollEnabled(bool enabled) {
  scroll_->scrollEnabled = enabled;
  scroll_->pan->setEnabled(enabled);
}
bool UIScrollView::isPagingEnabled() const { return scroll_->paging; }
void UIScrollView::setPagingEnabled(bool enabled) { scroll_->paging = enabled; }
bool UIScrollView::bounces() const { return scroll_->bounces; }
void UIScrollView::setBounces(bool bounces) { scroll_->bounces = bounces; }
bool UIScrollView::alwaysBounceVertical() const { return scroll_->alwaysBounceVertical; }
void UIScrollView::setAlwaysBounceVertical(bool bounces) {
  scroll_->alwaysBounceVertical = bounces;
  setNeedsLayout();
}
bool UIScrollView::alwaysBounceHorizontal() const { return scroll_->alwaysBounceHorizontal; }
void UIScrollView::setAlwaysBounceHorizontal(bool bounces) {
  scroll_->alwaysBounceHorizontal = bounces;
  setNeedsLayout();
}
double UIScrollView::decelerationRate() const { return scroll_->decelerationRate; }
void UIScrollView::setDecelerationRate(double rate) { scroll_->decelerationRate = rate; }
bool UIScrollView::showsVerticalScrollIndicator() const { return scroll_->indicators.showsVertical; }
void UIScrollView::setShowsVerticalScrollIndicator(bool shows) { scroll_->indicators.showsVertical = shows; }
bool UIScrollView::showsHorizontalScrollIndicator() const { return scroll_->indicators.showsHorizontal; }
void UIScrollView::setShowsHorizontalScrollIndicator(bool shows) { scroll_->indicators.showsHorizontal = shows; }
void UIScrollView::flashScrollIndicators() {
  scroll_->indicators.show(*this, {bounds(), scroll_->contentSize, adjustedContentInset()});
}
UIScrollViewKeyboardDismissMode UIScrollView::keyboardDismissMode() const { return scroll_->keyboardDismissMode; }
void UIScrollView::setKeyboardDismissMode(UIScrollViewKeyboardDismissMode mode) { scroll_->keyboardDismissMode = mode; }
bool UIScrollView::canCancelContentTouches() const { return scroll_->canCancelContentTouches; }
void UIScrollView::setCanCancelContentTouches(bool can) { scroll_->canCancelContentTouches = can; }
const Ref<UIPanGestureRecognizer>& UIScrollView::panGestureRecognizer() const { return scroll_->pan; }

void UIScrollView::shiftContentOffset(CGPoint by) {
  scroll_->dragStart = scroll_->dragStart + by;
  scroll_->endedAt = scroll_->endedAt + by;
  scroll_->motionX.shift(by.x);
  scroll_->motionY.shift(by.y);
  setBounds(CGRect{contentOffset() + by, bounds().size});
}

bool UIScrollView::isScrollingAnimated() const { return scroll_->moving == ScrollState::Moving::scrolling; }

void UIScrollView::retargetScrolling(CGPoint offset) {
  scroll_->motionX.retarget(scroll_->movedSeconds, offset.x);
  scroll_->motionY.retarget(scroll_->movedSeconds, offset.y);
}

bool UIScrollView::isHeld() const { return scroll_->held; }
bool UIScrollView::isTracking() const { return scroll_->held || scroll_->pan->numberOfTouches() > 0; }
bool UIScrollView::isDragging() const { return scroll_->dragging; }
bool UIScrollView::isDecelerating() const { return scroll_->moving == ScrollState::Moving::gliding; }

}  // namespace platform
