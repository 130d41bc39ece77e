#include "lumicor/ui/TLFloaterView.h"

#include <algorithm>

#include "lumicor/ui/LumicorFrontLevel.h"
#include "lumicor/ui/LumicorImageCache.h"
#include "lumicor/ui/TLFloaterGlyph.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "lumicor/ui/TLFloaterPlacement.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/UIImageView.h"

namespace lumicor {

namespace {

constexpr double fadeDuration = 0.3;
constexpr double snapDuration = 0.3;
constexpr double ringWidth = 1.5;
constexpr double ringAlpha = 0.3;
/// Of the button's width, so that the round edge cuts nothing off.
constexpr double largestGlyph = 0.5;

}  // namespace

void TLFloaterView::exportMethods(MethodTable<TLFloaterView>& table) {
  table.add<&TLFloaterView::tapGesture>("tapGesture");
}

void TLFloaterView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  layoutData = TLFloaterManager::shared().layoutData();
  auto tap = make<UITapGestureRecognizer>(self(), sel("tapGesture"));
  tap->setDelaysTouchesBegan(true);
  addGestureRecognizer(tap);

  setAccessibilityLabel("Tessel Lumicor");
  showImage();
  setBackgroundColor(UIColorHex(layoutData->styles.backgroundColor));
  layer()->setMasksToBounds(true);
  setFrontLevel(LumicorFrontLevel::floatingButton);
  setAlpha(0);
  // A device that is turned takes it along.
  setAutoresizingMask(UIViewAutoresizing::flexibleLeftMargin | UIViewAutoresizing::flexibleRightMargin |
                      UIViewAutoresizing::flexibleTopMargin | UIViewAutoresizing::flexibleBottomMargin);
}

/// The service's picture; until it has come a glyph in the assistant's colour, with a ring that makes a button of it.
void TLFloaterView::showImage() {
  const UIColor color = UIColorHex(layoutData->styles.receiveBubbleColor);
  const auto imageSize = static_cast<double>(layoutData->imageSize);
  auto picture = make<UIImageView>();
  const double glyph = std::min(imageSize, largestGlyph * static_cast<double>(layoutData->size));
  picture->setImage(floaterGlyph(imageSize, glyph, color));
  layer()->setBorderWidth(ringWidth);
  layer()->setBorderColor(color.colorWithAlphaComponent(ringAlpha));
  picture->setTranslatesAutoresizingMaskIntoConstraints(false);
  picture->setContentMode(UIViewContentMode::scaleAspectFit);
  addSubview(picture);
  NSLayoutConstraint::activateConstraints({
      picture->centerXAnchor().constraintEqualToAnchor(centerXAnchor()),
      picture->centerYAnchor().constraintEqualToAnchor(centerYAnchor()),
      picture->widthAnchor().constraintEqualToConstant(imageSize),
      picture->heightAnchor().constraintEqualToConstant(imageSize),
  });
  LumicorImageCache::shared().fetch(layoutData->image, [weak = weakSelf(), picture](const Ref<UIImage>& image) {
    picture->setImage(image);
    if (const auto button = weak.lock()) button->layer()->setBorderWidth(0);
  });
}

void TLFloaterView::layoutSubviews() {
  Super::layoutSubviews();
  layer()->setCornerRadius(bounds().size.width / 2);
}

void TLFloaterView::setShow(bool show) {
  if (show == show_) return;
  show_ = show;
  if (show) {
    if (const auto window = UIApplication::shared().keyWindow()) window->addSubview(self());
    setAlpha(0);
    UIView::animateWithDuration(fadeDuration, [this] { setAlpha(1); });
  } else {
    setAlpha(1);
    UIView::animateWithDuration(
        fadeDuration, [this] { setAlpha(0); },
        [keep = self()](bool) {
          if (!keep->show_) keep->removeFromSuperview();
        });
  }
}

void TLFloaterView::tapGesture() {
  if (floaterDidSelect) floaterDidSelect();
}

void TLFloaterView::touchesBegan(const UITouches& touches, const Ref<UIEvent>&) {
  beginPoint.reset();
  if (touches.empty()) return;
  beginPoint = touches.front()->locationInView(this);
  if (const auto receiver = delegate.lock()) receiver->floatViewBeginMove(*this, *beginPoint);
}

void TLFloaterView::touchesMoved(const UITouches& touches, const Ref<UIEvent>&) {
  if (touches.empty() || !beginPoint) return;
  const CGPoint location = touches.front()->locationInView(this);
  if (const auto receiver = delegate.lock()) receiver->floatViewMoved(*this, location);
  setCenter({center().x + location.x - beginPoint->x, center().y + location.y - beginPoint->y});
}

void TLFloaterView::touchesEnded(const UITouches&, const Ref<UIEvent>&) {
  const Ref<TLFloaterView> keep = self();
  if (const auto receiver = delegate.lock()) receiver->floatViewCancelMove(*this);
  beginPoint.reset();
  snap();
}

void TLFloaterView::touchesCancelled(const UITouches&, const Ref<UIEvent>&) { breakOffDrag(); }

CGRect TLFloaterView::frameIn(CGSize container) const {
  const bool isAway = !superview() && left_ && *left_ != container;
  return isAway ? floaterPlacement::frameAfterResize(frame(), *left_, container) : frame();
}

void TLFloaterView::willMoveToSuperview(const Ref<UIView>& next) {
  Super::willMoveToSuperview(next);
  if (const Ref<UIView> container = superview()) {
    left_ = container->bounds().size;
  } else if (next) {
    setFrame(frameIn(next->bounds().size));
  }
}

void TLFloaterView::didMoveToWindow() {
  Super::didMoveToWindow();
  if (!window()) breakOffDrag();
}

void TLFloaterView::breakOffDrag() {
  if (!beginPoint) return;
  beginPoint.reset();
  TLFloaterManager::shared().parkCloseTarget();
  if (superview()) {
    snap();
  } else if (left_) {
    setFrame(restingFrame(*left_));
  }
}

CGRect TLFloaterView::restingFrame(CGSize container) const {
  const double side = layoutData ? floaterPlacement::side(layoutData->size) : bounds().size.width;
  return floaterPlacement::restingFrame(frame(), container, TLFloaterManager::screenInsets(), side);
}

void TLFloaterView::snap() {
  const Ref<UIView> container = superview();
  if (!container) return;
  const CGRect resting = restingFrame(container->bounds().size);
  UIView::animateWithDuration(snapDuration, [this, resting] {
    setFrame(resting);
    if (show_) setAlpha(1);
  });
}

}  // namespace lumicor
