#include "lumicor/capture/LumicorTrackingControlView.h"

#include "lumicor/ui/LumicorFrontLevel.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/animation/CALayer.h"
#include "platform/uikit/constraints/NSLayoutAnchor.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/constraints/UILayoutGuide.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "platform/uikit/views/UILabel.h"
#include "platform/uikit/views/UIStackView.h"

namespace lumicor {

namespace {

constexpr double spacing = 10;
constexpr double outerRadius = 5;
constexpr UIEdgeInsets outerMargins{0, 10, 0, 10};
constexpr UIEdgeInsets innerMargins{10, 0, 10, 0};
constexpr double buttonRadius = 3;
constexpr double buttonInset = 4;
constexpr double buttonFontSize = 15;
constexpr float captionPriority = 250;
constexpr double captionFontSize = 13;  // leaves the items of a navigation bar their room
constexpr double gapToTop = 1;
constexpr double gapToSide = 20;

Ref<UIStackView> rowWithMargins(UIEdgeInsets margins) {
  auto row = make<UIStackView>();
  row->setAxis(UILayoutAxis::horizontal);
  row->setAlignment(UIStackViewAlignment::center);
  row->setSpacing(spacing);
  row->setLayoutMargins(margins);
  row->setLayoutMarginsRelativeArrangement(true);
  return row;
}

}  // namespace

void LumicorTrackingControlView::initWithFrame(CGRect frame) {
  Super::initWithFrame(frame);
  setAccessibilityIdentifier(identifier);
  setFrontLevel(LumicorFrontLevel::controlBar);
  setUpStacks();
  setState("Start", true, "off");
  addGestureRecognizer(make<UITapGestureRecognizer>());  // a tap beside the button stays here
}

void LumicorTrackingControlView::setUpStacks() {
  textView_ = make<UILabel>();
  textView_->setTextAlignment(NSTextAlignment::center);
  textView_->setNumberOfLines(0);
  textView_->setFont(UIFont::systemFont(captionFontSize));
  for (const UILayoutAxis axis : {UILayoutAxis::horizontal, UILayoutAxis::vertical}) {
    textView_->setContentHuggingPriority(captionPriority, axis);
    textView_->setContentCompressionResistancePriority(captionPriority, axis);
  }
  inner_ = rowWithMargins(innerMargins);
  inner_->addArrangedSubview(textView_);
  inner_->addArrangedSubview(clickButton());
  outer_ = rowWithMargins(outerMargins);
  outer_->setBackgroundColor(UIColorHex("#f5f5f5"));
  outer_->layer()->setCornerRadius(outerRadius);
  outer_->addArrangedSubview(inner_);
  outer_->setTranslatesAutoresizingMaskIntoConstraints(false);
  addSubview(outer_);
  NSLayoutConstraint::activateConstraints({
      outer_->topAnchor().constraintEqualToAnchor(topAnchor()),
      outer_->bottomAnchor().constraintEqualToAnchor(bottomAnchor()),
      outer_->leadingAnchor().constraintEqualToAnchor(leadingAnchor()),
      outer_->trailingAnchor().constraintEqualToAnchor(trailingAnchor()),
  });
}

void LumicorTrackingControlView::placeIn(const Ref<UIView>& window) {
  setTranslatesAutoresizingMaskIntoConstraints(false);
  window->addSubview(self());
  const Ref<UILayoutGuide> safeArea = window->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      centerXAnchor().constraintEqualToAnchor(safeArea->centerXAnchor()),
      topAnchor().constraintEqualToAnchor(safeArea->topAnchor(), gapToTop),
      widthAnchor().constraintLessThanOrEqualToAnchor(safeArea->widthAnchor(), -2 * gapToSide),
  });
}

const Ref<UIButton>& LumicorTrackingControlView::clickButton() {
  if (clickButton_) return clickButton_;
  clickButton_ = make<UIButton>();
  clickButton_->setTitle("Start", UIControlState::normal);
  clickButton_->setTitleColor(UIColorHex("#FF5733"), UIControlState::normal);
  clickButton_->setBackgroundColor(UIColorHex("#FFC3C3"));
  clickButton_->titleLabel()->setFont(UIFont::boldSystemFont(buttonFontSize));
  clickButton_->setContentEdgeInsets({buttonInset, buttonInset, buttonInset, buttonInset});
  clickButton_->layer()->setCornerRadius(buttonRadius);
  return clickButton_;
}

void LumicorTrackingControlView::setClickListener(std::function<void()> listener) {
  static const SEL invoke = sel("invoke");
  if (clickListener_) clickButton()->removeTarget(clickListener_, invoke, UIControlEvents::touchUpInside);
  clickListener_ = make<ClosureSleeve>(std::move(listener));
  clickButton()->addTarget(clickListener_, invoke, UIControlEvents::touchUpInside);
}

void LumicorTrackingControlView::setState(const std::string& buttonTitle, bool isEnabled, const std::string& caption) {
  clickButton()->setTitle(buttonTitle, UIControlState::normal);
  clickButton()->setEnabled(isEnabled);
  textView_->setText("Tracking: " + caption);
}

bool LumicorTrackingControlView::contains(const Ref<UIView>& view) const {
  for (Ref<UIView> at = view; at; at = at->superview()) {
    if (at.get() == this) return true;
  }
  return false;
}

}  // namespace lumicor
