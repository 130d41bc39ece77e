#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/engine/curl/Certificate.h"

namespace platform {

/// A server on the loopback interface that shows a certificate, reads a request and answers it with the given bytes.
/// Everything ends with the object.
class TlsServer {
 public:
  /// How a connection ends after the reply: as TLS has it, or as anybody on the way could end it.
  enum class Ending { announced, cut };

  /// `between` are the certificates between the server's and its authority that are shown as well.
  TlsServer(const Certificate& certificate, const std::vector<Certificate>& between, std::string reply,
            Ending ending = Ending::announced);
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  std::string address(const std::string& host) const;
  int connections() const { return connections_; }
  /// Connections on which a part of a request arrived.
  int requests() const { return requests_; }

 private:
  void serve();
  void answer(int socket);

  std::shared_ptr<SSL_CTX> context_;
  const std::string reply_;
  const Ending ending_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_{0};
  std::atomic<int> requests_{0};
  std::thread thread_;
};

}  // namespace platform
