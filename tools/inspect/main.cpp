// Shows what the assistant sees: for a screen of the tea shop, or all of them, the snapshot as JSON and an annotated
// picture.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "examples/teashop/ScreenCatalogue.h"
#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementsTask.h"
#include "lumicor/screen/LumicorSnapshot.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/UIApplication.h"
#include "tools/inspect/Annotation.h"

namespace {

using namespace platform;
using namespace lumicor;

struct Arguments {
  std::vector<const teashop::NamedScreen*> screens;
  std::filesystem::path out = "out/inspect";
  std::string acted;  // the identifier of the element acted on
};

void printUsage() {
  std::puts(
      "usage: inspect (--all | SCREEN ...) [--acted IDENTIFIER] [--out FOLDER]\n"
      "  writes FOLDER/SCREEN.json and FOLDER/SCREEN.png (out/inspect)\n"
      "screens:");
  for (const teashop::NamedScreen& screen : teashop::screenCatalogue()) {
    std::printf("  %-14s %s\n", screen.name.c_str(), screen.what.c_str());
  }
}

std::optional<Arguments> parse(int count, char** values) {
  Arguments arguments;
  for (int i = 1; i < count; ++i) {
    const std::string word = values[i];
    if (word == "--all") {
      for (const teashop::NamedScreen& screen : teashop::screenCatalogue()) arguments.screens.push_back(&screen);
    } else if (word == "--out" && i + 1 < count) {
      arguments.out = values[++i];
    } else if (word == "--acted" && i + 1 < count) {
      arguments.acted = values[++i];
    } else if (const teashop::NamedScreen* const screen = teashop::screenNamed(word)) {
      arguments.screens.push_back(screen);
    } else {
      return std::nullopt;
    }
  }
  if (arguments.screens.empty()) return std::nullopt;
  return arguments;
}

LumicroElement noElement() {
  return {
      "", "", 0, 0, 0, 0, "", false, "", "", "", "Default", LumicorType::TYPE_DEFAULT, LumicorInputType::TYPE_DEFAULT};
}

LumicorSnapshot snapshotOf(const Ref<UIViewController>& screen, const std::string& acted) {
  const std::string viewName = NSStringFromClass(screen->classForCoder());
  Lumicor::shared().setCurrentView(viewName);
  LumicorScreenElements read = LumicorElementsTask::getAllElements(screen->view(), "inspect");
  LumicroElement actionElement = noElement();
  for (const LumicroElement& element : read.elements) {
    if (!acted.empty() && element.elementId() == acted) actionElement = element;
  }
  const CGSize size = screen->view()->bounds().size;
  return {viewName,
          LumicorUtils::truncated(size.height),
          LumicorUtils::truncated(size.width),
          LumicorUtils::getViewOrientation(),
          std::move(read.elements),
          {},
          std::move(actionElement),
          std::move(read.scrollDetails),
          "Default",
          "Default",
          0};
}

bool writeFile(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  return static_cast<bool>(stream.flush());
}

bool inspectScreen(teashop::TeashopApplication& application, const teashop::NamedScreen& named,
                   const Arguments& arguments) {
  named.show(application);
  RunLoop::advance(1);
  const auto screen = LumicorUtils::getCurrentViewController();
  if (!screen) return false;
  const LumicorSnapshot snapshot = snapshotOf(screen, arguments.acted);
  const auto json = encodeJSON(snapshot);
  const auto picture = inspect::annotated(*UIApplication::shared().screenshot(), snapshot, named.name);
  const bool isWritten = json && picture && writeFile(arguments.out / (named.name + ".json"), *json + "\n") &&
                         writeFile(arguments.out / (named.name + ".png"), picture->pngRepresentation());
  std::printf("%-14s %-20s %3zu elements, %zu scroll positions%s\n", named.name.c_str(), snapshot.viewName().c_str(),
              snapshot.elements().size(), snapshot.scrollDetails().size(), isWritten ? "" : "  NOT WRITTEN");
  return isWritten;
}

}  // namespace

int main(int count, char** values) {
  const auto arguments = parse(count, values);
  if (!arguments) {
    printUsage();
    return 2;
  }
  std::error_code error;
  std::filesystem::create_directories(arguments->out, error);
  const VirtualTime time;
  teashop::TeashopApplication application;
  bool isGood = true;
  for (const teashop::NamedScreen* const screen : arguments->screens) {
    isGood = inspectScreen(application, *screen, *arguments) && isGood;
  }
  return isGood ? 0 : 1;
}
