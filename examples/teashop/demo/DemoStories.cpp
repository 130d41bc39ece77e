#include "examples/teashop/demo/DemoStory.h"
#include "examples/teashop/demo/ScreenReader.h"

namespace teashop {

namespace {

using screenReader::lowestText;
using screenReader::reads;
using screenReader::readsPartly;
using screenReader::shows;
using screenReader::textOf;

std::function<std::string()> say(std::string text) {
  return [text = std::move(text)] { return text; };
}
std::function<std::string()> text(std::string identifier) {
  return [identifier = std::move(identifier)] { return textOf(identifier); };
}

DemoStop seen(std::string title, std::string asked, std::string identifier) {
  return {std::move(title), std::move(asked), [identifier] { return shows(identifier); }, say("It is on the screen")};
}
DemoStop typed(std::string title, std::string identifier, std::string wanted) {
  auto isSeen = [identifier, wanted] { return textOf(identifier) == wanted; };
  return {std::move(title), "Type \u201c" + wanted + "\u201d", std::move(isSeen), text(identifier)};
}
DemoStop tab(std::string title, std::string identifier) {
  return seen("The " + title + " tab", "Switch to the " + title + " tab", std::move(identifier));
}

DemoStory orderTea() {
  return {"order-tea",
          "Order tea",
          "Order 2 sencha to Ada Lovelace, 12 Harbour Street, Bristol",
          {tab("Shop", "productList"),
           seen("The tea", "Choose Sencha", "addToCart"),
           {"Two packets", "Set the quantity to 2", [] { return textOf("quantityValue") == "2"; },
            say("Plus was tapped once")},
           {"In the cart", "Add it", [] { return !textOf("addedNote").empty(); }, text("addedNote")},
           {"The cart", "Switch to the Cart tab", [] { return shows("pay") && shows("cart-sencha"); },
            [] { return "Total " + textOf("cartTotal"); }},
           seen("The form", "Pay", "deliveryName"),
           typed("The name", "deliveryName", "Ada Lovelace"),
           typed("The street", "deliveryStreet", "12 Harbour Street"),
           typed("The town", "deliveryCity", "Bristol"),
           {"The order", "Place it", [] { return shows("orderNumber"); }, text("orderNumber")}},
          "Done Place order",
          true,
          "the shop has one order: 2 sencha for Ada Lovelace, 12 Harbour Street, Bristol",
          [](const Shop& shop) {
            const auto& orders = shop.orders.orders();
            if (orders.size() != 1 || orders.front().lines.size() != 1) return false;
            const Cart::Line& line = orders.front().lines.front();
            const Delivery& delivery = orders.front().delivery;
            return line.product->id == "sencha" && line.quantity == 2 && delivery.name == "Ada Lovelace" &&
                   delivery.street == "12 Harbour Street" && delivery.city == "Bristol";
          }};
}

}  // namespace

const std::vector<DemoStory>& demoStories() {
  static const std::vector<DemoStory> stories = {orderTea()};
  return stories;
}

}  // namespace teashop
