#include "examples/teashop/screens/ConfirmationScreen.h"

#include "examples/teashop/screens/OrderSummary.h"
#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/PrimaryButton.h"
#include "examples/teashop/views/TeaCupView.h"
#include "examples/teashop/views/Theme.h"
#include "platform/uikit/constraints/NSLayoutConstraint.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace teashop {

using namespace platform;

void ConfirmationScreen::exportMethods(MethodTable<ConfirmationScreen>& table) {
  table.add<&ConfirmationScreen::done>("done").add<&ConfirmationScreen::rated>("rated");
}

void ConfirmationScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Thank you");
  view()->setBackgroundColor(theme::paper);
  auto cup = make<TeaCupView>();
  cup->setTranslatesAutoresizingMaskIntoConstraints(false);
  cup->setLiquor(colorOf(order_.lines.front().product->liquor));
  setWidth(cup, 112);
  setHeight(cup, 112);
  auto heading = makeLabel("The kettle is on", theme::title(), theme::ink);
  auto number = makeLabel("Order " + std::to_string(order_.number), theme::headline(), theme::leaf);
  number->setAccessibilityIdentifier("orderNumber");
  rating_ = make<RatingControl>();
  rating_->setAccessibilityIdentifier("rating");
  rating_->addTarget(self(), sel("rated"), UIControlEvents::valueChanged);
  ratingNote_ = makeLabel("How was ordering?", theme::caption(), theme::inkSoft);
  ratingNote_->setAccessibilityIdentifier("ratingNote");
  auto summary = makeSummary();
  auto column = makeColumn({cup, heading, number, summary, rating_, ratingNote_}, 8);
  column->setAlignment(UIStackViewAlignment::center);
  column->setCustomSpacing(20, cup);
  column->setCustomSpacing(20, number);
  column->setCustomSpacing(18, summary);
  column->setCustomSpacing(0, rating_);
  auto done = make<PrimaryButton>();
  done->setTitle("Back to the teas", UIControlState::normal);
  done->setAccessibilityIdentifier("confirmationDone");
  done->addTarget(self(), sel("done"), UIControlEvents::touchUpInside);
  setHeight(done, 52);
  view()->addSubview(column);
  view()->addSubview(done);
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      column->topAnchor().constraintEqualToAnchor(safe->topAnchor(), 28),
      column->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      column->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      summary->widthAnchor().constraintEqualToAnchor(column->widthAnchor()),
      done->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      done->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      done->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor(), -16),
  });
}

Ref<UIView> ConfirmationScreen::makeSummary() {
  auto summary = make<OrderSummary>(order_);
  addChildViewController(summary);
  summary->didMoveToParent(self());
  summary->view()->setTranslatesAutoresizingMaskIntoConstraints(false);
  return summary->view();
}

void ConfirmationScreen::rated() {
  ratingNote_->setText("Thank you: " + std::to_string(rating_->rating()) + " of " +
                       std::to_string(RatingControl::stars));
}

void ConfirmationScreen::done() { navigationController()->popToRootViewControllerAnimated(true); }

}  // namespace teashop
