#include "examples/teashop/screens/DeliveryScreen.h"

#include "examples/teashop/screens/ConfirmationScreen.h"
#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"
#include "platform/layout/NSLayoutConstraint.h"
#include "platform/layout/UILayoutGuide.h"
#include "platform/uikit/UINavigationController.h"
#include "platform/uikit/UITapGestureRecognizer.h"

namespace teashop {

using namespace platform;

void DeliveryScreen::exportMethods(MethodTable<DeliveryScreen>& table) {
  table.add<&DeliveryScreen::fieldChanged>("fieldChanged")
      .add<&DeliveryScreen::shouldReturn>("textFieldShouldReturn:")
      .add<&DeliveryScreen::placeOrder>("placeOrder")
      .add<&DeliveryScreen::endEditing>("endEditing");
}

void DeliveryScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Delivery");
  view()->setBackgroundColor(theme::paper);
  const auto safe = view()->safeAreaLayoutGuide();
  name_ = makeField("Name", "Who is it for?", "deliveryName", safe->topAnchor());
  street_ = makeField("Street", "House number and street", "deliveryStreet", name_->bottomAnchor());
  city_ = makeField("Town", "Town or city", "deliveryCity", street_->bottomAnchor());
  auto summary =
      makeLabel(std::to_string(shop_->cart.count()) + (shop_->cart.count() == 1 ? " packet, " : " packets, ") +
                    priceText(shop_->cart.total()) + ", paid on delivery",
                theme::caption(), theme::inkSoft);
  summary->setAccessibilityIdentifier("deliverySummary");
  place_ = make<PrimaryButton>();
  place_->setTitle("Place order", UIControlState::normal);
  place_->setAccessibilityIdentifier("placeOrder");
  place_->setEnabled(false);
  place_->addTarget(self(), sel("placeOrder"), UIControlEvents::touchUpInside);
  view()->addSubview(summary);
  view()->addSubview(place_);
  view()->addGestureRecognizer(make<UITapGestureRecognizer>(self(), sel("endEditing")));
  NSLayoutConstraint::activateConstraints({
      summary->topAnchor().constraintEqualToAnchor(city_->bottomAnchor(), 28),
      summary->leadingAnchor().constraintEqualToAnchor(city_->leadingAnchor()),
      summary->trailingAnchor().constraintEqualToAnchor(city_->trailingAnchor()),
      place_->topAnchor().constraintEqualToAnchor(summary->bottomAnchor(), 12),
      place_->leadingAnchor().constraintEqualToAnchor(city_->leadingAnchor()),
      place_->trailingAnchor().constraintEqualToAnchor(city_->trailingAnchor()),
      place_->heightAnchor().constraintEqualToConstant(52),
  });
}

Ref<UITextField> DeliveryScreen::makeField(const std::string& caption, const std::string& placeholder,
                                           const std::string& identifier, const NSLayoutYAxisAnchor& below) {
  auto label = makeLabel(caption, UIFont::systemFont(13, UIFontWeightMedium), theme::inkSoft);
  auto field = make<UITextField>();
  field->setTranslatesAutoresizingMaskIntoConstraints(false);
  field->setAccessibilityIdentifier(identifier);
  field->setPlaceholder(placeholder);
  field->setFont(UIFont::systemFont(17, UIFontWeightRegular));
  field->setTextColor(theme::ink);
  field->setBackgroundColor(theme::card);
  field->setBorderStyle(UITextBorderStyle::roundedRect);
  field->setDelegate(self());
  field->addTarget(self(), sel("fieldChanged"), UIControlEvents::editingChanged);
  view()->addSubview(label);
  view()->addSubview(field);
  const auto safe = view()->safeAreaLayoutGuide();
  NSLayoutConstraint::activateConstraints({
      label->topAnchor().constraintEqualToAnchor(below, 22),
      label->leadingAnchor().constraintEqualToAnchor(field->leadingAnchor(), 2),
      field->topAnchor().constraintEqualToAnchor(label->bottomAnchor(), 6),
      field->leadingAnchor().constraintEqualToAnchor(safe->leadingAnchor(), theme::margin),
      field->trailingAnchor().constraintEqualToAnchor(safe->trailingAnchor(), -theme::margin),
      field->heightAnchor().constraintEqualToConstant(48),
  });
  return field;
}

bool DeliveryScreen::isComplete() const {
  for (const auto& field : {name_, street_, city_}) {
    if (field->text().value_or("").empty()) return false;
  }
  return true;
}

void DeliveryScreen::fieldChanged() { place_->setEnabled(isComplete()); }

bool DeliveryScreen::shouldReturn(const Ref<UITextField>& field) {
  if (field == name_) {
    street_->becomeFirstResponder();
  } else if (field == street_) {
    city_->becomeFirstResponder();
  } else {
    field->resignFirstResponder();
  }
  return true;
}

void DeliveryScreen::endEditing() { view()->endEditing(true); }

void DeliveryScreen::placeOrder() {
  if (!isComplete() || shop_->cart.isEmpty()) return;
  view()->endEditing(true);
  const Order& order = shop_->orders.place(shop_->cart, {*name_->text(), *street_->text(), *city_->text()});
  shop_->cart.clear();
  navigationController()->pushViewController(make<ConfirmationScreen>(order), true);
}

}  // namespace teashop
