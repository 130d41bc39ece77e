#include "examples/teashop/screens/OrderSummary.h"

#include "examples/teashop/model/DeliveryTime.h"
#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/Theme.h"
#include "platform/animation/CALayer.h"

namespace teashop {

using namespace platform;

namespace {

Ref<UIView> line(const std::string& what, const std::string& price, const UIFont& font) {
  auto right = makeLabel(price, font, theme::ink);
  keepWidth(right);
  return makeRow({makeLabel(what, font, theme::ink), right}, 12);
}

std::string destination(const Delivery& delivery) {
  std::string text = "to " + delivery.name + ", " + delivery.street + ", " + delivery.city;
  if (const auto day = deliveryTime::dayFromText(delivery.date)) text += "\n" + deliveryTime::dayInWords(*day);
  if (!delivery.slot.empty()) text += "\n" + delivery.slot;
  if (!delivery.notes.empty()) text += "\n\u201c" + delivery.notes + "\u201d";
  return text;
}

}  // namespace

void OrderSummary::viewDidLoad() {
  Super::viewDidLoad();
  view()->setBackgroundColor(theme::card);
  view()->layer()->setCornerRadius(theme::radius);
  std::vector<Ref<UIView>> lines;
  for (const Cart::Line& tea : order_.lines) {
    lines.push_back(line(std::to_string(tea.quantity) + " \u00d7 " + tea.product->name,
                         priceText(tea.product->price * tea.quantity), theme::body()));
  }
  if (order_.delivery.isGift) lines.push_back(line("Gift wrap", priceText(giftWrapPrice), theme::body()));
  auto rule = make<UIView>();
  rule->setTranslatesAutoresizingMaskIntoConstraints(false);
  rule->setBackgroundColor(theme::line);
  setHeight(rule, 1);
  lines.push_back(rule);
  lines.push_back(line("Total", priceText(order_.total), theme::headline()));
  auto where = makeLabel(destination(order_.delivery), theme::caption(), theme::inkSoft);
  where->setAccessibilityIdentifier("orderSummary");
  lines.push_back(where);
  auto column = makeColumn(std::move(lines), 10);
  view()->addSubview(column);
  pin(column, view(), {16, 16, 16, 16});
}

}  // namespace teashop
