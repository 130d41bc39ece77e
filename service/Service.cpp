#include "service/Service.h"

#include <chrono>

#include "service/api/AdminApi.h"
#include "service/api/LookChecks.h"
#include "service/assistant/TaskFile.h"

namespace service {
namespace {

std::int64_t millisecondsSince1970() {
  const auto time = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

}  // namespace

Service::Service(const Arguments& arguments, ServerLimits limits)
    : configuration_(Configuration::load(arguments.configurationFile, arguments.styleSheet)),
      fileTasks_(TaskFile::load(arguments.taskFile)),
      store_(arguments.dataFolder),
      demonstrations_(arguments.dataFolder, configuration_.teachingLimits()),
      media_(arguments.dataFolder, configuration_.teachingLimits()),
      tasks_(fileTasks_, demonstrations_),
      routes_(configuration_, limits.bodyBytes,
              arguments.exchangeFile ? &exchanges_.emplace(*arguments.exchangeFile, &millisecondsSince1970) : nullptr),
      sdk_(configuration_, tasks_, store_, &millisecondsSince1970),
      teaching_(configuration_, demonstrations_, media_, &millisecondsSince1970),
      server_(arguments.host, arguments.port, limits, routes_) {
  sdk_.setBaseAddress(server_.address());
  sdk_.setThinkingTime(arguments.thinkingTime);
  sdk_.addTo(routes_);
  teaching_.setBaseAddress(server_.address());
  teaching_.addTo(routes_);
  addAdminRoutes(routes_, store_);
  if (!arguments.assetFolder) return;
  const AssetFolder& assets = assets_.emplace(*arguments.assetFolder);
  routes_.addGet("/assets/", [&assets](const HttpRequest& request) {
    return assets.serve(std::string_view(request.path).substr(std::string_view("/assets/").size()));
  });
}

std::vector<std::string> Service::warnings() const {
  return lookWarnings(configuration_.dataFor(""), assets_ ? &*assets_ : nullptr);
}

}  // namespace service
