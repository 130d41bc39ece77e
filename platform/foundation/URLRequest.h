#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/engine/HTTPHeaders.h"
#include "platform/foundation/URL.h"
#include "platform/runtime/Data.h"

namespace platform {

/// What a session is asked to load. A value.
class URLRequest {
 public:
  enum class CachePolicy { useProtocolCachePolicy, reloadIgnoringLocalCacheData };
  static constexpr double defaultTimeout = 60;

  explicit URLRequest(URL url, CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy,
                      double timeoutInterval = defaultTimeout)
      : url_(std::move(url)), cachePolicy_(cachePolicy), timeout_(timeoutInterval) {}

  const URL& url() const { return url_; }
  void setURL(URL url) { url_ = std::move(url); }
  /// "GET" at first.
  const std::string& httpMethod() const { return method_; }
  void setHTTPMethod(std::string method) { method_ = std::move(method); }
  CachePolicy cachePolicy() const { return cachePolicy_; }
  void setCachePolicy(CachePolicy policy) { cachePolicy_ = policy; }
  /// Seconds without any progress after which the task fails.
  double timeoutInterval() const { return timeout_; }
  void setTimeoutInterval(double seconds) { timeout_ = seconds; }

  /// Fields are checked when the request is sent, not here.
  const HTTPHeaders& headers() const { return headers_; }
  void setValue(std::string value, std::string field) { headers_.set(std::move(field), std::move(value)); }
  void setHeaders(HTTPHeaders headers) { headers_ = std::move(headers); }
  const std::string* value(std::string_view field) const { return headers_.find(field); }

  const std::optional<Data>& httpBody() const { return body_; }
  void setHTTPBody(std::optional<Data> body) { body_ = std::move(body); }

 private:
  URL url_;
  std::string method_ = "GET";
  CachePolicy cachePolicy_;
  double timeout_;
  HTTPHeaders headers_;
  std::optional<Data> body_;
};

}  // namespace platform
