#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>

// The tools as a person starts them: what they print, what they leave behind and how they end.

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

struct Ended {
  int code = -1;  // minus the signal's number when one ended it
  std::string output;
  std::string error;
};

class ToolProgramsTest : public testing::Test {
 protected:
  ToolProgramsTest() {
    std::string name = (fs::temp_directory_path() / "tool-programs-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
  }
  ~ToolProgramsTest() override { fs::remove_all(folder_); }

  Ended run(const char* program, std::vector<std::string> words, const std::string& input = "") {
    write("input", input);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, path("input").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, path("output").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&files, 2, path("error").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    words.insert(words.begin(), program);
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t process = -1;
    EXPECT_EQ(::posix_spawn(&process, program, &files, nullptr, pointers.data(), environ), 0);
    posix_spawn_file_actions_destroy(&files);
    int status = 0;
    ::waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), read("output"), read("error")};
  }
  Ended inspect(std::vector<std::string> words) { return run(INSPECT_PROGRAM, std::move(words)); }
  Ended play(std::vector<std::string> words, const std::string& input = "") {
    return run(PLAY_PROGRAM, std::move(words), input);
  }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  void write(const std::string& name, const std::string& bytes) { std::ofstream(path(name)) << bytes; }
  std::string read(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(path(name), std::ios::binary).rdbuf();
    return content.str();
  }
  fs::path folder_;
};

/// Two steps, of which the first is performed: one presses the identifier on the given screen.
std::string stepsPressing(const std::string& identifier, const std::string& viewName) {
  const std::string step = R"({"elementId":")" + identifier +
                           R"(","index":0,"value":"","scrollDetails":[],"viewName":")" + viewName +
                           R"(","actionType":"TYPE_BUTTON"})";
  return "[" + step + "," + step + "]";
}

TEST_F(ToolProgramsTest, InspectWritesASnapshotAndAPictureOfEachScreen) {
  const Ended ended = inspect({"shop", "cart", "--out", path("inspected")});
  EXPECT_EQ(ended.code, 0) << ended.error;
  EXPECT_THAT(ended.output, AllOf(HasSubstr("shop "), HasSubstr("cart "), HasSubstr("elements")));
  for (const std::string name : {"shop", "cart"}) {
    EXPECT_TRUE(read("inspected/" + name + ".json").starts_with("{\"viewName\":")) << name;
    EXPECT_TRUE(read("inspected/" + name + ".png").starts_with("\x89PNG")) << name;
  }
}

TEST_F(ToolProgramsTest, InspectKnowsAllScreensAndWhatAroundOneWasActedOn) {
  const Ended all = inspect({"--all", "--out", path("all")});
  EXPECT_EQ(all.code, 0) << all.error;
  const Ended usage = inspect({"--help"});
  std::istringstream lines(usage.output.substr(usage.output.find("screens:\n") + 9));
  int screens = 0;
  for (std::string name, rest; lines >> name && std::getline(lines, rest); ++screens) {
    EXPECT_THAT(all.output, HasSubstr(name + " "));
    EXPECT_TRUE(read("all/" + name + ".json").ends_with("}\n")) << name;
    EXPECT_TRUE(read("all/" + name + ".png").starts_with("\x89PNG")) << name;
  }
  EXPECT_GT(screens, 5);
  const Ended acted = inspect({"shop", "--acted", "product-sencha", "--out", path("acted")});
  EXPECT_EQ(acted.code, 0) << acted.error;
  EXPECT_THAT(read("all/shop.json"), HasSubstr("\"actionElement\":"));
  EXPECT_NE(read("acted/shop.json"), read("all/shop.json"));
}

TEST_F(ToolProgramsTest, InspectSaysWhatItCannotDo) {
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{}, {"no-such-screen"}, {"shop", "--out"}, {"--help"}}) {
    const Ended ended = inspect(words);
    EXPECT_EQ(ended.code, 2);
    EXPECT_THAT(ended.output, AllOf(HasSubstr("usage: inspect"), HasSubstr("  shop ")));
  }
  const Ended unknown = inspect({"shop", "--acted", "nobody", "--out", path("a")});
  EXPECT_EQ(unknown.code, 1);
  EXPECT_THAT(unknown.error, HasSubstr("no element goes by \"nobody\""));
  write("occupied", "a file where a folder is wanted");
  const Ended unwritten = inspect({"shop", "--out", path("occupied/below")});
  EXPECT_EQ(unwritten.code, 1);
  EXPECT_THAT(unwritten.output, HasSubstr("NOT WRITTEN"));
}

TEST_F(ToolProgramsTest, PlayTellsHowEachStepWentAndEndsAccordingly) {
  const std::string missing = stepsPressing("nobody", "ShopScreen");
  const Ended failed = play({"-", "shop", "--pictures", path("pictures")}, missing);
  EXPECT_EQ(failed.code, 1) << failed.error;
  EXPECT_THAT(failed.output, AllOf(HasSubstr("nobody"), HasSubstr("the run ended with a step that failed")));
  EXPECT_FALSE(fs::is_empty(path("pictures")));
  write("steps.json", stepsPressing("product-sencha", "ShopScreen"));
  const Ended performed = play({path("steps.json"), "shop"});
  EXPECT_EQ(performed.code, 0) << performed.output << performed.error;
  EXPECT_THAT(performed.output, HasSubstr("every step but the last was performed"));
}

TEST_F(ToolProgramsTest, PlayRefusesWhatIsNoListOfSteps) {
  EXPECT_THAT(play({}).error, HasSubstr("usage: play"));
  EXPECT_THAT(play({"-", "nowhere"}).error, HasSubstr("the shop has no screen \"nowhere\""));
  EXPECT_THAT(play({path("none.json"), "shop"}).error, HasSubstr("cannot be read"));
  write("occupied", "a file where a folder is wanted");
  const Ended unwritten =
      play({"-", "shop", "--pictures", path("occupied/below")}, stepsPressing("product-sencha", "ShopScreen"));
  EXPECT_EQ(unwritten.code, 2);
  EXPECT_THAT(unwritten.error, HasSubstr("occupied/below: "));
  EXPECT_THAT(unwritten.output, IsEmpty()) << "nothing is played whose pictures would be lost";
  for (const char* bad : {"", "{", "[1]", R"([{"elementId":"a"}])", "[]"}) {
    const Ended ended = play({"-", "shop"}, bad);
    EXPECT_EQ(ended.code, 2) << bad;
    EXPECT_THAT(ended.error, HasSubstr("play: -: ")) << bad;
    EXPECT_THAT(ended.output, IsEmpty()) << bad;
  }
}

}  // namespace
