#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/runtime/OptionalMessage.h"
#include "platform/uikit/controls/UIControl.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/lists/ScrollState.h"
#include "platform/uikit/touch/ApplicationHost.h"

namespace platform {

// ---- Where the content may stand

ScrollState::Range ScrollState::rangeX() const {
  const UIEdgeInsets insets = view.adjustedContentInset();
  const double least = -insets.left;
  return {least, std::max(least, view.contentSize().width + insets.right - view.bounds().size.width)};
}

ScrollState::Range ScrollState::rangeY() const {
  const UIEdgeInsets insets = view.adjustedContentInset();
  const double least = -insets.top;
  return {least, std::max(least, view.contentSize().height + insets.bottom - view.bounds().size.height)};
}

bool ScrollState::scrollsX() const {
  const Range range = rangeX();
  return range.most > range.least || (bounces && alwaysBounceHorizontal);
}

bool ScrollState::scrollsY() const {
  const Range range = rangeY();
  return range.most > range.least || (bounces && alwaysBounceVertical);
}

CGPoint ScrollState::clamped(CGPoint offset) const {
  const Range x = rangeX();
  const Range y = rangeY();
  return {std::clamp(offset.x, x.least, x.most), std::clamp(offset.y, y.least, y.most)};
}

bool ScrollState::isOutside() const {
  const CGPoint offset = view.contentOffset();
  return clamped(offset) != offset;
}

bool ScrollState::ownsOffset() {
  const UIScrollView* const before = std::exchange(questioned, &view);
  view.contentOffset();
  return std::exchange(questioned, before) != &view;
}

void ScrollState::settleIntoRange() {
  if (!ownsOffset()) return;
  if (moving == Moving::gliding) {
    const CGPoint goal{motionX.target(), motionY.target()};
    if (clamped(goal) != goal) goOnGliding();
    return;
  }
  if (dragging || held) return;
  // Only what lies beyond the end is brought back: content pulled down by program stays where it was put.
  const CGPoint offset = view.contentOffset();
  const CGPoint inside = clamped(offset);
  const CGPoint settled{std::min(offset.x, inside.x), std::min(offset.y, inside.y)};
  if (settled != offset) view.setContentOffset(settled, false);
}

void ScrollState::tell(SEL selector) const { sendOptional(delegate.lock(), selector, view.shared_from_this()); }

// ---- Moving by itself

void ScrollState::startMoving(Moving kind) {
  moving = kind;
  movedSeconds = 0;
  indicators.show(view, {view.bounds(), contentSize, view.adjustedContentInset()});
  const Weak<NSObject> alive = view.shared_from_this();
  ticker.start([this, alive](double seconds) {
    if (const Ref<NSObject> keeper = alive.lock()) tick(seconds);
  });
}

void ScrollState::tick(double seconds) {
  movedSeconds = seconds;
  const bool over = motionX.isOver(seconds) && motionY.isOver(seconds);
  const double scale = UIScreen::main().scale();
  const auto onPixel = [scale](double value) { return std::round(value * scale) / scale; };
  const CGPoint offset = over ? CGPoint{motionX.target(), motionY.target()}
                              : CGPoint{onPixel(motionX.position(seconds)), onPixel(motionY.position(seconds))};
  const Moving kind = moving;
  view.setBounds(CGRect{offset, view.bounds().size});
  if (!over || moving != kind || movedSeconds != seconds) return;  // the delegate may have sent it elsewhere
  stopMoving();
}

void ScrollState::stopMoving() {
  if (moving == Moving::no) return;
  static const SEL didEndDecelerating = sel("scrollViewDidEndDecelerating:");
  static const SEL didEndAnimation = sel("scrollViewDidEndScrollingAnimation:");
  ticker.stop();
  const bool glided = moving == Moving::gliding;
  moving = Moving::no;
  tell(glided ? didEndDecelerating : didEndAnimation);
}

// ---- Following the finger

void UIScrollView::onPan(const Ref<NSObject>&) {
  switch (scroll_->pan->state()) {
    case UIGestureRecognizerState::began:
      scroll_->dragBegan();
      scroll_->dragMoved();
      break;
    case UIGestureRecognizerState::changed:
      scroll_->dragMoved();
      break;
    case UIGestureRecognizerState::ended:
      scroll_->dragMoved();
      scroll_->dragEnded(false);
      break;
    case UIGestureRecognizerState::cancelled:
    case UIGestureRecognizerState::failed:
      scroll_->dragEnded(true);
      break;
    case UIGestureRecognizerState::possible:
      break;
  }
}

void ScrollState::dragBegan() {
  static const SEL willBeginDragging = sel("scrollViewWillBeginDragging:");
  stopMoving();
  forgetWheel();
  held = false;
  dragging = true;
  const auto unbanded = [](double at, Range range, double dimension) {
    if (at < range.least) return range.least + ScrollMotion::rubberBandInverse(at - range.least, dimension);
    if (at > range.most) return range.most + ScrollMotion::rubberBandInverse(at - range.most, dimension);
    return at;
  };
  const CGPoint offset = view.contentOffset();
  const CGSize size = view.bounds().size;
  dragStart = {unbanded(offset.x, rangeX(), size.width), unbanded(offset.y, rangeY(), size.height)};
  indicators.show(view, {view.bounds(), contentSize, view.adjustedContentInset()});
  if (keyboardDismissMode == UIScrollViewKeyboardDismissMode::onDrag) {
    if (const Ref<UIView> window = view.windowView()) window->endEditing(true);
  }
  tell(willBeginDragging);
}

void ScrollState::dragMoved() {
  if (!dragging) return;
  const auto place = [this](double raw, double now, Range range, bool scrolls, double dimension) {
    if (!scrolls) return now;
    if (raw >= range.least && raw <= range.most) return raw;
    const double edge = raw < range.least ? range.least : range.most;
    return bounces ? edge + ScrollMotion::rubberBand(raw - edge, dimension) : edge;
  };
  // The view's own coordinates move with the content; the window's do not.
  const CGPoint moved = pan->translationInView(nullptr);
  const CGPoint now = view.contentOffset();
  const CGSize size = view.bounds().size;
  const CGPoint offset{place(dragStart.x - moved.x, now.x, rangeX(), scrollsX(), size.width),
                       place(dragStart.y - moved.y, now.y, rangeY(), scrollsY(), size.height)};
  if (keyboardDismissMode == UIScrollViewKeyboardDismissMode::interactive) {
    const CGRect keyboard = ApplicationHost::shared().keyboardFrame();
    const Ref<UIView> window = view.windowView();
    if (window && !keyboard.isEmpty() && pan->locationInView(nullptr).y > keyboard.minY()) window->endEditing(true);
  }
  view.setBounds(CGRect{offset, size});
  indicators.show(view, {view.bounds(), contentSize, view.adjustedContentInset()});
}

void ScrollState::dragEnded(bool cancelled) {
  if (!dragging) return;
  static const SEL didEndDragging = sel("scrollViewDidEndDragging:willDecelerate:");
  static const SEL willBeginDecelerating = sel("scrollViewWillBeginDecelerating:");
  static const SEL didEndDecelerating = sel("scrollViewDidEndDecelerating:");
  dragging = false;
  endedAt = view.contentOffset();
  const Range x = rangeX();
  const Range y = rangeY();
  CGPoint speed = cancelled ? CGPoint{} : pan->velocityInView(nullptr);
  speed = {scrollsX() ? -speed.x : 0, scrollsY() ? -speed.y : 0};
  bool glides = planRest(speed);
  const bool toldToGlide = glides;
  ending = true;
  sendOptional(delegate.lock(), didEndDragging, view.shared_from_this(), glides);
  ending = false;
  if (dragging || moving != Moving::no) return;
  // The delegate may have moved the content, or given it other edges: it comes to rest from there.
  if (view.contentOffset() != endedAt) {
    glides = planRest({});
  } else if (rangeX() != x || rangeY() != y) {
    glides = planRest(speed);
  }
  if (!glides) {
    indicators.show(view, {view.bounds(), contentSize, view.adjustedContentInset()});
    if (toldToGlide) tell(didEndDecelerating);  // nobody shall wait for the end for ever
    return;
  }
  startMoving(Moving::gliding);
  tell(willBeginDecelerating);
}

bool ScrollState::planRest(CGPoint speed) {
  const CGPoint offset = view.contentOffset();
  const CGSize size = view.bounds().size;
  const auto motion = [this](double at, double velocity, Range range, double page) {
    if (!paging || page <= 0) {
      return ScrollMotion::glide(at, velocity, {range.least, range.most, bounces}, decelerationRate);
    }
    constexpr double enoughToTurn = 100;  // points a second
    const double pages = (at - range.least) / page;
    const double turned = velocity > enoughToTurn    ? std::floor(pages) + 1
                          : velocity < -enoughToTurn ? std::ceil(pages) - 1
                                                     : std::round(pages);
    return ScrollMotion::spring(at, velocity, std::clamp(range.least + turned * page, range.least, range.most));
  };
  motionX = motion(offset.x, speed.x, rangeX(), size.width);
  motionY = motion(offset.y, speed.y, rangeY(), size.height);
  const CGPoint proposed{motionX.target(), motionY.target()};
  const CGPoint wanted = view.restingOffset(proposed);
  if (wanted.x != proposed.x) motionX = ScrollMotion::spring(offset.x, speed.x, wanted.x);
  if (wanted.y != proposed.y) motionY = ScrollMotion::spring(offset.y, speed.y, wanted.y);
  const bool rests = speed == CGPoint{} && CGPoint{motionX.target(), motionY.target()} == offset;
  return !rests && (!motionX.isOver(0) || !motionY.isOver(0));
}

void ScrollState::comeToRest(CGPoint speed) {
  static const SEL willBeginDecelerating = sel("scrollViewWillBeginDecelerating:");
  if (!isOnItsOwn() || !planRest(speed)) return;
  startMoving(Moving::gliding);
  tell(willBeginDecelerating);
}

void ScrollState::goOnGliding() {
  const auto motion = [this](const ScrollMotion& before, Range range) {
    const double at = before.position(movedSeconds);
    const double speed = before.velocity(movedSeconds);
    const double goal = std::clamp(before.target(), range.least, range.most);
    if (goal != before.target() || paging) return ScrollMotion::spring(at, speed, goal);
    return ScrollMotion::glide(at, speed, {range.least, range.most, bounces}, decelerationRate);
  };
  motionX = motion(motionX, rangeX());
  motionY = motion(motionY, rangeY());
  startMoving(Moving::gliding);
}

// ---- The wheel of a mouse

namespace {

/// The offset moved by a part of the content's way, held within the content.
double moved(double offset, double delta, double least, double most) {
  return std::clamp(offset - delta, std::min(offset, least), std::max({offset, least, most}));
}

constexpr double wheelPause = 0.15;  // seconds after which the wheel is taken to stand still

}  // namespace

void ScrollState::forgetWheel() {
  if (wheelRest) wheelRest->cancel();
  wheelRest = nullptr;
  wheelSpeed = {};
}

bool UIScrollView::scrollByWheel(CGVector delta) {
  const auto x = scroll_->rangeX();
  const auto y = scroll_->rangeY();
  const CGPoint offset = contentOffset();
  const CGPoint wanted{moved(offset.x, delta.dx, x.least, x.most), moved(offset.y, delta.dy, y.least, y.most)};
  if (wanted == offset) return false;
  setContentOffset(wanted, false);
  scroll_->wheelSpeed = {wanted.x - offset.x, wanted.y - offset.y};
  scroll_->wheelRest = DispatchQueue::main().asyncAfter(wheelPause, [weak = weakSelf()] {
    const Ref<UIScrollView> view = weak.lock();
    if (view && view->scroll_->isOnItsOwn()) view->settle();
  });
  return true;
}

void UIScrollView::settle() {
  CGPoint speed;
  if (scroll_->paging) {  // a page that the wheel began to turn is turned
    const auto turning = [](double by) { return by == 0 ? 0.0 : std::copysign(200.0, by); };
    const CGPoint page = contentOffset();
    const CGSize size = bounds().size;
    const bool isOnPage = std::remainder(page.x - scroll_->rangeX().least, size.width) == 0 &&
                          std::remainder(page.y - scroll_->rangeY().least, size.height) == 0;
    if (!isOnPage) speed = {turning(scroll_->wheelSpeed.x), turning(scroll_->wheelSpeed.y)};
  }
  scroll_->forgetWheel();
  if (scroll_->isOutside() || scroll_->paging) scroll_->comeToRest(speed);
}

// ---- Touches that are no drag: a finger on moving content stops it

Ref<UIView> UIScrollView::hitTest(CGPoint point, const Ref<UIEvent>& event) {
  Ref<UIView> hit = Super::hitTest(point, event);
  if (hit && scroll_->moving == ScrollState::Moving::gliding) return self();
  return hit;
}

void UIScrollView::touchesBegan(const UITouches& touches, const Ref<UIEvent>& event) {
  if (scroll_->moving == ScrollState::Moving::gliding) {
    scroll_->held = true;  // before anybody is told that it stands: it is not at rest, a finger holds it
    scroll_->stopMoving();
    return;
  }
  Super::touchesBegan(touches, event);
}

void UIScrollView::touchesEnded(const UITouches& touches, const Ref<UIEvent>& event) {
  if (!scroll_->held) {
    Super::touchesEnded(touches, event);
    return;
  }
  scroll_->held = false;
  settle();
}

void UIScrollView::touchesCancelled(const UITouches& touches, const Ref<UIEvent>& event) {
  if (!scroll_->held) {
    Super::touchesCancelled(touches, event);
    return;
  }
  scroll_->held = false;
  using State = UIGestureRecognizerState;
  const State pan = scroll_->pan->state();
  if (pan != State::began && pan != State::changed) settle();  // else the same finger goes on as a drag
}

bool UIScrollView::touchesShouldCancelInContentView(const Ref<UIView>& view) {
  const Ref<UIControl> control = as<UIControl>(view);
  return !control || !control->followsDragging();
}

bool UIScrollView::gestureRecognizerShouldBegin(const Ref<UIGestureRecognizer>& recognizer) {
  if (recognizer != scroll_->pan) return Super::gestureRecognizerShouldBegin(recognizer);
  if (!scroll_->scrollEnabled) return false;
  for (const Ref<UITouch>& touch : scroll_->pan->touches()) {
    const Ref<UIView> touched = touch->view();
    if (scroll_->held || !touched || touched.get() == this) continue;
    const Ref<UIControl> control = as<UIControl>(touched);
    if (control && !control->isTracking()) continue;  // it did not want the touch, or may not have it
    if (control && !scroll_->canCancelContentTouches) return false;
    if (!touchesShouldCancelInContentView(touched)) return false;
  }
  const bool x = scroll_->scrollsX();
  const bool y = scroll_->scrollsY();
  if (x && y) return true;
  if (!x && !y) return false;
  const CGPoint speed = scroll_->pan->velocityInView(nullptr);
  const bool upOrDown = std::abs(speed.y) >= std::abs(speed.x);
  return upOrDown == y;
}

}  // namespace platform
