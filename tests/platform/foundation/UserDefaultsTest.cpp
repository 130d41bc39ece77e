#include <cerrno>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/UserDefaults.h"
#include "platform/foundation/UserDefaultsFile.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

class UserDefaultsTest : public testing::Test {
 protected:
  UserDefaultsTest() { fs::remove_all(folder_); }
  ~UserDefaultsTest() override { fs::remove_all(folder_); }

  fs::path fileOf(const std::string& key) const { return folder_ / UserDefaultsFile::nameFor(key); }
  static std::string contentsOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }
  static void write(const fs::path& file, const std::string& bytes) { std::ofstream(file, std::ios::binary) << bytes; }
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator(folder_)) all.push_back(entry.path().filename().string());
    return all;
  }

  const fs::path folder_ =
      fs::temp_directory_path() /
      ("user defaults " + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
};

TEST_F(UserDefaultsTest, KeepsValuesOfEveryTypeForTheNextProcess) {
  const Data bytes("\0\xFF[]\n", 5);
  {
    UserDefaults defaults(folder_);
    EXPECT_EQ(defaults.data("storedMessages"), std::nullopt);
    defaults.set(bytes, "storedMessages");
    defaults.set("", "empty");
    defaults.setString("grüße", "a key/with:everything %");
    defaults.setInteger(-9007199254740993, "count");
    defaults.setBoolean(false, "isOpen");
    EXPECT_EQ(defaults.data("storedMessages"), bytes) << "reads do not wait for the disk";
  }
  const UserDefaults defaults(folder_);
  EXPECT_EQ(defaults.data("storedMessages"), bytes);
  EXPECT_EQ(defaults.data("empty"), "");
  EXPECT_EQ(defaults.string("a key/with:everything %"), "grüße");
  EXPECT_EQ(defaults.integer("count"), -9007199254740993);
  EXPECT_EQ(defaults.boolean("isOpen"), false);
  EXPECT_EQ(defaults.string("storedMessages"), std::nullopt) << "a value of another type is none";
}

TEST_F(UserDefaultsTest, WritesSoonAfterWithoutBeingAsked) {
  const VirtualTime time;
  UserDefaults defaults(folder_);
  defaults.set("first", "key");
  defaults.set("last", "key");
  RunLoop::settle();
  EXPECT_EQ(UserDefaults(folder_).data("key"), "last");
}

TEST_F(UserDefaultsTest, RemovesValues) {
  UserDefaults defaults(folder_);
  defaults.set("x", "key");
  ASSERT_TRUE(defaults.synchronize());
  defaults.removeObject("key");
  defaults.removeObject("never there");
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(defaults.data("key"), std::nullopt);
  EXPECT_EQ(UserDefaults(folder_).data("key"), std::nullopt);
  EXPECT_TRUE(names().empty());
}

TEST_F(UserDefaultsTest, GivesDifferentKeysDifferentFiles) {
  const std::vector<std::string> keys{"key",
                                      "Key",
                                      "+key",
                                      "k/ey",
                                      "k%2fey",
                                      "",
                                      ".",
                                      "..",
                                      std::string(300, 'k'),
                                      std::string(301, 'k'),
                                      std::string("k\0", 2)};
  {
    UserDefaults defaults(folder_);
    for (const std::string& key : keys) defaults.set("value of " + key, key);
  }
  EXPECT_EQ(names().size(), keys.size());
  const UserDefaults defaults(folder_);
  for (const std::string& key : keys) EXPECT_EQ(defaults.data(key), "value of " + key);
}

TEST_F(UserDefaultsTest, MovesADamagedFileAsideAndKeepsTheOthers) {
  {
    UserDefaults defaults(folder_);
    for (const char* const key : {"good", "cut", "changed", "longer", "foreign", "swapped"}) defaults.set("value", key);
  }
  const std::string whole = contentsOf(fileOf("cut"));
  write(fileOf("cut"), whole.substr(0, whole.size() - 1));
  std::string changed = contentsOf(fileOf("changed"));
  changed.back() ^= 1;
  write(fileOf("changed"), changed);
  write(fileOf("longer"), contentsOf(fileOf("longer")) + "x");
  write(fileOf("foreign"), "hello");
  write(fileOf("swapped"), contentsOf(fileOf("good")));

  testing::internal::CaptureStderr();
  UserDefaults defaults(folder_);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 5) << told;
  EXPECT_EQ(defaults.data("good"), "value");
  for (const char* const key : {"cut", "changed", "longer", "foreign", "swapped"}) {
    EXPECT_EQ(defaults.data(key), std::nullopt) << key;
    EXPECT_TRUE(fs::exists(fileOf(key).string() + ".corrupt")) << key;
  }
  defaults.set("new", "cut");
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(UserDefaults(folder_).data("cut"), "new");
}

