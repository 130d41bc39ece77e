#include <gmock/gmock.h>

#include "lumicor/core/LumicorUserDefaults.h"
#include "platform/foundation/UserDefaults.h"
#include "tests/lumicor/support/SessionTest.h"

namespace lumicor::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

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

}  // namespace lumicor::test
