// The shop in a real window, beside the real service, under real hands: an X server without a screen, a window manager,
// and pointer and keys whose events come the way a person's do. What reached the service is the proof; the pictures of
// the window lie in out/window afterwards. Nothing waits for a time: conditions are asked for until they hold.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <numbers>
#include <unistd.h>

#include "XDesktop.h"
#include "platform/foundation/JSONValue.h"
#include "platform/graphics/UIImage.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Pictures.h"

namespace endtoend {
namespace {

namespace fs = std::filesystem;
using platform::Bitmap;
using platform::CGPoint;
using platform::JSONValue;
using testing::ElementsAre;

/// Looks in a row that have to see the same for a picture to be at rest.
constexpr int looksAtRest = 60;
/// What the service says the bubbles of the person are filled with.
constexpr std::uint32_t sentBubble = 0xFFE4EEE7;
constexpr std::uint32_t keyboardPanel = 0xFFD1D4DB;
/// Where the floating button's middle rests, from the side of the window.
constexpr double sideToButton = 40;

/// The green of the floating button, which nothing else on the shop's first screen fills a circle with.
bool isButtonGreen(std::uint32_t pixel) {
  const int red = pixel >> 16 & 0xFF, green = pixel >> 8 & 0xFF;
  return red < 60 && green > 45 && green < 120 && green > red + 20;
}

bool showsButton(const Bitmap& picture, CGPoint middle) {
  for (int eighth = 0; eighth < 8; ++eighth) {
    const double angle = eighth * std::numbers::pi / 4;
    const int x = static_cast<int>(middle.x + 24 * std::cos(angle)),
              y = static_cast<int>(middle.y + 24 * std::sin(angle));
    if (!isButtonGreen(picture.pixel(x, y))) return false;
  }
  return true;
}

std::int64_t pixelsOf(const Bitmap& picture, std::uint32_t colour) {
  return std::count(picture.data(), picture.data() + std::ptrdiff_t{picture.width()} * picture.height(), colour);
}

class Window : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("window_test_" + std::to_string(getpid()));
    fs::create_directories(folder_);
    fs::create_directories(OUT_FOLDER);
  }
  void TearDown() override {
    shop_.reset();
    service_.reset();
    desktop_.reset();
    fs::remove_all(folder_);
  }

  /// Starts everything; true once the shop's window shows the floating button.
  bool open(XDesktop::Manager manager) {
    desktop_ = std::make_unique<XDesktop>(folder_, manager);
    const fs::path assistant = ASSISTANT_FOLDER;
    service_ = std::make_unique<ChildProcess>(std::vector<std::string>{
        SERVICE_PROGRAM, "--port", "0", "--data", folder_ / "data", "--config", assistant / "config.json", "--tasks",
        assistant / "tasks.json", "--assets", assistant / "assets", "--exchange", folder_ / "http.jsonl"});
    const std::string greeting = service_->readLine();
    const std::size_t at = greeting.find("http://");
    if (at == std::string::npos) return false;
    startShop(greeting.substr(at), desktop_->name());
    return eventually([this] { return desktop_->findWindow("Tea shop"); }) && seesButton({350, 283});
  }

  void startShop(const std::string& service, const std::string& display) {
    shop_ = std::make_unique<ChildProcess>(std::vector<std::string>{TEASHOP_PROGRAM, "--service", service},
                                           std::map<std::string, std::string>{
                                               {"DISPLAY", display},
                                               {"WAYLAND_DISPLAY", ""},
                                               {"QT_QPA_PLATFORM", ""},
                                               {"QT_IM_MODULE", "compose"},
                                               {"XCOMPOSEFILE", ""},
                                               {"LC_ALL", "C.UTF-8"},
                                               {"PLATFORM_DEFAULTS_DIRECTORY", folder_ / "defaults"},
                                           },
                                           ChildProcess::Errors::read);
  }

