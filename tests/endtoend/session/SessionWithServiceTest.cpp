// The assistant's requests, the real service, and the bytes between them.
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

#include "lumicor/ui/TLFloaterManager.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/JSONValue.h"
#include "service/Service.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/service/TemporaryFolder.h"

namespace lumicor::test {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A service that accepts one key and configures nothing, on a data folder of the test.
class SessionWithServiceTest : public SessionTest {
 protected:
  SessionWithServiceTest() {
    TLLayout layout;
    layout.styles.fontURL = "no address";  // a session fetches its font
    TLFloaterManager::shared().setLayoutData(layout);
    service::Arguments arguments;
    arguments.dataFolder = folder_.path() / "data";
    arguments.configurationFile = folder_.write("config.json", R"({"acceptedKeys":["clé 鍵"]})");
    arguments.taskFile = service::dataFolder() / "tasks.json";
    arguments.assetFolder = service::dataFolder() / "assets";
    arguments.exchangeFile = folder_.path() / "exchange.jsonl";
    arguments.port = 0;
    service_ = std::make_unique<service::Service>(arguments);
    thread_ = std::thread([this] { service_->run(); });
  }
  ~SessionWithServiceTest() override {
    service_->stop();
    thread_.join();
  }

  /// Starts a session; what was logged meanwhile.
  std::vector<std::string> start(const std::string& key, const std::string& user) {
    Lumicor::shared().setInitialized(false);
    beginLog();
    Lumicor::shared().initialize(key, user, service_->address());
    RunLoop::settle();
    return log();
  }
  /// What the service noted down under a header, request by request.
  std::vector<std::string> received(const std::string& header) const {
    std::vector<std::string> values;
    std::istringstream lines(service::readFile(folder_.path() / "exchange.jsonl"));
    for (std::string line; std::getline(lines, line);) {
      const auto exchange = JSONValue::parse(line);
      values.push_back(*exchange->find("headers")->find(header)->asString());
    }
    return values;
  }

  const service::TemporaryFolder folder_;
  std::unique_ptr<service::Service> service_;
  std::thread thread_;
};

TEST_F(SessionWithServiceTest, StartsForEveryUserWhateverTheirScript) {
  const std::string version = "2.1-bêta";
  Bundle::main().setInfoDictionary(JSONValue::object({{"CFBundleShortVersionString", version}}));
  for (const char* const user : {"ann", "Zoë", "茶 葉", "عائشة", "🫖", "a\tb"}) {
    SCOPED_TRACE(user);
    EXPECT_THAT(start("clé 鍵", user), ElementsAre("Initialization Success", "Log Event Success"));
    EXPECT_TRUE(Lumicor::shared().getInitialized());
    EXPECT_EQ(received("user-id").back(), user);
  }
  EXPECT_THAT(received("app-version"), Each(version));
  EXPECT_THAT(received("user-id"), SizeIs(12)) << "each start is one request, and so is its event";
}

TEST_F(SessionWithServiceTest, StartsForNobodyWhoCouldBreakOutOfAHeader) {
  for (const char* const user : {"ann\r\nuser-id: root", "ann\n", "ann\x01", "ann\x7f"}) {
    EXPECT_THAT(start("clé 鍵", user), Contains("Initialization Failure"));
    EXPECT_FALSE(Lumicor::shared().getInitialized());
  }
  EXPECT_THAT(received("user-id"), IsEmpty()) << "nothing was sent";
}

TEST_F(SessionWithServiceTest, StartsForNoOtherKey) {
  EXPECT_THAT(start("cle 鍵", "ann"), Contains("Initialization Failure"));
  EXPECT_FALSE(Lumicor::shared().getInitialized());
}

}  // namespace lumicor::test
