// Shows what the assistant sees: for a screen of the tea shop, or all of them, the snapshot as JSON and an annotated
// picture.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "examples/teashop/ScreenCatalogue.h"
#include "lumicor/core/LumicorUtils.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/application/UIApplication.h"
#include "tools/inspect/Annotation.h"
#include "tools/inspect/Inspection.h"

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

bool writeFile(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  return static_cast<bool>(stream.flush());
}

/// Writes one screen. `foundActed` becomes true when it has the element acted on.
bool inspectScreen(teashop::TeashopApplication& application, const teashop::NamedScreen& named,
                   const Arguments& arguments, bool& foundActed) {
  named.show(application);
  RunLoop::advance(1);
  const auto screen = LumicorUtils::getCurrentViewController();
  if (!screen) return false;
  auto inspection = inspect::inspectionOf(screen, arguments.acted);
  foundActed = foundActed || inspection.has_value();
  if (!inspection) inspection = inspect::inspectionOf(screen, "");
  const LumicorSnapshot& snapshot = inspection->snapshot;
  const auto json = encodeJSON(snapshot);
  const auto picture = inspect::annotated(*UIApplication::shared().screenshot(), *inspection, named.name);
  const bool isWritten = json && picture && writeFile(arguments.out / (named.name + ".json"), *json + "\n") &&
                         writeFile(arguments.out / (named.name + ".png"), picture->pngRepresentation());
  std::printf("%-14s %-20s %3zu elements, %zu scroll positions, %zu around%s\n", named.name.c_str(),
              snapshot.viewName().c_str(), snapshot.elements().size(), snapshot.scrollDetails().size(),
              inspection->around.size(), isWritten ? "" : "  NOT WRITTEN");
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
  UIApplication::goWithoutDisplay();
  const VirtualTime time;
  teashop::TeashopApplication application;
  bool isGood = true;
  bool foundActed = false;
  for (const teashop::NamedScreen* const screen : arguments->screens) {
    isGood = inspectScreen(application, *screen, *arguments, foundActed) && isGood;
  }
  if (!foundActed) {
    std::fprintf(stderr, "inspect: no element goes by \"%s\"\n", arguments->acted.c_str());
    return 1;
  }
  return isGood ? 0 : 1;
}
