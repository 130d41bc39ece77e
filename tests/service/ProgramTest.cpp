#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include "service/store/Database.h"
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

}  // namespace
}  // namespace service
