#include "examples/teashop/demo/DemoPlayer.h"

#include <cstdio>
#include <fstream>

#include "examples/teashop/demo/ScreenReader.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/JSONValue.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"
#include "platform/graphics/UIImage.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UITextField.h"

namespace teashop {

using namespace platform;

namespace {

constexpr const char* request = "Order 2 sencha to Ada Lovelace, 12 Harbour Street, Bristol";
constexpr const char* outcome = "Done Place order";

const char* const expectedEvents[] = {"LUMICOR_INITIALIZED", "CHAT_VIEW_OPEN", "MESSAGE_SENT", "ACTION_RESPONSE",
                                      "TASK_SUCCESS"};

std::string labelText(const std::string& identifier) {
  const auto label = as<UILabel>(screenReader::named(identifier));
  return label ? label->text().value_or("") : "";
}

std::string fieldText(const std::string& identifier) {
  const auto field = as<UITextField>(screenReader::named(identifier));
  return field ? field->text().value_or("") : "";
}

bool isOnScreen(const std::string& identifier) { return screenReader::named(identifier) != nullptr; }

/// What the service answers to a GET, empty when nothing came.
Data fetch(const std::string& address) {
  const auto url = URL::parse(address);
  if (!url) return {};
  struct Reply {
    bool isThere = false;
    Data body;
  };
  const auto reply = std::make_shared<Reply>();
  URLSession::shared()
      ->dataTask(
          *url,
          [reply](std::optional<Data> data, const std::optional<HTTPURLResponse>&, const std::optional<URLError>&) {
            DispatchQueue::main().async([reply, body = std::move(data).value_or("")] {
              reply->body = body;
              reply->isThere = true;
            });
          })
      ->resume();
  RunLoop::advanceUntil([&] { return reply->isThere; }, 5);
  return reply->body;
}

/// The names of the events that the service tells of, oldest first.
std::vector<std::string> eventNames(const Data& body) {
  std::vector<std::string> names;
  const auto reply = JSONValue::parse(body);
  const JSONValue* const data = reply ? reply->find("data") : nullptr;
  const JSONValue* const events = data ? data->find("events") : nullptr;
  if (!events || !events->asArray()) return names;
  for (const JSONValue& event : *events->asArray()) {
    const JSONValue* const name = event.find("eventName");
    if (name && name->asString()) names.push_back(*name->asString());
  }
  return names;
}

/// The view stands still: nothing is between two places any more.
void rest() { RunLoop::advance(0.6); }

}  // namespace

DemoPlayer::DemoPlayer(TeashopApplication& application, std::string serviceAddress, std::filesystem::path folder)
    : application_(application),
      serviceAddress_(std::move(serviceAddress)),
      report_(std::move(folder)),
      startedAt_(Clock::mediaTime()),
      lastStageAt_(startedAt_) {}

bool DemoPlayer::play() {
  for (void (DemoPlayer::*part)() :
       {&DemoPlayer::openChat, &DemoPlayer::ask, &DemoPlayer::watch, &DemoPlayer::readOutcome, &DemoPlayer::check}) {
    if (!isBroken_) (this->*part)();
  }
  if (isBroken_) stage("Where it stopped", "", "The story did not go on from here");
  return report_.write(request, Clock::mediaTime() - startedAt_, Clock::isVirtual()) && report_.holds();
}

bool DemoPlayer::until(const std::string& what, const Condition& condition, double seconds) {
  if (RunLoop::advanceUntil(condition, seconds)) return true;
  report_.add(
      DemoReport::Check{what, false, "it did not happen within " + std::to_string(static_cast<int>(seconds)) + " s"});
  std::printf("   never happened: %s\n", what.c_str());
  isBroken_ = true;
  return false;
}

void DemoPlayer::tap(const Ref<UIView>& view) {
  bool isDone = false;
  driver_.tap(view, [&] { isDone = true; });
  RunLoop::advanceUntil([&] { return isDone; }, 5);
}

void DemoPlayer::stage(const std::string& title, const std::string& asked, const std::string& done) {
  char name[64];
  std::snprintf(name, sizeof name, "%02zu.png", report_.stages().size() + 1);
  const Ref<UIImage> picture = UIApplication::shared().screenshot();
  std::ofstream(report_.folder() / name, std::ios::binary) << picture->pngRepresentation();
  const double now = Clock::mediaTime();
  report_.add(DemoReport::Stage{title, asked, done, name, now - lastStageAt_});
  std::printf("   [%5.1f s] %s\n", now - startedAt_, title.c_str());
  std::fflush(stdout);
  lastStageAt_ = now;
}

void DemoPlayer::openChat() {
  if (!until("the floating button appears", [] { return screenReader::ofClass("TLFloaterView") != nullptr; })) return;
  rest();
  stage("The shop", "Start the shop with the assistant inside", "The service answered, the round button is there");
  tap(screenReader::ofClass("TLFloaterView"));
  if (!until("the chat opens", [] { return screenReader::buttonTitled("Send") != nullptr; })) return;
  rest();
  stage("The chat", "Tap the round button", "The chat fills the screen, the shop's bars are gone");
}

void DemoPlayer::ask() {
  tap(screenReader::ofClass("PaddedTextField"));
  rest();
  bool isTyped = false;
  driver_.type(request, [&] { isTyped = true; });
  RunLoop::advanceUntil([&] { return isTyped; }, 60);
  stage("A request", "Say what is wanted", "Typed on the software keyboard");
  tap(screenReader::buttonTitled("Send"));
  // A service that answers at once takes the chat away before it can be looked at.
  if (!until(
          "the request is on its way", [] { return screenReader::reads(request) || isOnScreen("productList"); }, 3))
    return;
  if (!screenReader::reads(request)) return;
  rest();
  stage("Sent", "Tap Send", "The bubble stands, the assistant is at work");
}

void DemoPlayer::watch() {
  const auto inTheShop = [](const std::string& what) { return "the assistant " + what; };
  if (!until("the chat makes way", [] { return isOnScreen("productList"); })) return;
  if (!until(inTheShop("opens the tea"), [] { return isOnScreen("addToCart"); })) return;
  rest();
  stage("The tea", "Choose Sencha", "The row was selected, the tea is open");
  if (!until(inTheShop("sets the quantity"), [] { return labelText("quantityValue") == "2"; })) return;
  rest();
  stage("Two packets", "Set the quantity to 2", "Plus was tapped once");
  if (!until(inTheShop("adds it to the cart"), [] { return !labelText("addedNote").empty(); })) return;
  rest();
  stage("In the cart", "Add it", labelText("addedNote"));
  if (!until(inTheShop("goes to the cart"), [] { return isOnScreen("pay") && isOnScreen("cart-sencha"); })) return;
  rest();
  stage("The cart", "Switch to the Cart tab", "Total " + labelText("cartTotal"));
  if (!until(inTheShop("pays"), [] { return isOnScreen("deliveryName"); })) return;
  if (!until(
          inTheShop("fills the form"), [] { return !fieldText("deliveryCity").empty(); }, 40))
    return;
  rest();
  stage("The form", "Fill in the delivery",
        fieldText("deliveryName") + ", " + fieldText("deliveryStreet") + ", " + fieldText("deliveryCity"));
  if (!until(inTheShop("places the order"), [] { return isOnScreen("orderNumber"); })) return;
  rest();
  stage("The order", "Confirm", labelText("orderNumber"));
}

void DemoPlayer::readOutcome() {
  if (!until("the outcome is told in the reopened chat", [] { return screenReader::reads(outcome); })) return;
  rest();
  stage("The outcome", "Hear how it went", "The chat is open again and says: " + std::string(outcome));
  report_.add(DemoReport::Check{"the outcome text came", true, outcome});
}

void DemoPlayer::check() {
  checkOrder();
  checkEvents();
}

void DemoPlayer::checkOrder() {
  const auto& orders = application_.shop()->orders.orders();
  const bool isRight =
      orders.size() == 1 && orders.front().lines.size() == 1 && orders.front().lines.front().product->id == "sencha" &&
      orders.front().lines.front().quantity == 2 && orders.front().delivery.name == "Ada Lovelace" &&
      orders.front().delivery.street == "12 Harbour Street" && orders.front().delivery.city == "Bristol";
  report_.add(DemoReport::Check{"the shop has one order: 2 sencha for Ada Lovelace, 12 Harbour Street, Bristol",
                                isRight, std::to_string(orders.size()) + " orders"});
}

void DemoPlayer::checkEvents() {
  std::vector<std::string> seen;
  std::size_t matched = 0;
  // The last event is on its way when the outcome is read: ask until it is there.
  const bool isThere = RunLoop::advanceUntil(
      [&] {
        seen = eventNames(fetch(serviceAddress_ + "/admin/events"));
        matched = 0;
        for (const std::string& name : seen) {
          if (matched < std::size(expectedEvents) && name == expectedEvents[matched]) ++matched;
        }
        return matched == std::size(expectedEvents);
      },
      5);
  std::string found;
  for (const std::string& name : seen) found += (found.empty() ? "" : ", ") + name;
  report_.add(DemoReport::Check{"the service holds the five events in order", isThere, found});
}

}  // namespace teashop