  bool seesButton(CGPoint middle) {
    return eventually([&] { return showsButton(desktop_->picture(), middle); });
  }
  void drag(CGPoint from, const std::vector<CGPoint>& along) {
    desktop_->point(from);
    desktop_->press();
    for (const CGPoint point : along) desktop_->point(point);
  }
  /// Pixels of black letters in the chat's field while the keyboard is up.
  std::int64_t inkInField() const {
    const Bitmap picture = desktop_->picture();
    std::int64_t ink = 0;
    for (int y = 498; y < 552; ++y) {
      for (int x = 14; x < 275; ++x) {
        const std::uint32_t pixel = picture.pixel(x, y);
        ink += (pixel >> 16 & 0xFF) < 60 && (pixel >> 8 & 0xFF) < 60 && (pixel & 0xFF) < 60;
      }
    }
    return ink;
  }
  /// Presses keys that make one letter and waits until it is to be seen: what is composed overtakes keys that the program
  /// has not looked at yet.
  void typeLetter(const std::vector<std::string>& keys) {
    const std::int64_t before = inkInField();
    for (const std::string& key : keys) desktop_->key(key);
    EXPECT_TRUE(eventually([&] { return inkInField() > before; })) << keys.back();
  }
  void type(std::string_view letters) {
    for (const char c : letters) c == ' ' ? desktop_->key("space") : typeLetter({std::string(1, c)});
  }

  /// The window once it has stopped changing, kept for people under that name.
  platform::Ref<platform::UIImage> keepPicture(const std::string& name, int looks = looksAtRest) {
    Bitmap last;
    int same = 0;
    const bool isAtRest = eventually([&] {
      Bitmap now = desktop_->picture();
      const bool isSame = now.width() == last.width() && now.height() == last.height() &&
                          std::equal(now.data(), now.data() + std::ptrdiff_t{now.width()} * now.height(), last.data());
      same = isSame ? same + 1 : 0;
      last = std::move(now);
      return same >= looks;
    });
    EXPECT_TRUE(isAtRest) << "the picture \"" << name << "\" never comes to rest";
    auto image = platform::UIImage::imageWithBitmap(std::move(last));
    const std::string bytes = image->pngRepresentation();
    std::ofstream(fs::path(OUT_FOLDER) / (name + ".png"), std::ios::binary) << bytes;
    return image;
  }

  /// The values of that key in what the shop sent to the service, in order.
  std::vector<std::string> received(std::string_view key) const {
    std::vector<std::string> values;
    std::ifstream lines(folder_ / "http.jsonl");
    for (std::string line; std::getline(lines, line);) {
      const auto exchange = JSONValue::parse(line);  // the last line may be half written
      const JSONValue* const body = exchange ? exchange->find("requestBody") : nullptr;
      if (!body || !body->asString()) continue;
      const auto request = JSONValue::parse(*body->asString());
      const JSONValue* const value = request ? request->find(key) : nullptr;
      if (value && value->asString()) values.push_back(*value->asString());
    }
    return values;
  }
  bool serviceHears(const std::string& event) {
    return eventually([&] { return std::ranges::count(received("eventName"), event) > 0; });
  }
  /// The exit code, or none when the shop goes on.
  std::optional<int> endOfShop() {
    if (!eventually([this] { return shop_->hasEnded(); })) return std::nullopt;
    return shop_->wait();
  }

  fs::path folder_;
  std::unique_ptr<XDesktop> desktop_;
  std::unique_ptr<ChildProcess> service_;
  std::unique_ptr<ChildProcess> shop_;
};

