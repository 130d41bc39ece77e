#pragma once

#include <mutex>
#include <string>

#include "platform/runtime/Object.h"

namespace lumicor {

using namespace platform;

/// Who uses the application on what: sent with every request. One shared record, so that all holders see one value.
/// Thread: any. Requests read it from background queues while the main thread may be writing it.
class LumicorAttributes : public Object<LumicorAttributes, NSObject> {
 public:
  std::string getUserId() const { return read(userId_); }
  void setUserId(std::string userId) { write(userId_, std::move(userId)); }
  std::string getAppVersion() const { return read(appVersion_); }
  void setAppVersion(std::string appVersion) { write(appVersion_, std::move(appVersion)); }
  std::string getIOSVersion() const { return read(iosVersion_); }
  void setIOSVersion(std::string iosVersion) { write(iosVersion_, std::move(iosVersion)); }
  std::string getSDKVersion() const { return read(sdkVersion_); }
  void setSDKVersion(std::string sdkVersion) { write(sdkVersion_, std::move(sdkVersion)); }
  std::string getPlatform() const { return read(platform_); }
  void setPlatform(std::string platform) { write(platform_, std::move(platform)); }

 private:
  std::string read(const std::string& field) const {
    const std::lock_guard lock(mutex_);
    return field;
  }
  void write(std::string& field, std::string value) {
    const std::lock_guard lock(mutex_);
    field = std::move(value);
  }

  mutable std::mutex mutex_;
  std::string userId_;
  std::string appVersion_;
  std::string iosVersion_;
  std::string sdkVersion_ = "0.0.4";
  std::string platform_ = "iOS";
};

}  // namespace lumicor
