// Performs steps on the tea shop and tells what each one looked up, found and returned: for finding out why a task does
// not do what it should.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>

#include "platform/dispatch/Clock.h"
#include "platform/uikit/application/UIApplication.h"
#include "tools/play/Scenario.h"
#include "tools/play/ScenarioRun.h"

namespace {

using namespace platform;

struct Arguments {
  std::string steps;
  const teashop::NamedScreen* screen = nullptr;
  std::optional<std::filesystem::path> pictures;
  bool isRealTime = false;
};

void printUsage() {
  std::fputs(
      "usage: play STEPS SCREEN [--real-time] [--pictures FOLDER]\n"
      "  STEPS       a file with a list of steps as the service sends it, or a whole reply; - reads standard input\n"
      "  --real-time takes the time that a person would see; otherwise the clock is virtual\n"
      "  --pictures  writes a picture after each step\n"
      "The last step of a list is never performed. Ends with 0 when every other one succeeded, 1 when one failed,\n"
      "2 for bad arguments or steps, 3 when the run stalled.\n"
      "screens:\n",
      stderr);
  for (const teashop::NamedScreen& screen : teashop::screenCatalogue()) {
    std::fprintf(stderr, "  %-14s %s\n", screen.name.c_str(), screen.what.c_str());
  }
}

std::optional<Arguments> parse(int count, char** values) {
  Arguments arguments;
  std::vector<std::string> words;
  for (int i = 1; i < count; ++i) {
    const std::string word = values[i];
    if (word == "--real-time") {
      arguments.isRealTime = true;
    } else if (word == "--pictures" && i + 1 < count) {
      arguments.pictures = values[++i];
    } else {
      words.push_back(word);
    }
  }
  if (words.size() != 2) return std::nullopt;
  arguments.steps = words[0];
  arguments.screen = teashop::screenNamed(words[1]);
  if (arguments.screen) return arguments;
  std::fprintf(stderr, "play: the shop has no screen \"%s\"\n", words[1].c_str());
  return std::nullopt;
}

std::optional<std::string> contentOf(const std::string& file) {
  std::ostringstream content;
  if (file == "-") {
    content << std::cin.rdbuf();
    return content.str();
  }
  const std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  content << stream.rdbuf();
  return content.str();
}

int fail(const std::string& file, const std::string& what) {
  std::fprintf(stderr, "play: %s: %s\n", file.c_str(), what.c_str());
  return 2;
}

int report(play::Outcome outcome) {
  switch (outcome) {
    case play::Outcome::succeeded:
      std::puts("every step but the last was performed; the last never is");
      return 0;
    case play::Outcome::failed:
      std::puts("the run ended with a step that failed");
      return 1;
    case play::Outcome::stalled:
      std::fputs("play: the run never reported an end\n", stderr);
      return 3;
  }
  return 3;
}

}  // namespace

int main(int count, char** values) {
  const auto arguments = parse(count, values);
  if (!arguments) {
    printUsage();
    return 2;
  }
  const auto bytes = contentOf(arguments->steps);
  if (!bytes) return fail(arguments->steps, "cannot be read");
  auto steps = play::readScenario(*bytes);
  if (!steps) return fail(arguments->steps, steps.error());
  if (steps->size() < 2) return fail(arguments->steps, "a list of one step (or none) performs nothing");
  std::error_code error;
  if (arguments->pictures) std::filesystem::create_directories(*arguments->pictures, error);
  if (error) return fail(arguments->pictures->string(), error.message());

  UIApplication::goWithoutDisplay();
  if (!arguments->isRealTime) Clock::useVirtualTime(Clock::secondsSince1970());
  teashop::TeashopApplication application;
  return report(play::playScenario(application, *arguments->screen, std::move(*steps), arguments->pictures, std::cout));
}
