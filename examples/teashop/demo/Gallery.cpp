#include "examples/teashop/demo/Gallery.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <utility>

#include "examples/teashop/demo/GalleryTexts.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/ui/LumicorFontHelper.h"
#include "lumicor/ui/LumicorImageCache.h"
#include "lumicor/ui/LumicorLoaderView.h"
#include "lumicor/ui/LumicorProcessingDialogView.h"
#include "lumicor/ui/LumicorToast.h"
#include "lumicor/ui/TLBottomCloseView.h"
#include "lumicor/ui/TLChatViewController.h"
#include "lumicor/ui/TLFloaterManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/IndexPath.h"
#include "platform/foundation/Record.h"
#include "platform/foundation/URLProtocol.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/device/UIAccessibility.h"
#include "platform/uikit/device/UIScreen.h"
#include "platform/uikit/views/UIImageView.h"

namespace teashop {

using namespace platform;
using lumicor::Lumicor;
using lumicor::TLFloaterManager;
using lumicor::TLLayout;
using lumicor::TLStyles;

namespace {

constexpr double patience = 30;    // for anything that has to come about
constexpr double longestHold = 8;  // of the service's answer
constexpr const char* wish = "Order 2 sencha";

const Ref<lumicor::TLChatViewController>& chat() { return TLFloaterManager::shared().chatViewController(); }
const Ref<lumicor::TLFloaterView>& button() { return TLFloaterManager::shared().floaterView(); }

/// Nothing moves any more, and the scroll indicators have gone.
void rest() { RunLoop::advance(2); }

/// The rectangle with some of its surroundings, on the screen.
CGRect around(const CGRect& rect, double margin) {
  return rect.insetBy(-margin, -margin).intersection(UIScreen::main().bounds());
}

CGRect bottomOfScreen(double height) {
  const CGRect screen = UIScreen::main().bounds();
  return {0, screen.height() - height, screen.width(), height};
}

std::string textOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

/// While it lives, requests are answered late and by nobody but itself.
URLProtocol::Registration answerLate(const std::string& answer) {
  const JSONValue body = JSONValue::object(
      {{"status_code", 200},
       {"message", "OK"},
       {"data",
        JSONValue::object({{"isAction", 0}, {"answer", answer}, {"shouldOpenChatWindow", 1}, {"taskId", ""}})}});
  return URLProtocol::registerHandler([body](const URLRequest& request) -> std::optional<URLProtocol::Reply> {
    if (request.url().path() != "/sdk/steps/get") return std::nullopt;
    return URLProtocol::Reply::json(200, body).after(longestHold);
  });
}

std::string hundredths(double seconds) {
  char text[16];
  std::snprintf(text, sizeof text, "%.2f", seconds);
  return text;
}

}  // namespace

Gallery::Gallery(TeashopApplication& application, std::filesystem::path styleSheets)
    : application_(application), styleSheets_(std::move(styleSheets)) {}

std::string Gallery::play(const Taker& take) {
  take_ = take;
  failure_.clear();
  using Part = void (Gallery::*)();
  if (waitForAssistant()) {
    for (const Part part : {&Gallery::playButton, &Gallery::playChat, &Gallery::playStyleSheets, &Gallery::playWaiting,
                            &Gallery::playTransitions}) {
      if (failure_.empty()) (this->*part)();
    }
  }
  closeChat();
  take_ = nullptr;
  return failure_;
}

// ---- The states

bool Gallery::waitForAssistant() {
  if (!until("the floating button appears", [] { return button() && button()->window(); })) return false;
  layout_ = TLFloaterManager::shared().layoutData();
  auto& cache = lumicor::LumicorImageCache::shared();
  return until("the button's picture comes", [&] { return cache.image(layout_.image) != nullptr; }) &&
         until("the chat's font comes", [] { return lumicor::LumicorFontHelper::isFontLoaded(); });
}

void Gallery::playButton() {
  section({"The button", "It floats above the shop, wherever the customer goes."});
  begin(galleryTexts::shortConversation());
  picture("button", "At rest", "Where it first appears. It can be dragged to any place along the edges.",
          around(button()->frame(), 60));

  TLLayout plain = layout_;
  plain.image = "";
  begin({}, plain);
  picture("button-glyph", "Without its picture", "Until the picture has come, or when there is none: a drawn sign.",
          around(button()->frame(), 60));

  begin({});
  const CGPoint from = button()->center();
  const CGSize screen = UIScreen::main().bounds().size;
  const CGPoint target{screen.width - 48, screen.height - 48};  // the ring
  bool isLetGo = false;
  hands_.drag({from, target}, 1, [&] { isLetGo = true; });
  until("the button is over its target",
        [] { return TLFloaterManager::shared().bottomCloseView()->insideBottomSelected; });
  RunLoop::advance(0.25);  // it fades there
  picture("button-over-target", "Over the corner", "Let go here, and the button is gone until the next start.",
          bottomOfScreen(320));
  until("the button is let go", [&] { return isLetGo; });
}

void Gallery::playChat() {
  section({"The chat", "It fills the screen. The shop\u2019s own bars are away while it is open."});
  const auto shows = [this](std::vector<lumicor::TLChatMessage> said, const std::string& name, const std::string& title,
                            const std::string& caption) {
    begin(std::move(said));
    openChat();
    picture(name, title, caption);
  };
  shows({}, "chat-empty", "Nothing said yet", "");
  shows(galleryTexts::shortConversation(), "chat-short", "A short conversation",
        "The assistant at the left, the customer at the right.");
  shows(galleryTexts::longConversation(40), "chat-long", "A long conversation",
        "It opens at its end. A line shows that there is more above.");
  shows(galleryTexts::veryLongMessage(), "chat-long-message", "A very long message",
        "It is shown whole; the list scrolls through it.");
  begin(galleryTexts::scripts());
  openChat();
  chat()->tableView()->scrollToRow(IndexPath(0, 0), UITableViewScrollPosition::top, false);
  rest();
  picture("chat-scripts", "Many scripts", "Each in its own direction.");
  chat()->scrollToBottom(false);
  rest();
  picture("chat-scripts-end", "Many scripts, the later ones", "");

  begin(galleryTexts::shortConversation());
  openChat();
  tap(chat()->inputTextField());
  picture("chat-keyboard", "The keyboard is up", "The conversation moves up with it.");
  ask(wish);
  picture("chat-typing", "The assistant is at work", "Nothing can be sent until it has answered.");
  listen();
  picture("chat-answered", "It has answered", "The field is ready for the next wish.");

  begin(galleryTexts::shortConversation());
  chat()->layoutData.reset();
  openChat();
  picture("chat-no-layout", "Without a configuration",
          "A chat that was made without a layout, which no start of the assistant does. Nobody should meet it.");
}

void Gallery::playStyleSheets() {
  section({"Three style sheets", "The same chat as the service can dress it: colours, font and sizes, no code."});
  const std::vector<std::pair<std::string, std::string>> sheets = {
      {"dark", "Dark: black and grey on paper, with a green Send"},
      {"tinted", "Tinted: one blue, light and deep"},
      {"branded", "Branded: the shop\u2019s green, and amber"},
  };
  for (const auto& [name, caption] : sheets) {
    const std::filesystem::path file = styleSheets_ / (name + ".json");
    if (!expect(std::filesystem::exists(file), "the style sheet " + name + " cannot be read: " + file.string())) return;
    const auto styles = decodeJSON<TLStyles>(textOf(file));
    if (!expect(static_cast<bool>(styles), "the style sheet " + name + ": " + (styles ? "" : styles.error()))) return;
    TLLayout layout = layout_;
    layout.styles = *styles;
    begin(galleryTexts::shortConversation(), layout);
    openChat();
    picture("style-" + name, caption, "");
    tap(chat()->inputTextField());
    ask(wish);
    picture("style-" + name + "-typing", "At work", "", bottomOfScreen(400));
    listen();
  }
}

void Gallery::playWaiting() {
  section({"Waiting, and being told", "Over the shop, while something is under way or has just been done."});
  begin({});
  const CGSize screen = UIScreen::main().bounds().size;
  constexpr double side = 150;
  const auto loader =
      make<lumicor::LumicorLoaderView>(CGRect{(screen.width - side) / 2, (screen.height - side) / 2, side, side});
  loader->show();
  RunLoop::advance(0.35);
  picture("loader", "The session starts", "The shop waits below.", around(loader->frame(), 30));
  loader->dismiss();

  const auto dialog = make<lumicor::LumicorProcessingDialogView>();
  dialog->show();
  until("the dialog's animation comes", [&] { return dialog->gifImageView()->image() != nullptr; });
  RunLoop::advance(0.5);
  picture("processing", "The assistant works", "A small card near the bottom, while the shop is being operated.",
          around(dialog->frame(), 30));
  dialog->dismiss();
  rest();

  lumicor::LumicorToast::show("Task Capture Successful");
  RunLoop::advance(0.5);
  picture("toast", "A short message", "It goes by itself.", bottomOfScreen(320));
  RunLoop::advance(5);
  for (const char* const message :
       {"Action registered. Proceed...",
        "A message that is too long for one line of the screen, and so takes two of them", "Task Capture Successful"}) {
    lumicor::LumicorToast::show(message);
    RunLoop::advance(0.4);
  }
  picture("toasts", "Three at once", "The newest stands lowest.", bottomOfScreen(320));
  RunLoop::advance(5);
}

void Gallery::playTransitions() {
  const std::vector<double> times = {0, 0.05, 0.10, 0.15, 0.25};
  section({"Opening", "The chat grows out of the button, within three tenths of a second.", true});
  begin(galleryTexts::shortConversation());
  playOpening("open-", times);
  rest();
  section({"Closing", "And back into it.", true});
  playClosing(times);
  rest();
  section({"Less motion", "Who has asked the device for less motion sees it fade instead.", true});
  UIAccessibility::setReduceMotionEnabled(true);
  playOpening("open-reduced-", {0.15});
  rest();
  UIAccessibility::setReduceMotionEnabled(false);
}

void Gallery::playOpening(const std::string& name, const std::vector<double>& times) {
  hands_.tap(button());
  if (!until("the chat opens", [this] { return isChatOpen(); })) return;
  double before = 0;
  for (const double time : times) {
    RunLoop::advance(time - std::exchange(before, time));
    picture(name + hundredths(time), hundredths(time) + " s", "");
  }
}

void Gallery::playClosing(const std::vector<double>& times) {
  hands_.tap(chat()->crossButton());
  if (!until("the chat closes", [this] { return !isChatOpen(); })) return;
  double before = 0;
  for (const double time : times) {
    RunLoop::advance(time - std::exchange(before, time));
    picture("close-" + hundredths(time), hundredths(time) + " s", "");
  }
}

// ---- How they are reached

void Gallery::begin(std::vector<lumicor::TLChatMessage> said, const TLLayout& layout) {
  closeChat();
  Lumicor::shared().setChatHistory(std::move(said));
  TLFloaterManager& manager = TLFloaterManager::shared();
  manager.setLayoutData(layout);
  manager.show();
  button()->setShow(true);
  rest();
}

bool Gallery::isChatOpen() const {
  const auto navigation = as<UINavigationController>(application_.tabs()->selectedViewController());
  return navigation && chat() && navigation->topViewController() == chat();
}

void Gallery::openChat() {
  tap(button());
  until("the chat opens", [this] { return isChatOpen(); });
  rest();
}

void Gallery::closeChat() {
  if (!isChatOpen()) return;
  chat()->closeWithoutAnimation();
  rest();
}

void Gallery::ask(const std::string& request) {
  const auto late = answerLate("It is in your cart. Shall I order it?");
  hands_.type(request);
  until("the wish is typed", [this] { return !hands_.isBusy(); });
  tap(chat()->sendButton());
}

void Gallery::listen() {
  until("the answer comes", [] { return chat()->sendButton()->isEnabled(); });
  rest();
}

void Gallery::tap(const Ref<UIView>& view) {
  hands_.tap(view);
  until("a finger is lifted", [this] { return !hands_.isBusy(); });
  rest();
}

bool Gallery::expect(bool holds, const std::string& what) {
  if (!holds && failure_.empty()) failure_ = what;
  return holds;
}

bool Gallery::until(const std::string& what, const std::function<bool()>& condition) {
  return expect(RunLoop::advanceUntil(condition, patience), "it never happened that " + what);
}

void Gallery::picture(const std::string& name, const std::string& title, const std::string& caption) {
  picture(name, title, caption, UIScreen::main().bounds());
}

void Gallery::picture(const std::string& name, const std::string& title, const std::string& caption, CGRect focus) {
  if (!failure_.empty()) return;
  take_({name, section_, title, caption, UIApplication::shared().screenshot(), focus});
}

}  // namespace teashop
