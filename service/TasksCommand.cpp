#include "service/TasksCommand.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "service/base/LoadError.h"
#include "service/base/Utf8.h"
#include "service/teaching/Teaching.h"

namespace service {
namespace {

constexpr const char* kUsage =
    "lumicor-service tasks COMMAND --data DIR\n"
    "\n"
    "What was taught by demonstration; a running service notices every change.\n"
    "\n"
    "  list                           all demonstrations, one a line\n"
    "  show ID                        one of them with its slots, steps and notes (JSON)\n"
    "  name ID TITLE [--sample TEXT]  makes it a task that can be asked for; give several samples\n"
    "  slot ID SLOT [--name NAME] [--ask QUESTION] [--example VALUE] [--choice VALUE=IDENTIFIER]\n"
    "                                 corrects what requests say; give several choices\n"
    "  remove ID                      with its pictures and its video\n";

/// The words without their options, and the values of those.
struct Command {
  std::vector<std::string> words;
  std::multimap<std::string, std::string> options;

  std::vector<std::string> all(const std::string& option) const {
    std::vector<std::string> values;
    for (auto [at, end] = options.equal_range(option); at != end; ++at) values.push_back(at->second);
    return values;
  }
  std::optional<std::string> one(const std::string& option) const {
    const std::vector<std::string> values = all(option);
    if (values.size() > 1) throw LoadError(option + ": is given twice");
    return values.empty() ? std::nullopt : std::optional(values.front());
  }
};

Command read(std::span<const char* const> arguments) {
  Command command;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string word = arguments[i];
    if (!isUtf8(word)) throw LoadError("the arguments must be UTF-8");
    if (!word.starts_with("--")) {
      command.words.push_back(word);
    } else {
      if (++i == arguments.size() || *arguments[i] == '\0') throw LoadError(word + ": a value is required");
      if (!isUtf8(arguments[i])) throw LoadError("the arguments must be UTF-8");
      command.options.emplace(word, arguments[i]);
    }
  }
  return command;
}

void allowOnly(const Command& command, std::size_t words, const std::vector<std::string>& options) {
  for (const auto& [option, value] : command.options) {
    const bool isKnown = option == "--data" || std::find(options.begin(), options.end(), option) != options.end();
    if (!isKnown) throw LoadError("\"" + option + "\" is not an option here; try tasks --help");
  }
  if (command.words.size() != words) throw LoadError("tasks " + command.words.front() + ": try tasks --help");
}

std::filesystem::path dataFolderOf(const Command& command) {
  const auto folder = command.one("--data");
  if (!folder) throw LoadError("--data DIR is required; try tasks --help");
  std::error_code error;
  if (!std::filesystem::is_regular_file(std::filesystem::path(*folder) / "lumicor.sqlite", error))
    throw LoadError(*folder + ": is not the data folder of a service");
  return *folder;
}

void print(const std::string& text) { std::printf("%s\n", text.c_str()); }

void printList(Teaching& teaching) {
  for (const Json& task : teaching.list()) {
    std::string line = task["id"].get<std::string>() + "  " + task["state"].get<std::string>() + "  " +
                       std::to_string(task["actions"].get<std::int64_t>()) + " actions";
    // A title is a person's; it stays one line.
    if (task["title"] != "") line += "  " + Json(task["title"]).dump();
    print(line);
  }
}

void run(const Command& command, Teaching& teaching) {
  const std::vector<std::string>& words = command.words;
  if (words[0] == "list") {
    allowOnly(command, 1, {});
    printList(teaching);
  } else if (words[0] == "show") {
    allowOnly(command, 2, {});
    print(teaching.show(words[1]).dump(2));
  } else if (words[0] == "name") {
    allowOnly(command, 3, {"--sample"});
    teaching.name(words[1], words[2], command.all("--sample"));
    const Json named = teaching.show(words[1]);
    for (const Json& sample : named["samples"]) print(sample.get<std::string>());
  } else if (words[0] == "slot") {
    allowOnly(command, 3, {"--name", "--ask", "--example", "--choice"});
    teaching.correct(words[1], words[2],
                     {command.one("--name"), command.one("--ask"), command.one("--example"), command.all("--choice")});
  } else if (words[0] == "remove") {
    allowOnly(command, 2, {});
    teaching.remove(words[1]);
  } else {
    throw LoadError("\"tasks " + words[0] + "\" is not a command; try tasks --help");
  }
}

}  // namespace

void runTasksCommand(std::span<const char* const> words) {
  const bool wantsHelp = words.empty() || std::string_view(words[0]) == "--help" || std::string_view(words[0]) == "-h";
  if (wantsHelp) {
    std::fputs(kUsage, stdout);
    return;
  }
  const Command command = read(words);
  if (command.words.empty()) throw LoadError("tasks: a command is required; try tasks --help");
  const std::filesystem::path folder = dataFolderOf(command);
  DemonstrationStore demonstrations(folder, {});
  MediaFolder media(folder, {});
  Teaching teaching(demonstrations, media);
  run(command, teaching);
}

}  // namespace service
