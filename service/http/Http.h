#pragma once

#include <string>
#include <utility>
#include <vector>

#include "service/http/HeaderFields.h"

namespace service {

/// One request, free of the HTTP library. While a request is judged by its head, `body` is still empty.
struct HttpRequest {
  std::string method;
  std::string path;   ///< percent-decoded, without the query
  std::string query;  ///< after the "?", as sent
  HeaderFields headers;
  std::string peer;  ///< the client's address, such as "127.0.0.1"
  std::string body;
};

struct HttpResponse {
  int status = 200;
  std::string contentType = "application/json";
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers;
};

/// One request with what was answered, for the logs.
struct HttpExchange {
  const HttpRequest& request;
  int status;
  const std::string& contentType;
  const std::string& responseBody;
  double milliseconds;
};

}  // namespace service
