#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/api/AssetFolder.h"
#include "service/api/Routes.h"
#include "service/api/SdkApi.h"
#include "service/api/TeachingApi.h"
#include "service/base/Arguments.h"
#include "service/base/Configuration.h"
#include "service/http/ExchangeLog.h"
#include "service/http/Server.h"
#include "service/store/Store.h"
#include "service/teaching/TaskRoster.h"

namespace service {

/// The whole service: everything loaded, opened and bound by its construction, or LoadError.
class Service {
 public:
  explicit Service(const Arguments& arguments, ServerLimits limits = {});

  const std::string& address() const { return server_.address(); }
  int port() const { return server_.port(); }
  /// What applications will not be able to show, one sentence for each thing.
  std::vector<std::string> warnings() const;

  /// Serves until stop() is called, from any thread or a signal handler.
  void run() { server_.run(); }
  void stop() noexcept { server_.stop(); }

 private:
  Configuration configuration_;
  std::optional<AssetFolder> assets_;
  std::optional<ExchangeLog> exchanges_;
  const std::vector<Task> fileTasks_;
  Store store_;
  DemonstrationStore demonstrations_;
  MediaFolder media_;
  TaskRoster tasks_;
  Routes routes_;
  SdkApi sdk_;
  TeachingApi teaching_;
  Server server_;
};

}  // namespace service
