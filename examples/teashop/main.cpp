// The tea shop. With a window for a person, or played by itself.

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "examples/teashop/TeashopApplication.h"
#include "examples/teashop/demo/DemoPlayer.h"
#include "examples/teashop/demo/Gallery.h"
#include "examples/teashop/demo/GalleryPage.h"
#include "platform/dispatch/Clock.h"
#include "platform/foundation/Bundle.h"
#include "platform/uikit/application/UIApplication.h"

namespace {

struct Arguments {
  std::string service;
  std::optional<std::string> playInto;
  std::optional<std::string> galleryInto;
  std::string styleSheets;
  bool isFast = false;
  bool playsEveryStory = false;
};

constexpr const char* usage =
    "usage: teashop --service URL [--play FOLDER [--all] [--fast] | --gallery FOLDER --styles FOLDER]\n"
    "  --service URL     where the assistant's service listens\n"
    "  --play FOLDER     plays a request without a person, visits every screen and writes the report there\n"
    "  --all             plays every request, not only the first\n"
    "  --fast            in virtual time\n"
    "  --gallery FOLDER  writes a page with pictures of all that people see of the assistant there\n"
    "  --styles FOLDER   where the gallery's style sheets are\n";

std::optional<Arguments> parse(int count, char** values) {
  Arguments arguments;
  for (int i = 1; i < count; ++i) {
    const std::string option = values[i];
    const bool hasValue = i + 1 < count;
    if (option == "--service" && hasValue) {
      arguments.service = values[++i];
    } else if (option == "--play" && hasValue) {
      arguments.playInto = values[++i];
    } else if (option == "--gallery" && hasValue) {
      arguments.galleryInto = values[++i];
    } else if (option == "--styles" && hasValue) {
      arguments.styleSheets = values[++i];
    } else if (option == "--fast") {
      arguments.isFast = true;
    } else if (option == "--all") {
      arguments.playsEveryStory = true;
    } else {
      return std::nullopt;
    }
  }
  if (arguments.service.empty()) return std::nullopt;
  if (arguments.galleryInto && (arguments.playInto || arguments.styleSheets.empty())) return std::nullopt;
  return arguments;
}

int showGallery(teashop::TeashopApplication& application, const Arguments& arguments) {
  teashop::GalleryPage page(*arguments.galleryInto);
  const std::string failure =
      teashop::Gallery(application, arguments.styleSheets).play([&](const teashop::GalleryPicture& picture) {
        std::printf("   %s\n", picture.name.c_str());
        page.add(picture);
      });
  const bool isWritten = page.write();
  if (!failure.empty()) std::fprintf(stderr, "teashop: %s\n", failure.c_str());
  if (!isWritten) std::fprintf(stderr, "teashop: the gallery cannot be written\n");
  return failure.empty() && isWritten ? 0 : 1;
}

}  // namespace

int main(int count, char** values) {
  const auto arguments = parse(count, values);
  if (!arguments) {
    std::fputs(usage, stderr);
    return 2;
  }
  platform::Bundle::main().setInfoDictionary(platform::JSONValue::object(
      {{"CFBundleIdentifier", "com.example.teashop"}, {"CFBundleShortVersionString", "1.4.0"}}));
  if (arguments->isFast || arguments->galleryInto) platform::Clock::useVirtualTime(platform::Clock::secondsSince1970());

  teashop::TeashopApplication application;
  teashop::TeashopApplication::startAssistant(arguments->service);
  if (arguments->galleryInto) return showGallery(application, *arguments);
  if (!arguments->playInto) return platform::UIApplication::shared().run("Tea shop");
  teashop::DemoPlayer player(application, arguments->service, *arguments->playInto);
  return player.play(arguments->playsEveryStory) ? 0 : 1;
}
