#include "lumicor/ui/LumicorToast.h"

#include <algorithm>
#include <utility>

#include "lumicor/core/LumicorUtils.h"
#include "lumicor/ui/LumicorFrontLevel.h"
#include "platform/animation/CALayer.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/application/UIWindow.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/controllers/UIViewController.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor {

namespace {

constexpr double fontSize = 16;
constexpr double fadeDuration = 0.25;
constexpr double gapToSide = 20;
constexpr double gapBetween = 8;
constexpr double gapToBottom = 96;  // above a tab bar, or a bar of buttons
constexpr double gapToKeyboard = 12;
constexpr double paddingX = 16;
constexpr double paddingY = 10;
constexpr std::int64_t maximumLines = 3;

Ref<UIWindow> windowFor(const Ref<UIViewController>& controller) {
  const auto view = controller ? controller->viewIfLoaded() : nullptr;
  const auto window = view ? view->window() : nullptr;
  return window ? window : UIApplication::shared().keyWindow();
}

/// How far above the window's lower edge the lowest message ends.
double lowestEdge(const UIView& window) {
  const UIKeyboard& keyboard = UIKeyboard::shared();
  const double covered = keyboard.isVisible() ? window.bounds().size.height - keyboard.frame().origin.y : 0;
  return std::max(gapToBottom + window.safeAreaInsets().bottom, covered + gapToKeyboard);
}

}  // namespace

void LumicorToast::exportMethods(MethodTable<LumicorToast>& table) {
  table.add<&LumicorToast::keyboardMoves>("keyboardMoves");
}

void LumicorToast::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setBackgroundColor(UIColor::white(0.13, 0.94));
  layer()->setCornerRadius(20);
  layer()->setCornerCurve(CALayerCornerCurve::continuous);
  setUserInteractionEnabled(false);
  setFrontLevel(LumicorFrontLevel::notice);
  setTranslatesAutoresizingMaskIntoConstraints(false);
  label_ = make<UILabel>();
  label_->setFont(UIFont::systemFont(fontSize));
  label_->setTextColor(UIColor::white());
  label_->setTextAlignment(NSTextAlignment::center);
  label_->setNumberOfLines(maximumLines);
  label_->setTranslatesAutoresizingMaskIntoConstraints(false);
  addSubview(label_);
  NSLayoutConstraint::activateConstraints({
      label_->topAnchor().constraintEqualToAnchor(topAnchor(), paddingY),
      label_->bottomAnchor().constraintEqualToAnchor(bottomAnchor(), -paddingY),
      label_->leadingAnchor().constraintEqualToAnchor(leadingAnchor(), paddingX),
      label_->trailingAnchor().constraintEqualToAnchor(trailingAnchor(), -paddingX),
  });
}

void LumicorToast::show(const std::string& message, const Ref<UIViewController>& controller) {
  const auto window = windowFor(controller);
  if (message.empty() || !window) return;
  auto toast = make<LumicorToast>();
  toast->label_->setText(message);
  toast->appear(window);
}

void LumicorToast::show(const std::string& message) { show(message, LumicorUtils::getCurrentViewController()); }

void LumicorToast::appear(const Ref<UIView>& window) {
  std::erase_if(shown_, [](const Ref<LumicorToast>& toast) { return !toast->window(); });
  while (shown_.size() >= maximumCount) shown_.front()->disappear();
  window->addSubview(self());
  bottom_ = bottomAnchor().constraintEqualToAnchor(window->bottomAnchor(), -lowestEdge(*window));
  NSLayoutConstraint::activateConstraints({
      bottom_,
      centerXAnchor().constraintEqualToAnchor(window->centerXAnchor()),
      widthAnchor().constraintLessThanOrEqualToAnchor(window->widthAnchor(), -2 * gapToSide),
  });
  UIView::performWithoutAnimation([&window] { window->layoutIfNeeded(); });
  shown_.push_back(self());
  for (const std::string& name : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification}) {
    NotificationCenter::defaultCenter().addObserver(self(), sel("keyboardMoves"), name);
  }
  setAlpha(0);
  UIView::animateWithDuration(fadeDuration, [this, &window] {
    setAlpha(1);
    arrange();
    window->layoutIfNeeded();
  });
  DispatchQueue::main().asyncAfter(fadeDuration + duration, [toast = self()] { toast->disappear(); });
}

void LumicorToast::disappear() {
  if (std::erase(shown_, self()) == 0) return;
  UIView::animateWithDuration(
      fadeDuration, [this] { setAlpha(0); }, [toast = self()](bool) { toast->removeFromSuperview(); });
}

/// The first of them moves them all.
void LumicorToast::keyboardMoves() {
  const auto window = superview();
  if (!window || shown_.empty() || shown_.front() != self()) return;
  arrange();
  UIView::animateWithDuration(UIKeyboard::animationDuration, [&window] { window->layoutIfNeeded(); });
}

void LumicorToast::arrange() {
  double above = 0;
  for (auto toast = shown_.rbegin(); toast != shown_.rend(); ++toast) {
    const auto window = (*toast)->superview();
    if (!window) continue;
    (*toast)->bottom_->setConstant(-lowestEdge(*window) - above);
    above += (*toast)->bounds().size.height + gapBetween;
  }
}

}  // namespace lumicor
