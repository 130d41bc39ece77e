#pragma once

#include <thread>

#include "service/Service.h"
#include "tests/service/TemporaryFolder.h"

namespace service {

/// The service in this process, on a free port, with the test data and a database of its own.
class RunningService {
 public:
  /// `dataFolder` instead of one that is removed at the end.
  explicit RunningService(ServerLimits limits = {}, std::filesystem::path dataFolder = {});
  ~RunningService();

  int port() const { return service_.port(); }
  const std::string& address() const { return service_.address(); }
  std::string exchanges() const { return readFile(folder_.path() / "exchange.jsonl"); }

 private:
  Arguments arguments(const std::filesystem::path& data) const;

  TemporaryFolder folder_;
  Service service_;
  std::thread thread_;
};

}  // namespace service
