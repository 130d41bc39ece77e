#include "examples/teashop/screens/ConfirmationScreen.h"

#include "examples/teashop/views/PrimaryButton.h"
#include "examples/teashop/views/TeaCupView.h"
#include "examples/teashop/views/Theme.h"
#include "platform/layout/NSLayoutConstraint.h"
#include "platform/layout/UILayoutGuide.h"
#include "platform/uikit/UINavigationController.h"

namespace teashop {

using namespace platform;

void ConfirmationScreen::exportMethods(MethodTable<ConfirmationScreen>& table) {
  table.add<&ConfirmationScreen::done>("done");
}

void ConfirmationScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Thank you");
  view()->setBackgroundColor(theme::paper);
  auto cup = make<TeaCupView>();
  cup->setTranslatesAutoresizingMaskIntoConstraints(false);
  cup->setLiquor(colorOf(order_.lines.front().product->liquor));
  auto heading = makeLabel("The kettle is on", theme::title(), theme::ink);
  heading->setTextAlignment(NSTextAlignment::center);
  auto number = makeLabel("Order " + std::to_string(order_.number), theme::headline(), theme::leaf);
  number->setAccessibilityIdentifier("orderNumber");
  std::string lines;
  for (const Cart::Line& line : order_.lines) {
    lines += std::to_string(line.quantity) + " \u00d7 " + line.product->name + "\n";
  }
  auto summary = makeLabel(lines + priceText(order_.total) + " to " + order_.delivery.name + ",\n" +
                               order_.delivery.street + ", " + order_.delivery.city,
                           theme::body(), theme::inkSoft);
  summary->setAccessibilityIdentifier("orderSummary");
  summary->setTextAlignment(NSTextAlignment::center);
  auto done = make<PrimaryButton>();
  done->setTitle("Back to the teas", UIControlState::normal);
  done->setAccessibilityIdentifier("confirmationDone");
  done->addTarget(self(), sel("done"), UIControlEvents::touchUpInside);
  for (const Ref<UIView>& part : std::initializer_list<Ref<UIView>>{cup, heading, number, summary, done}) {
    view()->addSubview(part);
  }
  const auto safe = view()->safeAreaLayoutGuide();
  const auto centre = view()->centerXAnchor();
  NSLayoutConstraint::activateConstraints({
      cup->topAnchor().constraintEqualToAnchor(safe->topAnchor(), 48),
      cup->centerXAnchor().constraintEqualToAnchor(centre),
      cup->widthAnchor().constraintEqualToConstant(132),
      cup->heightAnchor().constraintEqualToConstant(132),
      heading->topAnchor().constraintEqualToAnchor(cup->bottomAnchor(), 28),
      heading->centerXAnchor().constraintEqualToAnchor(centre),
      number->topAnchor().constraintEqualToAnchor(heading->bottomAnchor(), 8),
      number->centerXAnchor().constraintEqualToAnchor(centre),
      summary->topAnchor().constraintEqualToAnchor(number->bottomAnchor(), 20),
      summary->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), 2 * theme::margin),
      summary->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -2 * theme::margin),
      done->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      done->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      done->heightAnchor().constraintEqualToConstant(52),
      done->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor(), -16),
  });
}

void ConfirmationScreen::done() { navigationController()->popToRootViewControllerAnimated(true); }

}  // namespace teashop
