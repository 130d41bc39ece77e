#include "tests/platform/foundation/LoopbackServer.h"

#include <algorithm>
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
  if (::bind(socket, generic, size) != 0 || ::listen(socket, SOMAXCONN) != 0) std::abort();
  ::getsockname(socket, generic, &size);
  port = ntohs(address.sin_port);
  return socket;
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

std::size_t LoopbackServer::Connection::skip(std::size_t bytes) const {
  char block[4096];
  std::size_t skipped = 0;
  while (skipped < bytes) {
    const ssize_t read = ::recv(socket_, block, std::min(sizeof block, bytes - skipped), 0);
    if (read <= 0) break;
    skipped += static_cast<std::size_t>(read);
  }
  return skipped;
}

void LoopbackServer::Connection::waitForClient() const {
  char byte = 0;
  while (::recv(socket_, &byte, 1, 0) > 0) {
  }
}

LoopbackServer::LoopbackServer(Handler handler, Reads reads) : handler_(std::move(handler)), reads_(reads) {
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

/// How long the first request is among the bytes, or 0 when not all of it is there.
std::size_t LoopbackServer::lengthOfRequest(const std::string& bytes) const {
  const std::size_t head = bytes.find("\r\n\r\n");
  if (head == std::string::npos) return 0;
  if (reads_ == Reads::head) return bytes.size();
  const std::size_t field = bytes.find("Content-Length: ");
  const std::size_t body = field < head ? std::strtoul(bytes.c_str() + field + 16, nullptr, 10) : 0;
  return bytes.size() >= head + 4 + body ? head + 4 + body : 0;
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
  const Connection connection(socket);
  std::string bytes;
  char buffer[4096];
  do {
    connection.isKept_ = false;
    std::size_t length = 0;
    while ((length = lengthOfRequest(bytes)) == 0) {
      const ssize_t read = ::recv(socket, buffer, sizeof buffer, 0);
      if (read <= 0) break;
      bytes.append(buffer, static_cast<std::size_t>(read));
    }
    if (length == 0) break;
    ++requests_;
    handler_(bytes.substr(0, length), connection);
    bytes.erase(0, length);
  } while (connection.isKept_);
  const std::lock_guard lock(mutex_);
  open_.erase(socket);
  ::close(socket);
}

}  // namespace platform
