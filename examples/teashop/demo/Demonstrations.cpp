#include "examples/teashop/demo/Demonstration.h"
#include "examples/teashop/demo/ScreenReader.h"
#include "platform/uikit/bars/UINavigationBar.h"
#include "platform/uikit/text/UITextField.h"

namespace teashop {

using namespace platform;

namespace {

using screenReader::named;
using screenReader::shows;
using screenReader::textOf;

/// Who gets which present, and what is written on it.
struct Present {
  std::string tea;
  std::string teaId;
  int packets;
  std::string name;
  std::string street;
  std::string city;
  std::string time;
  std::int64_t timeRow;
  std::string note;
};

const Present shown = {"Sencha Fukamushi", "sencha",    2, "Ada Lovelace",  "12 Harbour Street",
                       "Bristol",          "Afternoon", 1, "Happy birthday"};
const Present asked = {"Genmaicha", "genmaicha", 3, "Grace Hopper", "3 Quay Road", "Bath", "Afternoon", 1, "Well done"};

std::function<std::string()> say(std::string text) {
  return [text = std::move(text)] { return text; };
}
std::function<std::string()> read(std::string identifier) {
  return [identifier = std::move(identifier)] { return textOf(identifier); };
}
std::function<void(DemoHands&)> tapOn(std::string identifier) {
  return [identifier = std::move(identifier)](DemoHands& hands) { hands.tap(named(identifier)); };
}

DemoAct tapped(std::string title, std::string target, std::string appears) {
  return {{std::move(title), "Tap " + target, [appears] { return shows(appears); }, say("It is on the screen")},
          tapOn(target)};
}

DemoAct typed(std::string title, std::string field, const std::string& text, const std::string& key) {
  return {
      {std::move(title), "Type \u201c" + text + "\u201d", [field, text] { return textOf(field) == text; }, read(field)},
      [field, text, key](DemoHands& hands) {
        const auto target = as<UITextField>(named(field));
        if (target && !target->isFirstResponder()) hands.tap(target);
        hands.wait(0.5);
        hands.type(text + key);
      }};
}

void goBack(DemoHands& hands) {
  const auto bar = as<UINavigationBar>(screenReader::ofClass("UINavigationBar"));
  if (bar) hands.tap(bar->backButtonView());
}

DemoAct goesBack(std::string title, std::string appears) {
  return {{std::move(title), "Go back", [appears] { return shows(appears); }, say("It is on the screen again")},
          &goBack};
}

/// To the shop's first screen, from wherever the person is.
void goToShop(DemoHands& hands) {
  hands.tap(named("tabShop"));
  hands.wait(1);
  goBack(hands);
  hands.wait(1);
}

std::vector<DemoAct> presentActs(const Present& present) {
  return {
      tapped("The Shop tab", "tabShop", "productList"),
      tapped("The tea", "product-" + present.teaId, "addToCart"),
      {{"How many", "Tap plus until there are " + std::to_string(present.packets),
        [count = std::to_string(present.packets)] { return textOf("quantityValue") == count; }, read("quantityValue")},
       [packets = present.packets](DemoHands& hands) {
         for (int i = 1; i < packets; ++i) hands.tap(named("quantityPlus"));
       }},
      {{"In the cart", "Tap \u201cAdd to cart\u201d", [] { return !textOf("addedNote").empty(); }, read("addedNote")},
       tapOn("addToCart")},
      tapped("The cart", "tabCart", "cart-" + present.teaId),
      tapped("The form", "pay", "deliveryName"),
      typed("The name", "deliveryName", present.name, "\n"),
      typed("The street", "deliveryStreet", present.street, "\n"),
      typed("The town", "deliveryCity", present.city, "\n"),
      {{"The time", "Turn the wheel to \u201c" + present.time + "\u201d",
        [time = present.time] { return textOf("deliverySlot").starts_with(time); }, read("deliverySlot")},
       [row = present.timeRow](DemoHands& hands) {
         hands.tap(named("deliverySlot"));
         hands.wait(0.6);
         hands.turn(named("deliverySlotPicker"), row, 0);
       }},
      {{"The note", "Write \u201c" + present.note + "\u201d",
        [note = present.note] { return textOf("deliveryNotes") == note; }, read("deliveryNotes")},
       [note = present.note](DemoHands& hands) {
         hands.tap(named("deliveryNotes"));
         hands.wait(0.6);
         hands.type(note);
       }},
      {{"Out of the fields", "Tap beside them", [] { return shows("deliveryForm"); }, say("The keyboard is away")},
       [](DemoHands& hands) { hands.tap(screenReader::labelReading("Notes")); }},
      {{"The order", "Tap \u201cPlace order\u201d", [] { return shows("orderNumber"); }, read("orderNumber")},
       tapOn("placeOrder")},
  };
}

std::vector<DemoStop> stopsOf(const std::vector<DemoAct>& acts) {
  std::vector<DemoStop> stops;
  for (const DemoAct& act : acts) stops.push_back(act.stop);
  return stops;
}

bool isOrdered(const Shop& shop, const Present& present) {
  const auto& orders = shop.orders.orders();
  if (orders.empty() || orders.back().lines.size() != 1) return false;
  const Cart::Line& line = orders.back().lines.front();
  const Delivery& delivery = orders.back().delivery;
  return line.product->id == present.teaId && line.quantity == present.packets && delivery.name == present.name &&
         delivery.street == present.street && delivery.city == present.city &&
         delivery.slot.starts_with(present.time) && delivery.notes == present.note;
}

Demonstration sendPresent() {
  DemoStory replay;
  replay.title = "Asked for in other words, for somebody else";
  replay.request = "Please have " + std::to_string(asked.packets) + " " + asked.tea + " brought to " + asked.name +
                   ", " + asked.street + ", " + asked.city + " with the note " + asked.note;
  replay.stops = stopsOf(presentActs(asked));
  replay.outcome = "Done Place order";
  replay.kept = "the newest order is 3 genmaicha for " + asked.name + ", " + asked.street + ", " + asked.city +
                ", in the afternoon, with the note";
  replay.isKept = [](const Shop& shop) { return isOrdered(shop, asked); };
  const std::string tea = std::to_string(shown.packets) + " " + shown.tea;
  const std::string whereTo = shown.name + ", " + shown.street + ", " + shown.city + " with the note " + shown.note;
  return {"Send tea as a present",
          {"send " + tea + " to " + whereTo, "a present of " + tea + " for " + whereTo},
          &goToShop,
          presentActs(shown),
          [](const Shop& shop) { return isOrdered(shop, shown); },
          std::move(replay)};
}

std::vector<DemoAct> storyActs(const std::string& words) {
  const std::string story = "story-0-0-SegueIdentifier-showStory";
  return {
      tapped("The Shop tab", "tabShop", "productList"),
      tapped("The search", "shopSearch", "teaSearch"),
      {{"What was found", "Search for \u201c" + words + "\u201d",
        [words] { return textOf("searchNote").find(words) != std::string::npos; }, read("searchNote")},
       [words](DemoHands& hands) {
         hands.wait(0.6);
         hands.type(words);
       }},
      {{"The shop again", "Cancel the search", [] { return shows("productList") && !shows("teaSearch"); },
        say("The search is gone")},
       [](DemoHands& hands) { hands.tap(screenReader::buttonTitled("Cancel")); }},
      tapped("The Stories tab", "tabStories", "storyGallery"),
      tapped("A story", story, "storyText"),
      {{"The mark", "Tap the heart", [] { return shows("storyNote"); }, read("storyNote")}, tapOn("storyFavourite")},
      goesBack("The stories again", "storyGallery"),
  };
}

constexpr const char* firstStory = "Before the mist lifts";

Demonstration keepStory() {
  DemoStory replay;
  replay.title = "Asked for in other words, about another tea";
  replay.request = "I want to look up oolong and then keep the first story please";
  replay.stops = stopsOf(storyActs("oolong"));
  replay.outcome = "Done ";
  replay.given = [](Shop& shop) { shop.favouriteStories.clear(); };
  replay.kept = "the first story is kept";
  replay.isKept = [](const Shop& shop) { return shop.favouriteStories.contains(firstStory); };
  return {"Look a tea up and keep the first story",
          {"look up matcha and keep the first story"},
          &goToShop,
          storyActs("matcha"),
          [](const Shop& shop) { return shop.favouriteStories.contains(firstStory); },
          std::move(replay)};
}

}  // namespace

const std::vector<Demonstration>& demonstrations() {
  static const std::vector<Demonstration> all = {sendPresent(), keepStory()};
  return all;
}

}  // namespace teashop
