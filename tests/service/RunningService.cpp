#include "tests/service/RunningService.h"

namespace service {

RunningService::RunningService(ServerLimits limits, std::filesystem::path data)
    : service_(arguments(data), limits), thread_([this] { service_.run(); }) {}

RunningService::~RunningService() {
  service_.stop();
  thread_.join();
}

Arguments RunningService::arguments(const std::filesystem::path& data) const {
  Arguments result;
  result.dataFolder = data.empty() ? folder_.path() / "data" : data;
  result.configurationFile = dataFolder() / "config.json";
  result.taskFile = dataFolder() / "tasks.json";
  result.assetFolder = dataFolder() / "assets";
  result.exchangeFile = folder_.path() / "exchange.jsonl";
  result.port = 0;
  return result;
}

}  // namespace service
