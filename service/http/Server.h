#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "service/http/BodyReceiver.h"
#include "service/http/Http.h"
#include "service/http/Listener.h"
#include "service/http/ServerLimits.h"

namespace service {

/// An HTTP server on one address: one request a connection, every client bounded in time and size.
class Server {
 public:
  /// Says what to answer. All calls come from worker threads, several at once; nothing may be thrown.
  class Delegate {
   public:
    virtual ~Delegate() = default;
    /// Judges a request by its head, before any of its body is read; nothing lets it pass.
    virtual std::optional<HttpResponse> refusal(const HttpRequest& request) = 0;
    virtual HttpResponse answer(const HttpRequest& request) = 0;
    /// Who takes the body of this request as it comes; absent for one that is gathered and given to answer().
    virtual std::unique_ptr<BodyReceiver> receiver(const HttpRequest& request) = 0;
    /// The response for what goes wrong before or beside the two above.
    virtual HttpResponse failure(std::string_view path, int status, std::string_view message) = 0;
    /// Called for every exchange just before its response is sent.
    virtual void log(const HttpExchange& exchange) = 0;
  };

  /// Listens at once (LoadError when that fails) and serves when run. `delegate` must outlive the server.
  Server(const std::string& host, int port, ServerLimits limits, Delegate& delegate);
  ~Server();

  /// "http://HOST:PORT".
  const std::string& address() const { return listener_.address(); }
  int port() const { return listener_.port(); }

  /// Serves until stop(); then no thread of the server is left.
  void run();
  /// Any thread, before or during run(); may be called from a signal handler.
  void stop() noexcept { listener_.interrupt(); }

 private:
  class Protocol;
  ServerLimits limits_;
  Listener listener_;
  std::unique_ptr<Protocol> protocol_;
};

}  // namespace service
