#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace service {

/// What the program was started with.
struct Arguments {
  std::filesystem::path dataFolder;
  std::filesystem::path configurationFile;
  std::filesystem::path taskFile;
  std::optional<std::filesystem::path> styleSheet;  ///< in the place of the configuration's styles
  std::optional<std::filesystem::path> assetFolder;
  std::optional<std::filesystem::path> exchangeFile;
  std::string host = "127.0.0.1";
  int port = 8480;
  std::chrono::milliseconds thinkingTime{0};
  bool wantsHelp = false;

  /// Reads the command line without the program's name. Throws LoadError with one line that names the argument.
  static Arguments parse(std::span<const char* const> words);
  static const char* usage();
};

}  // namespace service
