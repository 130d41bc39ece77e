#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "service/api/Identity.h"
#include "service/base/Json.h"

namespace service {

class Configuration;
class Routes;
class Store;
class TaskRoster;

/// What an application calls: start, request, event, chat upload. Any thread once serving.
class SdkApi {
 public:
  /// Milliseconds since 1970.
  using Now = std::function<std::int64_t()>;

  /// Everything is borrowed.
  SdkApi(const Configuration& configuration, TaskRoster& tasks, Store& store, Now now);

  /// Adds the paths under /sdk/; this object must outlive the routes.
  void addTo(Routes& routes);

  /// What relative addresses in the configuration are completed with. To be set before serving.
  void setBaseAddress(std::string address) { baseAddress_ = std::move(address); }
  /// How long an answer to a request is held back. To be set before serving.
  void setThinkingTime(std::chrono::milliseconds time) { thinkingTime_ = time; }

 private:
  Json initialise(const Identity& who, const JsonObject& body);
  Json getSteps(const Identity& who, const JsonObject& body);
  Json logEvent(const Identity& who, const JsonObject& body);
  Json uploadMessages(const Identity& who, const JsonObject& body);

  const Configuration& configuration_;
  TaskRoster& tasks_;
  Store& store_;
  const Now now_;
  std::string baseAddress_;
  std::chrono::milliseconds thinkingTime_{0};
};

}  // namespace service
