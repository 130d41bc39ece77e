#include "service/api/Routes.h"

#include <charconv>
#include <cstdio>

#include "service/api/RequestError.h"
#include "service/base/Configuration.h"
#include "service/http/ExchangeLog.h"
#include "service/http/RequestLine.h"

namespace service {
namespace {

bool isLoopback(std::string_view peer) {
  return peer.starts_with("127.") || peer == "::1" || peer.starts_with("::ffff:127.");
}

/// A page in a browser can be made to call this machine under a name of its own choosing; names other than these are
/// not for us.
bool isLoopbackName(std::string_view hostAndPort) {
  const std::size_t colon = hostAndPort.rfind(':');
  const bool hasPort = colon != std::string_view::npos && hostAndPort.find(']', colon) == std::string_view::npos;
  const std::string_view host = hasPort ? hostAndPort.substr(0, colon) : hostAndPort;
  const bool isNumeric = host.find_first_not_of("0123456789.") == std::string_view::npos;
  return host == "localhost" || host == "[::1]" || (isNumeric && host.starts_with("127."));
}

void checkLength(const HeaderFields& headers, std::uint64_t maximum) {
  const bool isChunked = headers.count("Transfer-Encoding") > 0;
  const std::size_t lengths = headers.count("Content-Length");
  if (lengths + (isChunked ? 1 : 0) > 1) throw RequestError(400, "the length of the body is given twice");
  if (isChunked) {
    if (headers.count("Transfer-Encoding") > 1 || !equalNames(*headers.value("Transfer-Encoding"), "chunked"))
      throw RequestError(400, "the only transfer encoding is \"chunked\"");
    return;
  }
  if (lengths == 0) throw RequestError(411, "the length of the body is required");
  const std::string text = *headers.value("Content-Length");
  std::uint64_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (error == std::errc::result_out_of_range) throw RequestError(413, "the body is larger than is accepted");
  if (error != std::errc() || end != text.data() + text.size())
    throw RequestError(400, "the length of the body is not a number");
  if (length > maximum) throw RequestError(413, "the body is larger than is accepted");
}

void checkContent(const HeaderFields& headers) {
  const std::string type = headers.value("Content-Type").value_or("");
  std::string_view mediaType = std::string_view(type).substr(0, type.find(';'));
  while (mediaType.ends_with(' ')) mediaType.remove_suffix(1);
  if (!equalNames(mediaType, "application/json")) throw RequestError(415, "the body must be application/json");
  if (!equalNames(headers.value("Content-Encoding").value_or("identity"), "identity"))
    throw RequestError(415, "compressed bodies are not accepted");
}

}  // namespace

Routes::Routes(const Configuration& configuration, std::size_t maximumBody, ExchangeLog* exchanges)
    : configuration_(configuration), maximumBody_(maximumBody), exchanges_(exchanges) {}

void Routes::addSdk(std::string path, SdkHandler handler, StatusKey statusKey) {
  auto handle = [handler = std::move(handler), statusKey](const HttpRequest& request) {
    const Json body = parseJson(request.body);
    const Json data = handler(Identity::read(request.headers), JsonObject(body, ""));
    return jsonReply(200, "OK", data, statusKey);
  };
  routes_.push_back({std::move(path), "POST", Access::Application, statusKey, std::move(handle)});
}

void Routes::addGet(std::string path, Handler handler) {
  routes_.push_back({std::move(path), "GET", Access::Anybody, StatusKey::CamelCase, std::move(handler)});
}

void Routes::addAdmin(std::string path, Handler handler) {
  routes_.push_back({std::move(path), "GET", Access::ThisMachine, StatusKey::CamelCase, std::move(handler)});
}

const Routes::Route* Routes::find(std::string_view path) const {
  for (const Route& route : routes_) {
    const bool isFolder = route.path.ends_with('/');
    if (path == route.path || (isFolder && path.starts_with(route.path))) return &route;
  }
  return nullptr;
}

std::optional<HttpResponse> Routes::refusal(const HttpRequest& request) {
  const Route* const route = find(request.path);
  if (route == nullptr) return failure(request.path, 404, "there is nothing at this path");
  const bool isAllowed = request.method == route->method || (request.method == "HEAD" && route->method == "GET");
  if (!isAllowed) {
    HttpResponse response = failure(request.path, 405, "this path is for " + route->method + " only");
    response.headers.emplace_back("Allow", route->method == "GET" ? "GET, HEAD" : route->method);
    return response;
  }
  try {
    check(*route, request);
    return std::nullopt;
  } catch (const RequestError& error) {
    return failure(request.path, error.status(), error.what());
  }
}

void Routes::check(const Route& route, const HttpRequest& request) const {
  switch (route.access) {
    case Access::Application:
      return checkApplication(request);
    case Access::ThisMachine:
      if (!isLoopback(request.peer) || !isLoopbackName(request.headers.value("Host").value_or("")))
        throw RequestError(403, "this path is for programs on this machine only");
      return;
    case Access::Anybody:
      return;
  }
}

void Routes::checkApplication(const HttpRequest& request) const {
  const Identity identity = Identity::read(request.headers);
  if (!configuration_.accepts(identity.secretKey)) throw RequestError(401, "the secret key is not accepted");
  checkLength(request.headers, maximumBody_);
  checkContent(request.headers);
}

HttpResponse Routes::answer(const HttpRequest& request) {
  try {
    return find(request.path)->handler(request);
  } catch (const RequestError& error) {
    return failure(request.path, error.status(), error.what());
  } catch (const JsonError& error) {
    return failure(request.path, 400, error.what());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "lumicor-service: %s: %s\n", printable(request.path, 80).c_str(), error.what());
    return failure(request.path, 500, "the service failed");
  }
}

HttpResponse Routes::failure(std::string_view path, int status, std::string_view message) {
  const Route* const route = find(path);
  return jsonReply(status, message, nullptr, route == nullptr ? StatusKey::CamelCase : route->statusKey);
}

void Routes::log(const HttpExchange& exchange) {
  printRequestLine(exchange);
  if (exchanges_ != nullptr) exchanges_->add(exchange);
}

HttpResponse jsonReply(int status, std::string_view message, const Json& data, StatusKey statusKey) {
  OrderedJson body;
  // A failure says it in both spellings, so that whatever reads it understands; a success only in its own.
  if (statusKey == StatusKey::Underscore) body["status_code"] = status;
  if (statusKey == StatusKey::CamelCase || status != 200) body["statusCode"] = status;
  body["message"] = message;
  if (!data.is_null()) body["data"] = data;
  return {status, "application/json", writeJson(body), {{"Cache-Control", "no-store"}}};
}

}  // namespace service
