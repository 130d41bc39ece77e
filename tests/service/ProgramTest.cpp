#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>

#include "service/store/Database.h"
#include "tests/service/Flow.h"
#include "tests/service/TemporaryFolder.h"
#include "tests/service/Wire.h"

namespace service {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// The real program, its outputs read through pipes. Ended and waited for at the latest with this object.
class Program {
 public:
  explicit Program(const std::vector<std::string>& words) {
    int output[2];
    int error[2];
    EXPECT_EQ(::pipe2(output, O_CLOEXEC) + ::pipe2(error, O_CLOEXEC), 0);
    output_ = FileDescriptor(output[0]);
    error_ = FileDescriptor(error[0]);
    const FileDescriptor outputEnd(output[1]);
    const FileDescriptor errorEnd(error[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_adddup2(&actions, error[1], 2);
    std::vector<std::string> all{SERVICE_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> pointers;
    for (std::string& word : all) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    EXPECT_EQ(::posix_spawn(&process_, SERVICE_PROGRAM, &actions, nullptr, pointers.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
  }
  ~Program() {
    if (process_ > 0) end(SIGKILL);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::string readLine() {
    std::string line;
    for (char c = 0; ::read(output_.get(), &c, 1) == 1 && c != '\n';) line += c;
    return line;
  }
  std::string readOutput() const { return readAll(output_); }
  std::string readError() const { return readAll(error_); }

  /// The exit code, or minus the signal's number.
  int wait() {
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  int end(int signal) {
    ::kill(process_, signal);
    return wait();
  }

 private:
  static std::string readAll(const FileDescriptor& from) {
    std::string text;
    for (char c = 0; ::read(from.get(), &c, 1) == 1;) text += c;
    return text;
  }

  pid_t process_ = -1;
  FileDescriptor output_;
  FileDescriptor error_;
};

class ProgramTest : public testing::Test {
 protected:
  std::vector<std::string> words(const std::string& config = dataFolder() / "config.json",
                                 const std::string& tasks = dataFolder() / "tasks.json") const {
    return {"--data", folder_.path() / "data", "--config", config, "--tasks", tasks, "--port", "0"};
  }

  /// Waits until the program is ready and tells its port.
  static int portOf(Program& program) {
    const std::string line = program.readLine();
    EXPECT_THAT(line, StartsWith("lumicor-service: listening on http://127.0.0.1:"));
    return std::stoi(line.substr(line.rfind(':') + 1));
  }

  TemporaryFolder folder_;
};

TEST_F(ProgramTest, ServesUntilItIsToldToStop) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program(words());
    const int port = portOf(program);
    EXPECT_EQ(post(port, "/sdk/steps/get", R"({"query": "go back"})").json()["data"]["taskId"], "go-back");
    EXPECT_EQ(program.end(signal), 0);
    EXPECT_THAT(program.readError(), HasSubstr("\nPOST /sdk/steps/get 200 "));
  }
}

TEST_F(ProgramTest, ExplainsItself) {
  Program program({"--help"});
  EXPECT_EQ(program.wait(), 0);
  EXPECT_THAT(program.readOutput(), HasSubstr("--tasks FILE"));
}

TEST_F(ProgramTest, EndsWithOneClearLineWhenItCannotStart) {
  const std::string broken = folder_.write("broken.json", R"({"tasks": [{"id": "a", "title": "b", "samples": "c"}]})");
  const std::string config = dataFolder() / "config.json";
  Program first(words());
  const std::string taken = std::to_string(portOf(first));
  std::vector<std::string> busy = words();
  busy.back() = taken;
  std::vector<std::string> styled = words();
  styled.insert(styled.end(), {"--styles", broken});
  const std::vector<std::pair<std::vector<std::string>, std::string>> table = {
      {{}, "--data DIR is required; try --help"},
      {{"--port"}, "--port: a value is required"},
      {words("no\nfile.json"), "no?file.json: cannot be read"},
      {words(config, broken), broken + ": task \"a\".samples: must be a list"},
      {styled, broken + ": tasks: is not a known key"},
      {busy, "cannot listen on 127.0.0.1 port " + taken + ": Address already in use"},
  };
  for (const auto& [arguments, complaint] : table) {
    Program program(arguments);
    EXPECT_EQ(program.wait(), 2) << complaint;
    EXPECT_EQ(program.readOutput(), "");
    const std::string error = program.readError();
    EXPECT_THAT(error, StartsWith("lumicor-service: "));
    EXPECT_THAT(error, HasSubstr(complaint));
    EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 1) << error;
  }
}

TEST_F(ProgramTest, LeavesAReadableDatabaseWhenItIsKilled) {
  constexpr int kEvents = 40;
  {
    Program program(words());
    const int port = portOf(program);
    for (int i = 0; i < kEvents; ++i) {
      const std::string body = R"({"eventName": "MESSAGE_SENT", "taskId": ")" + std::to_string(i) + "\"}";
      EXPECT_EQ(post(port, "/sdk/event/log", body).status, 200);
    }
    // One more is on its way when the end comes.
    Wire(port).send(postRequest("/sdk/event/log", R"({"eventName": "MESSAGE_SENT", "taskId": "last"})"));
    EXPECT_EQ(program.end(SIGKILL), -SIGKILL);
  }
  {
    Database database(folder_.path() / "data/lumicor.sqlite");
    Statement check = database.prepare("PRAGMA integrity_check");
    ASSERT_TRUE(check.step());
    EXPECT_EQ(check.text(0), "ok");
  }
  Program program(words());
  const Json events = get(portOf(program), "/admin/events?limit=40").json()["data"]["events"];
  ASSERT_EQ(events.size(), std::size_t{kEvents});
  EXPECT_EQ(events[kEvents - 1]["taskId"], std::to_string(kEvents - 1));
}

TEST_F(ProgramTest, NamesWhatWasTaughtWhileTheServiceRuns) {
  Program service(words());
  const int port = portOf(service);
  const std::string id = teach(port, orderFlow());
  const std::string data = folder_.path() / "data";
  const auto tasks = [&](std::vector<std::string> arguments, int code = 0) {
    arguments.insert(arguments.begin(), "tasks");
    arguments.insert(arguments.end(), {"--data", data});
    Program program(arguments);
    const std::string output = program.readOutput() + program.readError();
    EXPECT_EQ(program.wait(), code) << output;
    return output;
  };
  const auto taskFor = [&](const std::string& query) {
    return post(port, "/sdk/steps/get", Json{{"query", query}}.dump()).json()["data"]["taskId"].get<std::string>();
  };
  EXPECT_EQ(tasks({"list"}), id + "  unnamed  9 actions\n");
  EXPECT_EQ(taskFor("fetch assam for York"), "");
  EXPECT_EQ(tasks({"name", id, "Fetch tea", "--sample", "fetch 4 sencha for Leeds", "--sample", "get me {tea}"}),
            "fetch {quantity} {tea} for {city}\nget me {tea}\n");
  EXPECT_EQ(taskFor("fetch assam for York"), id);
  EXPECT_EQ(tasks({"slot", id, "tea", "--choice", "Matcha=tea-matcha", "--ask", "Which tea?"}), "");
  EXPECT_EQ(Json::parse(tasks({"show", id}))["slots"][0]["ask"], "Which tea?");
  EXPECT_EQ(tasks({"list"}), id + "  answered  9 actions  \"Fetch tea\"\n");
  EXPECT_THAT(tasks({"slot", id, "milk"}, 1), HasSubstr("there is no slot \"milk\""));
  EXPECT_THAT(tasks({"name", id, "Order", "--colour", "red"}, 2), HasSubstr("\"--colour\" is not an option"));
  EXPECT_THAT(tasks({"brew"}, 2), HasSubstr("\"tasks brew\" is not a command"));
  EXPECT_EQ(tasks({"remove", id}), "");
  EXPECT_EQ(taskFor("fetch assam for York"), "");
  EXPECT_THAT(tasks({"show", id}, 1), HasSubstr("there is no demonstration"));

  Program elsewhere({"tasks", "list", "--data", folder_.path()});
  EXPECT_EQ(elsewhere.wait(), 2) << "no database is made where there was none";
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "lumicor.sqlite"));
}

/// The words of a command line; double quotes hold blanks together.
std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words(1);
  bool isQuoted = false;
  for (const char c : line) {
    if (c == '"')
      isQuoted = !isQuoted;
    else if (c == ' ' && !isQuoted)
      words.emplace_back();
    else
      words.back() += c;
  }
  return words;
}

TEST_F(ProgramTest, DoesWhatTheDocumentShows) {
  std::string id;
  {
    Program service(words());
    id = teach(portOf(service), orderFlow());
  }
  std::istringstream document(readFile(std::string(SERVICE_DOCUMENTS) + "/tasks.md"));
  std::string outputs;
  int commands = 0;
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("    lumicor-service tasks ")) continue;
    std::vector<std::string> arguments = wordsOf(line.substr(4));
    arguments.erase(arguments.begin());
    std::replace(arguments.begin(), arguments.end(), std::string("taught-2f0c..."), id);
    std::replace(arguments.begin(), arguments.end(), std::string("DIR"), (folder_.path() / "data").string());
    Program program(arguments);
    outputs += program.readOutput();
    EXPECT_EQ(program.wait(), 0) << line << program.readError();
    ++commands;
  }
  EXPECT_EQ(commands, 5);
  EXPECT_THAT(outputs, HasSubstr("\norder {quantity} {tea} to {city}\nbuy {tea}\n"));
}

}  // namespace
}  // namespace service