TEST_F(Window, IsDrivenByPointerAndKeysFromTheFirstDragToItsClose) {
  ASSERT_TRUE(open(XDesktop::Manager::running));
  drag({350, 283}, {{330, 300}, {240, 400}, {120, 500}});
  desktop_->release();
  ASSERT_TRUE(seesButton({sideToButton, 500})) << "it glides to the side";
  keepPicture("button");

  desktop_->tap({sideToButton, 500});
  ASSERT_TRUE(serviceHears("CHAT_VIEW_OPEN"));
  platform::test::expectPicture(*keepPicture("chat"), "chat");

  desktop_->tap({150, 775});
  ASSERT_TRUE(eventually([this] { return desktop_->picture().pixel(1, 700) == keyboardPanel; }));
  type("caf");
  typeLetter({"dead_acute", "e"});
  type(" gar");
  typeLetter({"Multi_key", "comma", "c"});
  type("on");
  desktop_->key("Return");
  ASSERT_TRUE(serviceHears("MESSAGE_SENT"));
  EXPECT_TRUE(eventually([&] { return !received("query").empty(); }));
  EXPECT_THAT(received("query"), ElementsAre("café garçon"));
  EXPECT_TRUE(serviceHears("NON_ACTION_RESPONSE"));
  const auto sentPixels = [this] { return pixelsOf(desktop_->picture(), sentBubble); };
  // The answer is longer than the room above the keyboard: what was sent stands further up, a few notches of the wheel.
  EXPECT_TRUE(eventually([&] {
    desktop_->scrollUp({200, 300});
    return sentPixels() > 3000;
  })) << "the message is in the chat";
  keepPicture("message", 5);  // the caret blinks

  desktop_->tap({354, 62});
  ASSERT_TRUE(seesButton({sideToButton, 500})) << "the chat closes by its cross";
  desktop_->close();
  EXPECT_EQ(endOfShop(), 0) << shop_->readAll();
}

TEST_F(Window, ComesThroughBeingMovedAndMinimisedInTheMiddleOfADrag) {
  ASSERT_TRUE(open(XDesktop::Manager::running));
  const platform::CGRect before = desktop_->frame();
  EXPECT_EQ(before.size, (platform::CGSize{390, 844}));
  desktop_->move(300, 20);
  ASSERT_TRUE(eventually([&] { return desktop_->frame().minX() >= before.minX() + 200; }));
  drag({350, 283}, {{330, 300}, {240, 400}, {150, 500}});
  ASSERT_TRUE(seesButton({150, 500})) << "it follows the pointer";

  desktop_->minimise();
  ASSERT_TRUE(eventually([&] { return !desktop_->isVisible(); }));
  desktop_->release();
  desktop_->restore();
  ASSERT_TRUE(eventually([&] { return desktop_->isVisible(); }));
  EXPECT_TRUE(seesButton({sideToButton, 500})) << "its drag is over";
  desktop_->point({300, 600});
  desktop_->tap({sideToButton, 500});
  EXPECT_TRUE(serviceHears("CHAT_VIEW_OPEN")) << "the first press afterwards counts";
  desktop_->close();  // while the chat still comes in
  EXPECT_EQ(endOfShop(), 0) << shop_->readAll();
}

TEST_F(Window, KeepsItsShapeInAnySizeAndEndsWithTheDisplay) {
  ASSERT_TRUE(open(XDesktop::Manager::none));
  desktop_->resize(1000, 633);  // three quarters as large as asked for, with much room at the sides
  const double zoom = 0.75, left = (1000 - 390 * zoom) / 2;
  EXPECT_TRUE(eventually([&] {
    const Bitmap picture = desktop_->picture();
    return picture.width() == 1000 && picture.pixel(20, 300) == 0xFF000000 && picture.pixel(980, 300) == 0xFF000000 &&
           isButtonGreen(picture.pixel(static_cast<int>(left + 350 * zoom), static_cast<int>((283 - 24) * zoom)));
  }));
  keepPicture("large");
  desktop_->tap({left + 350 * zoom, 283 * zoom});
  EXPECT_TRUE(serviceHears("CHAT_VIEW_OPEN"));
  desktop_->resize(1, 1);
  desktop_->resize(390, 844);
  EXPECT_TRUE(eventually([&] { return desktop_->picture().pixel(20, 780) != 0xFF000000; }));

  desktop_->endServer();
  EXPECT_EQ(endOfShop(), 1);
  EXPECT_THAT(shop_->readAll(), testing::HasSubstr("connection"));
}

TEST_F(Window, IsMissedAtOnceWhenThereIsNoDisplay) {
  for (const char* display : {"", ":9999"}) {
    startShop("http://127.0.0.1:9", display);
    EXPECT_EQ(endOfShop(), 1) << display;
    EXPECT_THAT(shop_->readAll(), testing::HasSubstr("Tea shop: there is no display"));
  }
}

}  // namespace
}  // namespace endtoend
