#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

#include "lumicor/core/LumicorUserDefaults.h"
#include "platform/foundation/UserDefaults.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
using testing::UnorderedElementsAre;

using LumicorUserDefaultsTest = SessionTest;

const std::string key = "storedMessages";

TEST_F(LumicorUserDefaultsTest, StoresTheBytesOfACompactArrayAndReadsThemBack) {
  EXPECT_EQ(LumicorUserDefaults::storedMessagesKey(), key);
  const std::vector<TLChatMessage> messages = {{"Two \"teas\"\n", false, 1}, {"Done ", true, 1714564800000}};
  LumicorUserDefaults::saveMessages(key, messages);
  EXPECT_EQ(UserDefaults::standard().data(key), R"([{"message":"Two \"teas\"\n","isRemote":false,"timestamp":1},)"
                                                R"({"message":"Done ","isRemote":true,"timestamp":1714564800000}])");
  EXPECT_EQ(LumicorUserDefaults::loadMessages(key), messages);
}

TEST_F(LumicorUserDefaultsTest, TellsAnEmptyListFromNone) {
  beginLog();
  EXPECT_FALSE(LumicorUserDefaults::loadMessages(key));
  LumicorUserDefaults::saveMessages(key, {});
  EXPECT_EQ(UserDefaults::standard().data(key), "[]");
  EXPECT_EQ(LumicorUserDefaults::loadMessages(key), std::vector<TLChatMessage>{});
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(LumicorUserDefaultsTest, GivesNothingForAListThatIsNotWhole) {
  const std::string good = R"({"message":"a","isRemote":true,"timestamp":1})";
  for (const std::string& bad :
       {"[" + good + R"(,{"message":"a","isRemote":true}])",
        std::string(R"([{"message":"a","isRemote":1,"timestamp":1}])"),
        std::string(R"([{"message":"a","isRemote":true,"timestamp":1.5}])"), good, std::string("[")}) {
    SCOPED_TRACE(bad);
    UserDefaults::standard().set(bad, key);
    beginLog();
    EXPECT_FALSE(LumicorUserDefaults::loadMessages(key));
    EXPECT_THAT(
        log(),
        ElementsAre(MatchesRegex(R"(Error: Unable to deserialize JSON to TLChatMessage array \(.*[a-z]{5}.*\))")));
    EXPECT_EQ(UserDefaults::standard().data(key), bad) << "what is stored is left alone";
  }
}

TEST_F(LumicorUserDefaultsTest, LogsWhatIsWrongWithTheFilesOfTheSettings) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / "damaged settings of a session";
  fs::create_directories(folder / "storedMessages.value");
  std::ofstream(folder / "flag.value") << "no value";
  testing::internal::CaptureStderr();
  UserDefaults::setStandardDirectory(folder);
  beginLog();
  EXPECT_FALSE(LumicorUserDefaults::loadMessages(key)) << "what cannot be read is none, and is logged once";
  EXPECT_FALSE(LumicorUserDefaults::loadMessages(key));
  EXPECT_THAT(log(),
              UnorderedElementsAre(AllOf(StartsWith("Error: user defaults: "),
                                         EndsWith("flag.value: the file holds no value and was moved aside")),
                                   AllOf(StartsWith("Error: user defaults: "),
                                         HasSubstr("storedMessages.value: the file could "), HasSubstr("left alone"))));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), AllOf(HasSubstr("moved aside\n"), HasSubstr("left alone")));
  fs::remove_all(folder);
}

}  // namespace lumicor::test
