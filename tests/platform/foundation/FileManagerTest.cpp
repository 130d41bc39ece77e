#include <cstdlib>
#include <fstream>
#include <unistd.h>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileManager.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using Directory = FileManager::SearchPathDirectory;
using Domain = FileManager::SearchPathDomain;

class FileManagerTest : public testing::Test {
 protected:
  FileManagerTest() : folder_(fs::temp_directory_path() / ("files_test-" + std::to_string(::getpid()))) {
    fs::create_directories(folder_);
  }
  ~FileManagerTest() override {
    files_.setDocumentDirectory({});
    fs::remove_all(folder_);
  }
  URL url(const std::string& name) const { return URL::fileURL((folder_ / name).string()); }
  static std::int64_t codeOf(const std::optional<NSError>& error) {
    if (!error) return 0;
    EXPECT_EQ(error->domain(), NSCocoaErrorDomain);
    EXPECT_FALSE(error->localizedDescription().empty());
    return error->code();
  }

  FileManager& files_ = FileManager::defaultManager();
  const fs::path folder_;
};

TEST_F(FileManagerTest, TheDocumentsAreTheApplicationsOwnAndMadeWhenTheyAreAskedFor) {
  const fs::path home = folder_ / "home";
  const char* const before = std::getenv("HOME");
  const std::string homeBefore = before ? before : "";
  const char* const dataBefore = std::getenv("XDG_DATA_HOME");
  const std::string dataHome = dataBefore ? dataBefore : "";
  ::setenv("HOME", home.c_str(), 1);
  ::unsetenv("XDG_DATA_HOME");
  ::unsetenv("PLATFORM_DOCUMENTS_DIRECTORY");
  Bundle::main().setInfoDictionary(JSONValue::object({{"CFBundleIdentifier", "com.example.tea shop"}}));
  const fs::path documents = home / ".local/share/com.example.tea shop/Documents";

  const auto urls = files_.urlsForDirectory(Directory::documentDirectory);
  ASSERT_EQ(urls.size(), 1u);
  EXPECT_EQ(urls[0].path(), documents);
  EXPECT_TRUE(fs::is_directory(documents));
  EXPECT_EQ(NSSearchPathForDirectoriesInDomains(Directory::documentDirectory, Domain::userDomain, true),
            std::vector<std::string>{documents});
  EXPECT_EQ(NSSearchPathForDirectoriesInDomains(Directory::documentDirectory, Domain::userDomain, false),
            std::vector<std::string>{"~/.local/share/com.example.tea shop/Documents"});

  ::setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
  EXPECT_EQ(files_.urlsForDirectory(Directory::documentDirectory)[0].path(),
            folder_ / "data/com.example.tea shop/Documents");
  ::setenv("PLATFORM_DOCUMENTS_DIRECTORY", (folder_ / "named").c_str(), 1);
  EXPECT_EQ(files_.urlsForDirectory(Directory::documentDirectory)[0].path(), folder_ / "named");
  files_.setDocumentDirectory(folder_ / "chosen");
  EXPECT_EQ(files_.urlsForDirectory(Directory::documentDirectory)[0].path(), folder_ / "chosen");

  Bundle::main().setInfoDictionary({});
  ::unsetenv("PLATFORM_DOCUMENTS_DIRECTORY");
  before ? ::setenv("HOME", homeBefore.c_str(), 1) : ::unsetenv("HOME");
  dataBefore ? ::setenv("XDG_DATA_HOME", dataHome.c_str(), 1) : ::unsetenv("XDG_DATA_HOME");
}

TEST_F(FileManagerTest, WritesReadsAndRemoves) {
  const URL file = url("notes & more.txt");
  EXPECT_EQ(codeOf(files_.removeItemAtURL(file)), NSFileNoSuchFileError);
  EXPECT_EQ(codeOf(files_.writeContents("first", file)), 0);
  EXPECT_EQ(codeOf(files_.writeContents("second", file)), 0);
  EXPECT_EQ(files_.contentsAtPath(file.path()), "second");
  EXPECT_EQ(files_.contentsAtPath(file.path(), 5), std::nullopt);
  EXPECT_TRUE(files_.fileExistsAtPath(file.path()));
  EXPECT_EQ(codeOf(files_.removeItemAtURL(file)), 0);
  EXPECT_FALSE(files_.fileExistsAtPath(file.path()));
  EXPECT_EQ(files_.contentsAtPath(file.path()), std::nullopt);

  EXPECT_EQ(codeOf(files_.createDirectoryAtURL(url("a/b"))), 0);
  EXPECT_EQ(codeOf(files_.createDirectoryAtURL(url("a/b"))), 0);
  EXPECT_EQ(codeOf(files_.writeContents("inside", url("a/b").appendingPathComponent("c"))), 0);
  EXPECT_EQ(codeOf(files_.removeItemAtURL(url("a"))), 0);
  EXPECT_TRUE(fs::is_empty(folder_)) << "nor is anything left of writing";
}

TEST_F(FileManagerTest, SaysWhatCannotBeDone) {
  const URL address = *URL::parse("https://example.com/a");
  for (const auto& error :
       {files_.removeItemAtURL(address), files_.writeContents("", address), files_.createDirectoryAtURL(address)}) {
    EXPECT_EQ(codeOf(error), NSFileWriteUnsupportedSchemeError);
  }
  std::ofstream(folder_ / "file") << "contents";
  EXPECT_EQ(codeOf(files_.writeContents("", url("none/a"))), NSFileNoSuchFileError);
  EXPECT_EQ(codeOf(files_.writeContents("", url("file/a"))), NSFileNoSuchFileError);
  EXPECT_EQ(codeOf(files_.writeContents("", URL::fileURL("/dev/fd/none/a"))), NSFileNoSuchFileError);
  EXPECT_NE(codeOf(files_.createDirectoryAtURL(url("file"))), 0);
  fs::create_directories(folder_ / "full/of");
  EXPECT_NE(codeOf(files_.writeContents("", url("full"))), 0);
  EXPECT_EQ(files_.contentsAtPath((folder_ / "full").string()), std::nullopt);
}

}  // namespace
}  // namespace platform
