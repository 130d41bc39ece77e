#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Why a task of a session failed. Each code has one sentence for people.
class URLError {
 public:
  enum class Code {
    unknown = -1,
    cancelled = -999,
    badURL = -1000,
    timedOut = -1001,
    unsupportedURL = -1002,
    cannotFindHost = -1003,
    cannotConnectToHost = -1004,
    networkConnectionLost = -1005,
    httpTooManyRedirects = -1007,
    notConnectedToInternet = -1009,
    redirectToUnsafeLocation = -1010,
    badServerResponse = -1011,
    badRequest = -1013,
    cannotParseResponse = -1017,
    fileDoesNotExist = -1100,
    dataLengthExceedsMaximum = -1103,
    secureConnectionFailed = -1200,
    serverCertificateUntrusted = -1202,
    cannotOpenFile = -3001,
    cannotWriteToFile = -3003,
  };
  using enum Code;

  explicit URLError(Code code) : code_(code) {}

  Code code() const { return code_; }
  /// "The request timed out."
  std::string localizedDescription() const;
  friend bool operator==(const URLError&, const URLError&) = default;

 private:
  Code code_;
};

}  // namespace platform
