#include "service/base/Arguments.h"

#include <charconv>
#include <functional>
#include <map>
#include <string_view>

#include "service/base/LoadError.h"

namespace service {
namespace {

int parseNumber(const char* option, std::string_view text, int maximum, const char* what) {
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > maximum)
    throw LoadError(std::string(option) + ": \"" + std::string(text) + "\" is not " + what);
  return number;
}

int parsePort(std::string_view text) { return parseNumber("--port", text, 65535, "a port number (0 to 65535)"); }

std::chrono::milliseconds parseThinkingTime(std::string_view text) {
  return std::chrono::milliseconds(parseNumber("--think", text, 60000, "a number of milliseconds (0 to 60000)"));
}

}  // namespace

Arguments Arguments::parse(std::span<const char* const> words) {
  Arguments result;
  using Setter = std::function<void(const std::string&)>;
  const std::map<std::string_view, Setter> options = {
      {"--data", [&](const std::string& text) { result.dataFolder = text; }},
      {"--config", [&](const std::string& text) { result.configurationFile = text; }},
      {"--tasks", [&](const std::string& text) { result.taskFile = text; }},
      {"--styles", [&](const std::string& text) { result.styleSheet = text; }},
      {"--assets", [&](const std::string& text) { result.assetFolder = text; }},
      {"--exchange", [&](const std::string& text) { result.exchangeFile = text; }},
      {"--host", [&](const std::string& text) { result.host = text; }},
      {"--think", [&](const std::string& text) { result.thinkingTime = parseThinkingTime(text); }},
      {"--port", [&](const std::string& text) { result.port = parsePort(text); }},
  };
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (word == "--help" || word == "-h") {
      result.wantsHelp = true;
      return result;
    }
    const auto option = options.find(word);
    if (option == options.end()) throw LoadError("\"" + std::string(word) + "\" is not an option; try --help");
    if (++i == words.size() || *words[i] == '\0') throw LoadError(std::string(word) + ": a value is required");
    option->second(words[i]);
  }
  if (result.dataFolder.empty()) throw LoadError("--data DIR is required; try --help");
  if (result.configurationFile.empty()) throw LoadError("--config FILE is required; try --help");
  if (result.taskFile.empty()) throw LoadError("--tasks FILE is required; try --help");
  return result;
}

const char* Arguments::usage() {
  return "lumicor-service --data DIR --config FILE --tasks FILE [options]\n"
         "lumicor-service tasks list|show|name|slot|remove ... (see tasks --help)\n"
         "\n"
         "Answers the in-app assistant over HTTP.\n"
         "\n"
         "  --data DIR       where the database is kept; made when it does not exist\n"
         "  --config FILE    what applications receive when they start (JSON)\n"
         "  --tasks FILE     the tasks that requests are matched with (JSON)\n"
         "  --styles FILE    a style sheet in the place of the configuration's styles (JSON)\n"
         "  --assets DIR     images and fonts served under /assets/\n"
         "  --port N         port to listen on, 0 for any free one (default 8480)\n"
         "  --host H         address to listen on (default 127.0.0.1: this machine only)\n"
         "  --exchange FILE  appends every HTTP exchange as one JSON line\n"
         "  --think MS       takes that long for an answer, so that a demo shows the assistant at work\n"
         "  --help           prints this\n";
}

}  // namespace service
