#pragma once

#include <memory>
#include <string>

#include "platform/engine/HttpTransport.h"

namespace platform {

class CurlThread;

/// HTTP/1.1 by libcurl, over plain connections and TLS. Everything of it runs on one thread of its own, which starts
/// with the first request. Each request has a connection of its own: libcurl sends a request again when a connection
/// that it used before turns out to be closed, and a server may have acted on it by then. The person's proxies (the
/// environment's) are used, except to this very machine: those that are reached by "http://" and "socks*://". One that
/// is itself reached by "https://" is not supported; a request to an "https://" address fails there, and nothing is
/// sent, since the proxy's certificate is not one for the server.
class CurlTransport final : public HttpTransport {
 public:
  /// Trusts the authorities in this file (PEM), or the machine's.
  explicit CurlTransport(std::string authorities = {});
  /// Exchanges under way lose their connection.
  ~CurlTransport() override;

  Ref<Exchange> send(Request request, Completion completion) override;
  /// Ends the thread, for good. Any thread but the transport's own.
  void stop();

 private:
  const std::string authorities_;
  const std::shared_ptr<CurlThread> thread_;
};

}  // namespace platform
