#pragma once

#include <string>

namespace lumicor {

/// Turns a key and a user into a session: notes who and what, asks for the configuration, applies it. Made for one
/// start; only `execute` outlives the call. Main thread.
class LumicorInitTask {
 public:
  /// Reads the host's and the system's version and writes all four values into the façade.
  LumicorInitTask(std::string secretKey, std::string userId);

  /// Sends the request from a background queue and returns at once.
  void execute() const;

  const std::string& appVersion() const { return appVersion_; }
  const std::string& iosVersion() const { return iosVersion_; }
  const std::string& secretKey() const { return secretKey_; }
  const std::string& userId() const { return userId_; }

 private:
  std::string appVersion_;
  std::string iosVersion_;
  std::string secretKey_;
  std::string userId_;
};

}  // namespace lumicor
