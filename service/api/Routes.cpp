#include "service/api/Routes.h"

#include <charconv>
#include <cstdio>

#include "service/base/Configuration.h"
#include "service/base/RequestError.h"
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

std::string mediaType(const HeaderFields& headers) {
  std::string type = headers.value("Content-Type").value_or("");
  type.resize(std::min(type.size(), type.find(';')));
  while (type.ends_with(' ')) type.pop_back();
  return type;
}

void checkEncoding(const HeaderFields& headers) {
  if (!equalNames(headers.value("Content-Encoding").value_or("identity"), "identity"))
    throw RequestError(415, "compressed bodies are not accepted");
}

void checkBody(const HeaderFields& headers, std::uint64_t maximum) {
  checkLength(headers, maximum);
  if (!equalNames(mediaType(headers), "application/json")) throw RequestError(415, "the body must be application/json");
  checkEncoding(headers);
}

void checkUpload(const HeaderFields& headers, std::uint64_t maximum) {
  checkLength(headers, maximum);
  // A form's parts would be taken apart on the way here.
  if (equalNames(mediaType(headers).substr(0, 10), "multipart/"))
    throw RequestError(415, "the body must be the file itself, not a form");
  checkEncoding(headers);
}

/// Stands for a body that is not wanted at all.
class RefusedBody final : public BodyReceiver {
 public:
  explicit RefusedBody(HttpResponse why) : why_(std::move(why)) {}
  bool take(std::string_view) override { return false; }
  HttpResponse refusal() override { return why_; }
  HttpResponse finish() override { return why_; }

 private:
  HttpResponse why_;
};

/// Turns what a receiver throws into a refusal.
class GuardedBody final : public BodyReceiver {
 public:
  using Failure = std::function<HttpResponse(std::exception_ptr)>;
  GuardedBody(std::unique_ptr<BodyReceiver> receiver, Failure failure)
      : receiver_(std::move(receiver)), failure_(std::move(failure)) {}

  bool take(std::string_view bytes) override {
    try {
      return receiver_->take(bytes);
    } catch (...) {
      why_ = failure_(std::current_exception());
      return false;
    }
  }
  HttpResponse refusal() override { return why_ ? *why_ : receiver_->refusal(); }
  HttpResponse finish() override {
    try {
      return receiver_->finish();
    } catch (...) {
      return failure_(std::current_exception());
    }
  }

 private:
  std::unique_ptr<BodyReceiver> receiver_;
  Failure failure_;
  std::optional<HttpResponse> why_;
};

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

void Routes::addAdminPost(std::string path, std::function<Json(const JsonObject& body)> handler) {
  auto handle = [handler = std::move(handler)](const HttpRequest& request) {
    const Json body = parseJson(request.body);
    return jsonReply(200, "OK", handler(JsonObject(body, "")));
  };
  routes_.push_back({std::move(path), "POST", Access::ThisMachine, StatusKey::CamelCase, std::move(handle)});
}

void Routes::addUpload(std::string path, std::uint64_t maximumBytes, UploadHandler receive) {
  routes_.push_back(
      {std::move(path), "PUT", Access::Anybody, StatusKey::CamelCase, nullptr, std::move(receive), maximumBytes});
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
      if (route.method == "POST") checkBody(request.headers, maximumBody_);
      return;
    case Access::Anybody:
      if (route.receive) checkUpload(request.headers, route.maximumBytes);
      return;
  }
}

void Routes::checkApplication(const HttpRequest& request) const {
  const Identity identity = Identity::read(request.headers);
  if (!configuration_.accepts(identity.secretKey)) throw RequestError(401, "the secret key is not accepted");
  checkBody(request.headers, maximumBody_);
}

HttpResponse Routes::answer(const HttpRequest& request) {
  try {
    return find(request.path)->handler(request);
  } catch (...) {
    return failureOf(request.path, std::current_exception());
  }
}

std::unique_ptr<BodyReceiver> Routes::receiver(const HttpRequest& request) {
  const Route* const route = find(request.path);
  if (route == nullptr || !route->receive) return nullptr;
  const auto failure = [this, path = request.path](std::exception_ptr error) { return failureOf(path, error); };
  try {
    return std::make_unique<GuardedBody>(route->receive(request), failure);
  } catch (...) {
    return std::make_unique<RefusedBody>(failure(std::current_exception()));
  }
}

HttpResponse Routes::failureOf(std::string_view path, std::exception_ptr error) {
  try {
    std::rethrow_exception(error);
  } catch (const RequestError& problem) {
    return failure(path, problem.status(), problem.what());
  } catch (const JsonError& problem) {
    return failure(path, 400, problem.what());
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "lumicor-service: %s: %s\n", printable(path, 80).c_str(), problem.what());
    return failure(path, 500, "the service failed");
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
