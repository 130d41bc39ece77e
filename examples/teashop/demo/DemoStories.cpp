#include "examples/teashop/demo/DemoStory.h"
#include "examples/teashop/demo/ScreenReader.h"
#include "platform/uikit/device/UIPasteboard.h"

namespace teashop {

using namespace platform;

namespace {

using screenReader::shows;
using screenReader::textOf;

constexpr const char* firstStory = "Before the mist lifts";

std::function<std::string()> say(std::string text) {
  return [text = std::move(text)] { return text; };
}
std::function<std::string()> text(std::string identifier) {
  return [identifier = std::move(identifier)] { return textOf(identifier); };
}

bool textHas(const std::string& identifier, const std::string& part) {
  return textOf(identifier).find(part) != std::string::npos;
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

DemoStory scheduleDelivery() {
  return {
      "schedule-delivery",
      "Have tea delivered at a time that suits",
      "Deliver 1 genmaicha on 2030-12-24 in the afternoon to Grace Hopper, 3 Quay Road, Bath, note: the blue door",
      {tab("Shop", "productList"),
       seen("The tea", "Choose Genmaicha", "addToCart"),
       {"In the cart", "Add it", [] { return !textOf("addedNote").empty(); }, text("addedNote")},
       seen("The cart", "Switch to the Cart tab", "cart-genmaicha"),
       seen("The form", "Pay", "deliveryName"),
       typed("The name", "deliveryName", "Grace Hopper"),
       typed("The street", "deliveryStreet", "3 Quay Road"),
       typed("The town", "deliveryCity", "Bath"),
       {"The day", "Type \u201c2030-12-24\u201d", [] { return !textOf("deliveryDate").empty(); }, text("deliveryDate")},
       {"The time", "Turn the picker to the afternoon", [] { return textHas("deliverySlot", "Afternoon"); },
        text("deliverySlot")},
       typed("A note", "deliveryNotes", "the blue door"),
       {"The order", "Place it", [] { return shows("orderNumber"); }, text("orderNumber")}},
      "Done Place order",
      true,
      "the newest order is for Grace Hopper, with the day, the time and the note",
      [](const Shop& shop) {
        const Delivery& delivery = shop.orders.orders().back().delivery;
        return delivery.name == "Grace Hopper" && delivery.city == "Bath" && !delivery.date.empty() &&
               delivery.slot.starts_with("Afternoon") && delivery.notes == "the blue door";
      }};
}

DemoStory searchTeas() {
  return {"search-teas",
          "Search the teas",
          "Search for oolong",
          {tab("Shop", "productList"),
           seen("The search", "Tap the magnifying glass", "teaSearch"),
           {"What was found", "Search for \u201coolong\u201d", [] { return textHas("searchNote", "oolong"); },
            text("searchNote")}},
          "",
          false};
}

DemoStory trySearch() {
  return {"try-search",
          "See whether there is a tea, and come back",
          "Is there a tea called matcha?",
          {tab("Shop", "productList"),
           seen("The search", "Tap the magnifying glass", "teaSearch"),
           {"The answer", "Search for \u201cmatcha\u201d", [] { return textHas("searchNote", "matcha"); },
            text("searchNote")},
           {"The shop again", "Cancel the search", [] { return shows("productList") && !shows("teaSearch"); },
            say("The search is gone")}},
          "Done ",
          true};
}

DemoStory favouriteTea() {
  return {"favourite-tea",
          "Make a tea a favourite",
          "Add chamomile to my favourites",
          {tab("Shop", "productList"),
           seen("The search", "Tap the magnifying glass", "teaSearch"),
           {"What was found", "Search for \u201cChamomile\u201d", [] { return textHas("searchNote", "Chamomile"); },
            text("searchNote")},
           seen("The tea", "Choose it", "favourite"),
           {"The heart", "Tap the heart", [] { return screenReader::isSelected("favourite"); },
            say("It is a favourite now")}},
          "Done ",
          true,
          "chamomile is a favourite",
          [](const Shop& shop) { return shop.favourites.contains("chamomile"); }};
}

DemoStory shareTea() {
  return {
      "share-tea",
      "Copy the link of a tea",
      "Copy the link of lapsang",
      {tab("Shop", "productList"),
       seen("The tea", "Scroll to Lapsang and choose it", "addToCart"),
       {"The link", "Tap the share button", [] { return !textOf("addedNote").empty(); }, text("addedNote")},
       {"The shop again", "Go back", [] { return shows("productList") && !shows("addToCart"); },
        say("The list stands where it stood")}},
      "Done ",
      true,
      "the link is on the pasteboard",
      [](const Shop&) { return UIPasteboard::general().string().value_or("").find("lapsang") != std::string::npos; }};
}

DemoStory clearFilter() {
  return {"clear-filter",
          "Show every tea again",
          "Clear the filter",
          {tab("Shop", "productList"),
           seen("The filter", "Tap the filter button", "filterKind"),
           {"Reset", "Tap Reset in the toolbar", [] { return screenReader::buttonTitled("Show 17 teas") != nullptr; },
            say("Every tea counts again")},
           {"The shop again", "Tap the number of teas", [] { return shows("productList") && !shows("filterKind"); },
            say("Every tea is shown")}},
          "Done ",
          true,
          "the shop filters nothing any more",
          [](const Shop& shop) { return !shop.filter.isOn(); },
          [](Shop& shop) { shop.filter = {.kind = TeaKind::green, .mostPrice = 1500}; }};
}

DemoStory findStories() {
  return {"find-stories",
          "Find stories",
          "Find stories about water",
          {tab("Stories", "storyGallery"),
           {"What was found", "Search for \u201cwater\u201d", [] { return !screenReader::reads(firstStory); },
            say("Only stories about it are left")}},
          "",
          false};
}

DemoStory allStories() {
  return {"all-stories",
          "Show every story again",
          "Show all stories",
          {tab("Stories", "storyGallery"),
           {"Every story", "Cancel the search", [] { return screenReader::reads(firstStory); },
            say("The gallery is whole again")}},
          "Done ",
          true};
}

DemoStory readStory() {
  return {"read-story",
          "Open a story",
          "Read the story The second infusion",
          {tab("Stories", "storyGallery"),
           {"The story", "Scroll to it and open it", [] { return shows("storyText"); }, text("storyTitle")},
           {"The mark", "Tap the heart", [] { return shows("storyNote"); }, text("storyNote")}},
          "Done ",
          true,
          "the story is kept",
          [](const Shop& shop) { return shop.favouriteStories.contains("The second infusion"); }};
}

DemoStory brewTimer() {
  return {"brew-timer",
          "Start the brewing timer",
          "Brew a strong tea for 4 minutes",
          {tab("Account", "accountTimer"),
           seen("The timer", "Choose it", "timerMinutes"),
           {"Four minutes", "Turn the first wheel", [] { return textOf("timerRemaining") == "4:00"; },
            text("timerRemaining")},
           {"Strong", "Turn the second wheel", [] { return textOf("timerNote").starts_with("Three spoons"); },
            text("timerNote")},
           {"It runs", "Tap Start", [] { return textOf("timerNote").starts_with("Brewing"); }, text("timerRemaining")}},
          "Done ",
          true};
}

DemoStory showTerms() {
  return {"show-terms",
          "Show the terms",
          "Show me the terms",
          {tab("Account", "accountTimer"), seen("The terms", "Choose them", "termsPage")},
          "",
          false};
}

}  // namespace

const std::vector<DemoStory>& demoStories() {
  static const std::vector<DemoStory> stories = {
      orderTea(),    scheduleDelivery(), searchTeas(), trySearch(), favouriteTea(), shareTea(),
      clearFilter(), findStories(),      allStories(), readStory(), brewTimer(),    showTerms(),
  };
  return stories;
}

}  // namespace teashop
