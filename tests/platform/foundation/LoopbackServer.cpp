#include "tests/platform/foundation/LoopbackServer.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {

namespace {

int listenOnLoopback(int& port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(socket, generic, size) != 0 || ::listen(socket, 16) != 0) std::abort();
  ::getsockname(socket, generic, &size);
  port = ntohs(address.sin_port);
  return socket;
}

bool isComplete(const std::string& request) {
  const std::size_t head = request.find("\r\n\r\n");
  if (head == std::string::npos) return false;
  const std::size_t field = request.find("Content-Length: ");
  const std::size_t length = field < head ? std::strtoul(request.c_str() + field + 16, nullptr, 10) : 0;
  return request.size() >= head + 4 + length;
}

}  // namespace

bool LoopbackServer::Connection::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void LoopbackServer::Connection::waitForClient() const {
  char byte = 0;
  while (::recv(socket_, &byte, 1, 0) > 0) {
  }
}

LoopbackServer::LoopbackServer(Handler handler) : handler_(std::move(handler)) {
  listener_ = listenOnLoopback(port_);
  thread_ = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
  ::shutdown(listener_, SHUT_RDWR);
  thread_.join();
  {
    // A client may have opened a connection and never used it.
    const std::lock_guard lock(mutex_);
    for (const int socket : open_) ::shutdown(socket, SHUT_RDWR);
  }
  for (std::thread& answer : answers_) answer.join();
  ::close(listener_);
}

std::string LoopbackServer::address(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

int LoopbackServer::freePort() {
  int port = 0;
  ::close(listenOnLoopback(port));
  return port;
}

void LoopbackServer::serve() {
  for (;;) {
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    ++connections_;
    {
      const std::lock_guard lock(mutex_);
      open_.insert(socket);
    }
    answers_.emplace_back([this, socket] { answer(socket); });
  }
}

void LoopbackServer::answer(int socket) {
  std::string request;
  char buffer[4096];
  while (!isComplete(request)) {
    const ssize_t read = ::recv(socket, buffer, sizeof buffer, 0);
    if (read <= 0) break;
    request.append(buffer, static_cast<std::size_t>(read));
  }
  if (isComplete(request)) handler_(request, Connection(socket));
  const std::lock_guard lock(mutex_);
  open_.erase(socket);
  ::close(socket);
}

}  // namespace platform
