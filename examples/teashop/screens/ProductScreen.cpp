#include "examples/teashop/screens/ProductScreen.h"

#include "examples/teashop/views/TeaCupView.h"
#include "examples/teashop/views/Theme.h"
#include "platform/layout/NSLayoutConstraint.h"
#include "platform/layout/UILayoutGuide.h"

namespace teashop {

using namespace platform;

void ProductScreen::exportMethods(MethodTable<ProductScreen>& table) {
  table.add<&ProductScreen::addToCart>("addToCart").add<&ProductScreen::quantityChanged>("quantityChanged");
}

void ProductScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle(product_.name);
  view()->setBackgroundColor(theme::paper);

  auto cup = make<TeaCupView>();
  cup->setTranslatesAutoresizingMaskIntoConstraints(false);
  cup->setLiquor(colorOf(product_.liquor));
  cup->setAccessibilityIdentifier("productImage");
  auto name = makeLabel(product_.name, theme::title(), theme::ink);
  name->setAccessibilityIdentifier("productName");
  auto origin =
      makeLabel(std::string(kindName(product_.kind)) + " tea \u00b7 " + product_.origin, theme::body(), theme::inkSoft);
  auto description = makeLabel(product_.description, theme::body(), theme::ink);
  description->setAccessibilityIdentifier("productDescription");
  auto price = makeLabel(priceText(product_.price), UIFont::systemFont(22, UIFontWeightSemibold), theme::leaf);
  price->setAccessibilityIdentifier("productPrice");
  auto packet = makeLabel("for " + std::to_string(product_.grams) + " g", theme::caption(), theme::inkSoft);
  quantity_ = make<QuantityControl>();
  quantity_->setRange(1, Cart::maximumOfOne);
  quantity_->addTarget(self(), sel("quantityChanged"), UIControlEvents::valueChanged);
  add_ = make<PrimaryButton>();
  add_->setAccessibilityIdentifier("addToCart");
  add_->addTarget(self(), sel("addToCart"), UIControlEvents::touchUpInside);
  added_ = makeLabel("", theme::caption(), theme::leaf);
  added_->setAccessibilityIdentifier("addedNote");
  added_->setTextAlignment(NSTextAlignment::center);

  for (const Ref<UIView>& part :
       std::initializer_list<Ref<UIView>>{cup, name, origin, description, price, packet, quantity_, add_, added_}) {
    view()->addSubview(part);
  }
  const auto safe = view()->safeAreaLayoutGuide();
  const auto leading = safe->leadingAnchor();
  const auto trailing = safe->trailingAnchor();
  NSLayoutConstraint::activateConstraints({
      cup->topAnchor().constraintEqualToAnchor(safe->topAnchor(), 28),
      cup->centerXAnchor().constraintEqualToAnchor(view()->centerXAnchor()),
      cup->widthAnchor().constraintEqualToConstant(190),
      cup->heightAnchor().constraintEqualToConstant(190),
      name->topAnchor().constraintEqualToAnchor(cup->bottomAnchor(), 28),
      name->leadingAnchor().constraintEqualToAnchor(leading, theme::margin),
      name->trailingAnchor().constraintEqualToAnchor(trailing, -theme::margin),
      origin->topAnchor().constraintEqualToAnchor(name->bottomAnchor(), 6),
      origin->leadingAnchor().constraintEqualToAnchor(name->leadingAnchor()),
      origin->trailingAnchor().constraintEqualToAnchor(name->trailingAnchor()),
      description->topAnchor().constraintEqualToAnchor(origin->bottomAnchor(), 16),
      description->leadingAnchor().constraintEqualToAnchor(name->leadingAnchor()),
      description->trailingAnchor().constraintEqualToAnchor(name->trailingAnchor()),
      price->leadingAnchor().constraintEqualToAnchor(name->leadingAnchor()),
      price->bottomAnchor().constraintEqualToAnchor(quantity_->centerYAnchor(), 4),
      packet->leadingAnchor().constraintEqualToAnchor(name->leadingAnchor()),
      packet->topAnchor().constraintEqualToAnchor(price->bottomAnchor(), 1),
      quantity_->trailingAnchor().constraintEqualToAnchor(name->trailingAnchor()),
      quantity_->bottomAnchor().constraintEqualToAnchor(add_->topAnchor(), -20),
      quantity_->widthAnchor().constraintEqualToConstant(148),
      quantity_->heightAnchor().constraintEqualToConstant(44),
      add_->leadingAnchor().constraintEqualToAnchor(name->leadingAnchor()),
      add_->trailingAnchor().constraintEqualToAnchor(name->trailingAnchor()),
      add_->heightAnchor().constraintEqualToConstant(52),
      add_->bottomAnchor().constraintEqualToAnchor(added_->topAnchor(), -10),
      added_->leadingAnchor().constraintEqualToAnchor(name->leadingAnchor()),
      added_->trailingAnchor().constraintEqualToAnchor(name->trailingAnchor()),
      added_->heightAnchor().constraintEqualToConstant(18),
      added_->bottomAnchor().constraintEqualToAnchor(safe->bottomAnchor(), -12),
  });
  quantityChanged();
}

void ProductScreen::quantityChanged() {
  add_->setTitle("Add to cart \u00b7 " + priceText(product_.price * quantity_->quantity()), UIControlState::normal);
}

void ProductScreen::addToCart() {
  shop_->cart.add(product_, quantity_->quantity());
  added_->setText(std::to_string(quantity_->quantity()) + (quantity_->quantity() == 1 ? " packet is" : " packets are") +
                  " in your cart");
}

}  // namespace teashop
