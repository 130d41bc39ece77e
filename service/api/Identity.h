#pragma once

#include <string>

#include "service/http/HeaderFields.h"

namespace service {

/// Who asks: the six identity headers, which an application sends with every call.
struct Identity {
  std::string secretKey;
  std::string userId;
  std::string sdk;
  std::string platform;
  std::string appVersion;
  std::string iosVersion;

  /// Throws RequestError (400) when a header is missing, given twice, longer than 256 bytes or not plain UTF-8 text.
  /// Values may be empty: whether an empty key is served is decided elsewhere.
  static Identity read(const HeaderFields& headers);
};

}  // namespace service
