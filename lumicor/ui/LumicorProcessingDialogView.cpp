#include "lumicor/ui/LumicorProcessingDialogView.h"

#include <utility>

#include "lumicor/core/Lumicor.h"
#include "lumicor/ui/LumicorDimming.h"
#include "lumicor/ui/LumicorFrontLevel.h"
#include "lumicor/ui/LumicorImageCache.h"
#include "platform/animation/CALayer.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UIImageView.h"

namespace lumicor {

std::string LumicorProcessingDialogView::animationAddress() {
  return Lumicor::shared().getEndpoint() + "/assets/processing.gif";
}

void LumicorProcessingDialogView::initWithFrame(CGRect) {
  const CGSize screen = UIScreen::main().bounds().size;
  dialogYPosition_ = screen.height / 1.25;
  Super::initWithFrame({(screen.width - dialogWidth) / 2, dialogYPosition_, dialogWidth, dialogHeight});
  setUpCard();
  setUpAnimation();
}

void LumicorProcessingDialogView::setUpCard() {
  setBackgroundColor(UIColor::white());
  setFrontLevel(LumicorFrontLevel::notice);
  layer()->setCornerRadius(10);
  gifImageView_ = make<UIImageView>(CGRect{0, 0, loaderSize, loaderSize});
  gifImageView_->setContentMode(UIViewContentMode::scaleAspectFit);
  gifImageView_->setCenter({dialogWidth / 2, dialogHeight / 2});
  addSubview(gifImageView_);
}

void LumicorProcessingDialogView::setUpAnimation() {
  LumicorImageCache::shared().fetch(animationAddress(),
                                    [weak = Weak<UIImageView>(gifImageView_)](const Ref<UIImage>& image) {
                                      if (const auto view = weak.lock()) view->setImage(image);
                                    });
}

void LumicorProcessingDialogView::show() {
  DispatchQueue::main().async([dialog = self()] { dialog->showNow(); });
}

void LumicorProcessingDialogView::dismiss() {
  DispatchQueue::main().async([dialog = self()] { dialog->dismissNow(); });
}

void LumicorProcessingDialogView::showNow() {
  if (overlayView_ && overlayView_->window()) return;
  overlayView_ = addDimmingOverlay();
  if (overlayView_) overlayView_->superview()->addSubview(self());
}

void LumicorProcessingDialogView::dismissNow() {
  if (const auto overlay = std::exchange(overlayView_, nullptr)) overlay->removeFromSuperview();
  removeFromSuperview();
}

}  // namespace lumicor
