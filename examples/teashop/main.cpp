// The tea shop. With a window for a person, or played by itself.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "examples/teashop/TeashopApplication.h"
#include "examples/teashop/demo/DemoPlayer.h"
#include "examples/teashop/demo/Demonstration.h"
#include "examples/teashop/demo/Gallery.h"
#include "examples/teashop/demo/GalleryPage.h"
#include "examples/teashop/demo/TaughtTasks.h"
#include "examples/teashop/demo/TeachPlayer.h"
#include "examples/teashop/demo/TeachReport.h"
#include "platform/dispatch/Clock.h"
#include "platform/foundation/Bundle.h"
#include "platform/uikit/application/UIApplication.h"

namespace {

enum class Mode { window, play, teach, replay, gallery };

struct Arguments {
  std::string service;
  Mode mode = Mode::window;
  std::string folder;
  std::string styleSheets;
  bool isFast = false;
  bool playsEveryStory = false;
};

constexpr const char* usage =
    "usage: teashop --service URL [--play FOLDER [--all] | --teach FOLDER | --replay FOLDER | --gallery FOLDER "
    "--styles "
    "FOLDER] [--fast]\n"
    "  --service URL     where the assistant's service listens\n"
    "  --play FOLDER     plays a request without a person, visits every screen and writes the report there\n"
    "  --all             plays every request, not only the first\n"
    "  --teach FOLDER    shows the assistant some tasks, as a person does with the control bar\n"
    "  --replay FOLDER   asks for what --teach has shown, and writes the report there\n"
    "  --gallery FOLDER  writes a page with pictures of all that people see of the assistant there\n"
    "  --styles FOLDER   where the gallery's style sheets are\n"
    "  --fast            in virtual time\n";

std::optional<Arguments> parse(int count, char** values) {
  constexpr std::pair<const char*, Mode> modes[] = {
      {"--play", Mode::play}, {"--teach", Mode::teach}, {"--replay", Mode::replay}, {"--gallery", Mode::gallery}};
  Arguments arguments;
  for (int i = 1; i < count; ++i) {
    const std::string option = values[i];
    const bool hasValue = i + 1 < count;
    const auto* const mode = std::ranges::find(modes, option, &std::pair<const char*, Mode>::first);
    if (mode != std::end(modes) && hasValue && arguments.mode == Mode::window) {
      arguments.mode = mode->second;
      arguments.folder = values[++i];
    } else if (option == "--service" && hasValue) {
      arguments.service = values[++i];
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
  const bool isGallery = arguments.mode == Mode::gallery;
  if (arguments.service.empty() || isGallery == arguments.styleSheets.empty()) return std::nullopt;
  arguments.isFast = arguments.isFast || isGallery;
  return arguments;
}

int play(teashop::TeashopApplication& application, const Arguments& arguments) {
  teashop::DemoReport report(arguments.folder);
  teashop::DemoPlayer player(application, arguments.service, report);
  auto stories = teashop::demoStories();
  if (!arguments.playsEveryStory) stories.resize(1);
  player.play(stories);
  const auto times = player.times();
  std::printf("   %.1f s of processor time, pictures not counted\n", times.processorSeconds);
  player.visitEveryScreen();
  return report.write(times) && report.holds() ? 0 : 1;
}

/// Asks for what was shown, under the ids that the service gave.
int replay(teashop::TeashopApplication& application, const Arguments& arguments) {
  teashop::DemoReport shown(arguments.folder);
  const std::vector<std::string> ids = teashop::TaughtTasks::load(arguments.folder);
  if (!shown.resume() || ids.size() != teashop::demonstrations().size()) {
    std::fprintf(stderr, "teashop: nothing was shown yet; begin with --teach %s\n", arguments.folder.c_str());
    return 1;
  }
  std::vector<teashop::DemoStory> stories;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    stories.push_back(teashop::demonstrations()[i].replay);
    stories.back().taskId = ids[i];
  }
  teashop::DemoReport replayed(arguments.folder);
  teashop::DemoPlayer player(application, arguments.service, replayed);
  player.play(stories);
  const teashop::TeachReport report(shown, teashop::capturedTasks(arguments.folder), replayed);
  return report.write(player.times()) && report.holds() ? 0 : 1;
}

int showGallery(teashop::TeashopApplication& application, const Arguments& arguments) {
  teashop::GalleryPage page(arguments.folder);
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
  if (arguments->isFast) platform::Clock::useVirtualTime(platform::Clock::secondsSince1970());

  teashop::TeashopApplication application;
  teashop::TeashopApplication::startAssistant(arguments->service);
  switch (arguments->mode) {
    case Mode::window:
      break;
    case Mode::play:
      return play(application, *arguments);
    case Mode::teach:
      return teashop::TeachPlayer(application, arguments->service, arguments->folder).play() ? 0 : 1;
    case Mode::replay:
      return replay(application, *arguments);
    case Mode::gallery:
      return showGallery(application, *arguments);
  }
  const int code = platform::UIApplication::shared().run("Tea shop");
  // Requests may be under way on threads of their own: nothing is taken from under them.
  std::fflush(nullptr);
  std::quick_exit(code);
}
