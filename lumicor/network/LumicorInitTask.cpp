#include "lumicor/network/LumicorInitTask.h"

#include <utility>

#include "lumicor/core/Lumicor.h"
#include "lumicor/core/LumicorUserDefaults.h"
#include "lumicor/network/LumicorConfiguration.h"
#include "lumicor/network/LumicorNetworkTask.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/Bundle.h"
#include "platform/uikit/device/UIScreen.h"

namespace lumicor {

namespace {

std::string hostVersion() {
  const JSONValue* const entry = Bundle::main().objectForInfoDictionaryKey("CFBundleShortVersionString");
  const std::string* const version = entry ? entry->asString() : nullptr;
  return version ? *version : "";
}

}  // namespace

LumicorInitTask::LumicorInitTask(std::string secretKey, std::string userId)
    : appVersion_(hostVersion()),
      iosVersion_(UIDevice::current().systemVersion()),
      secretKey_(std::move(secretKey)),
      userId_(std::move(userId)) {
  Lumicor& session = Lumicor::shared();
  session.setSecretKey(secretKey_);
  session.getAttributes()->setUserId(userId_);
  session.getAttributes()->setAppVersion(appVersion_);
  session.getAttributes()->setIOSVersion(iosVersion_);
}

void LumicorInitTask::execute() const {
  DispatchQueue::global(QOS::userInteractive).async([] {
    LumicorUserDefaults::store();  // its files are read here, before main asks for them
    LumicorNetworkTask::requestConfiguration([](const JSONValue& data) -> LumicorNetworkTask::Apply {
      return [configuration = LumicorConfiguration::read(data)](const JSONValue&) mutable {
        std::move(configuration).apply();
      };
    });
  });
}

}  // namespace lumicor
