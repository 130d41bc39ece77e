#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "service/api/Identity.h"
#include "service/base/Json.h"
#include "service/http/Server.h"

namespace service {

class Configuration;
class ExchangeLog;

/// The name under which a reply carries its own status. Replies to a steps request spell it with an underscore, all
/// others in camel case; applications rely on both.
enum class StatusKey { CamelCase, Underscore };

/// The table of what the service answers, and the checks that come before a handler.
/// Thread: filled before serving, then read by any thread.
class Routes final : public Server::Delegate {
 public:
  /// A handler throws RequestError or JsonError (which becomes a 400) for what it cannot serve.
  using SdkHandler = std::function<Json(const Identity& who, const JsonObject& body)>;
  using Handler = std::function<HttpResponse(const HttpRequest&)>;
  using UploadHandler = std::function<std::unique_ptr<BodyReceiver>(const HttpRequest&)>;

  /// `maximumBody` in bytes. The others are borrowed; `exchanges` may be absent.
  Routes(const Configuration& configuration, std::size_t maximumBody, ExchangeLog* exchanges);

  /// POST of a JSON object by an application. The handler's value goes under "data" unless it is null.
  void addSdk(std::string path, SdkHandler handler, StatusKey statusKey = StatusKey::CamelCase);
  /// GET of one path, or of everything below a path that ends with "/".
  void addGet(std::string path, Handler handler);
  /// The same, for programs on this machine only.
  void addAdmin(std::string path, Handler handler);
  /// POST of a JSON object by a program on this machine. The handler's value goes under "data" unless it is null.
  void addAdminPost(std::string path, std::function<Json(const JsonObject& body)> handler);
  /// PUT of a file of at most `maximumBytes` to everything below a path that ends with "/", without identity headers.
  /// `receive` throws like the other handlers.
  void addUpload(std::string path, std::uint64_t maximumBytes, UploadHandler receive);

  std::optional<HttpResponse> refusal(const HttpRequest& request) override;
  HttpResponse answer(const HttpRequest& request) override;
  std::unique_ptr<BodyReceiver> receiver(const HttpRequest& request) override;
  HttpResponse failure(std::string_view path, int status, std::string_view message) override;
  void log(const HttpExchange& exchange) override;

 private:
  enum class Access { Application, Anybody, ThisMachine };
  struct Route {
    std::string path;
    std::string method;
    Access access;
    StatusKey statusKey;
    Handler handler;
    UploadHandler receive = nullptr;
    std::uint64_t maximumBytes = 0;  ///< of what is received
  };
  const Route* find(std::string_view path) const;
  void check(const Route& route, const HttpRequest& request) const;
  HttpResponse failureOf(std::string_view path, std::exception_ptr error);
  void checkApplication(const HttpRequest& request) const;

  const Configuration& configuration_;
  const std::size_t maximumBody_;
  ExchangeLog* const exchanges_;
  std::vector<Route> routes_;
};

/// A reply in the form that applications read: its status under `statusKey`, then "message", then "data" if not null.
HttpResponse jsonReply(int status, std::string_view message, const Json& data = nullptr,
                       StatusKey statusKey = StatusKey::CamelCase);

}  // namespace service
