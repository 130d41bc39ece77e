#include "tests/platform/engine/curl/TlsServer.h"

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstdlib>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace platform {

TlsServer::TlsServer(const Certificate& certificate, const std::vector<Certificate>& between, std::string reply,
                     Ending ending)
    : context_(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free), reply_(std::move(reply)), ending_(ending) {
  SSL_CTX_set_security_level(context_.get(), 0);  // it shows whatever the test made
  if (SSL_CTX_use_certificate(context_.get(), certificate.x509()) != 1) std::abort();
  if (SSL_CTX_use_PrivateKey(context_.get(), certificate.key()) != 1) std::abort();
  for (const Certificate& one : between) SSL_CTX_add1_chain_cert(context_.get(), one.x509());
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_, generic, size) != 0 || ::listen(listener_, SOMAXCONN) != 0) std::abort();
  ::getsockname(listener_, generic, &size);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

TlsServer::~TlsServer() {
  ::shutdown(listener_, SHUT_RDWR);
  thread_.join();
  ::close(listener_);
}

std::string TlsServer::address(const std::string& host) const {
  return "https://" + host + ":" + std::to_string(port_) + "/";
}

void TlsServer::serve() {
  // A client that leaves is no reason to end the program.
  sigset_t broken;
  sigemptyset(&broken);
  sigaddset(&broken, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &broken, nullptr);
  for (;;) {
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    ++connections_;
    answer(socket);
    ::close(socket);
  }
}

void TlsServer::answer(int socket) {
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  const std::unique_ptr<SSL, decltype(&SSL_free)> ssl(SSL_new(context_.get()), &SSL_free);
  SSL_set_fd(ssl.get(), socket);
  if (SSL_accept(ssl.get()) != 1) return;
  std::string request;
  std::array<char, 4096> buffer;
  while (request.find("\r\n\r\n") == std::string::npos) {
    const int read = SSL_read(ssl.get(), buffer.data(), static_cast<int>(buffer.size()));
    if (read <= 0) return;
    if (request.empty()) ++requests_;
    request.append(buffer.data(), static_cast<std::size_t>(read));
  }
  SSL_write(ssl.get(), reply_.data(), static_cast<int>(reply_.size()));
  if (ending_ == Ending::cut) {
    ::shutdown(socket, SHUT_WR);
  } else {
    SSL_shutdown(ssl.get());
  }
  while (SSL_read(ssl.get(), buffer.data(), static_cast<int>(buffer.size())) > 0) continue;
}

}  // namespace platform