/// Leaves a process without a free descriptor while it lives.
class NoDescriptorLeft {
 public:
  NoDescriptorLeft() {
    ::getrlimit(RLIMIT_NOFILE, &usual_);
    const rlimit none{0, usual_.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
  }
  ~NoDescriptorLeft() { ::setrlimit(RLIMIT_NOFILE, &usual_); }

 private:
  rlimit usual_{};
};

TEST_F(UserDefaultsTest, LeavesAFileAloneThatCouldNotBeRead) {
  UserDefaults(folder_).set("value", "other");
  fs::create_directories(fileOf("key") / "inside");
  ASSERT_EQ(::mkfifo(fileOf("pipe").c_str(), 0600), 0);
  testing::internal::CaptureStderr();
  {
    UserDefaults defaults(folder_);
    EXPECT_EQ(defaults.takeReports().size(), 2U);
    EXPECT_EQ(defaults.data("other"), "value");
    defaults.set("new", "key");
    defaults.removeObject("pipe");
    defaults.set("new", "pipe");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_FALSE(defaults.synchronize()) << "it is still not written";
    EXPECT_EQ(defaults.takeReports().size(), 2U) << "but told once";
    EXPECT_EQ(defaults.data("key"), "new") << "in memory it is";
    defaults.set("newer", "other");
  }
  EXPECT_TRUE(fs::is_directory(fileOf("key") / "inside"));
  EXPECT_TRUE(fs::is_fifo(fileOf("pipe")));
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 4) << told;
  EXPECT_EQ(told.find("aside"), std::string::npos) << told;
  EXPECT_EQ(names().size(), 3U);
  fs::remove_all(fileOf("key"));
  fs::remove(fileOf("pipe"));
  EXPECT_EQ(UserDefaults(folder_).data("other"), "newer") << "other keys are written as ever";
}

TEST_F(UserDefaultsTest, LosesNothingWhenThereIsNoDescriptorLeftToReadWith) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(__clang__)
  GTEST_SKIP() << "the sanitizers need descriptors of their own";
#endif
  UserDefaults(folder_).set("precious", "key");
  testing::internal::CaptureStderr();
  {
    std::optional<UserDefaults> defaults;
    {
      const NoDescriptorLeft none;
      defaults.emplace(folder_);
    }
    defaults->set("new", "key");
    defaults->set("value", "fresh");
    defaults->set("again", "fresh");
    EXPECT_FALSE(defaults->synchronize());
    defaults->set("once more", "fresh");
    EXPECT_FALSE(defaults->synchronize()) << "the other is still waiting";
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("its files are left alone"));
  const UserDefaults later(folder_);
  EXPECT_EQ(later.data("key"), "precious");
  EXPECT_EQ(later.data("fresh"), "once more") << "what was not there may be written";
}

TEST_F(UserDefaultsTest, TellsAReadThatFailsFromAFileThatIsNotThere) {
  fs::create_directories(folder_);
  const auto refuse = [](const char*) {
    errno = EACCES;
    return -1;
  };
  write(folder_ / "file", "12345678");
  EXPECT_EQ(UserDefaultsFile::read(folder_ / "file", 100, refuse).reason, "Permission denied");
  EXPECT_EQ(UserDefaultsFile::read(folder_ / "file", 100).bytes, "12345678");
  EXPECT_EQ(UserDefaultsFile::read(folder_ / "file", 3).bytes, "1234");
  const UserDefaultsFile::Content none = UserDefaultsFile::read(folder_ / "none", 100);
  EXPECT_TRUE(!none.bytes && none.reason.empty());
}

TEST_F(UserDefaultsTest, KeepsADamagedFileUntilItCanBeMovedAside) {
  fs::create_directories(fileOf("key").string() + ".corrupt/in the way");
  write(fileOf("key"), "damaged");
  testing::internal::CaptureStderr();
  UserDefaults defaults(folder_);
  defaults.set("new", "key");
  EXPECT_FALSE(defaults.synchronize());
  EXPECT_EQ(contentsOf(fileOf("key")), "damaged");
  fs::remove_all(fileOf("key").string() + ".corrupt");
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(contentsOf(fileOf("key").string() + ".corrupt"), "damaged");
  EXPECT_EQ(UserDefaults(folder_).data("key"), "new");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("could not be moved aside"));
}

TEST_F(UserDefaultsTest, ClearsAwayWhatAKilledProcessLeftBehind) {
  fs::create_directories(folder_);
  write(fileOf("key").string() + ".new-999999999-0", "half a va");
  write(fileOf("key").string() + ".new-" + std::to_string(::getpid()) + "-0", "of a process that lives");
  const UserDefaults defaults(folder_);
  EXPECT_EQ(names().size(), 1U);
}

TEST_F(UserDefaultsTest, TellsWhenTheDiskRefusesAndTriesAgain) {
  fs::create_directories(folder_.parent_path());
  write(folder_, "a file where the folder should be");
  testing::internal::CaptureStderr();
  UserDefaults defaults(folder_);
  defaults.set("value", "key");
  EXPECT_FALSE(defaults.synchronize());
  EXPECT_EQ(defaults.data("key"), "value");
  fs::remove(folder_);
  fs::create_directories(folder_);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("user defaults: "));
  EXPECT_EQ(UserDefaults(folder_).data("key"), "value");
}

TEST_F(UserDefaultsTest, LetsTheLastWriterOfSeveralWin) {
  UserDefaults one(folder_);
  UserDefaults other(folder_);
  std::vector<std::thread> writers;
  for (UserDefaults* const defaults : {&one, &other}) {
    writers.emplace_back([defaults] {
      for (int i = 0; i < 50; ++i) {
        defaults->set(std::string(static_cast<std::size_t>(10 + i * 100), 'x'), "shared");
        defaults->synchronize();
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(UserDefaults(folder_).data("shared")->size(), 4910U);
  EXPECT_EQ(names().size(), 1U) << "nothing is left lying about";
}

TEST_F(UserDefaultsTest, OfTheApplicationLiveWhereTheyAreTold) {
  UserDefaults::setStandardDirectory(folder_ / "a");
  UserDefaults::standard().set("value", "key");
  UserDefaults::setStandardDirectory(folder_ / "b");
  EXPECT_EQ(UserDefaults::standard().data("key"), std::nullopt);
  EXPECT_EQ(UserDefaults(folder_ / "a").data("key"), "value");
}

}  // namespace
}  // namespace platform
