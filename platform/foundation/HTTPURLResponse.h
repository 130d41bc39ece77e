#pragma once

#include <string>
#include <utility>

#include "platform/engine/HTTPHeaders.h"
#include "platform/foundation/URL.h"

namespace platform {

/// The head of a reply. A value.
class HTTPURLResponse {
 public:
  HTTPURLResponse(URL url, int statusCode, HTTPHeaders headers)
      : url_(std::move(url)), statusCode_(statusCode), headers_(std::move(headers)) {}

  /// Where the reply came from, redirections followed.
  const URL& url() const { return url_; }
  int statusCode() const { return statusCode_; }
  const HTTPHeaders& headers() const { return headers_; }
  /// None when the reply has no such field.
  const std::string* value(std::string_view field) const { return headers_.find(field); }

 private:
  URL url_;
  int statusCode_;
  HTTPHeaders headers_;
};

}  // namespace platform
