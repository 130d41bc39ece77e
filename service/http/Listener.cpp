#include "service/http/Listener.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "service/base/LoadError.h"

namespace service {
namespace {

using AddressList = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

AddressList resolve(const std::string& host, int port) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  addrinfo* found = nullptr;
  if (const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found); error != 0)
    throw LoadError("--host: " + host + ": " + ::gai_strerror(error));
  return {found, &::freeaddrinfo};
}

int boundPort(int socket) {
  sockaddr_storage storage{};
  socklen_t length = sizeof storage;
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&storage), &length);
  std::array<char, NI_MAXSERV> service{};
  ::getnameinfo(reinterpret_cast<sockaddr*>(&storage), length, nullptr, 0, service.data(), service.size(),
                NI_NUMERICSERV);
  return std::stoi(service.data());
}

/// An address that listens everywhere is reached, from this machine, over loopback.
std::string dialableHost(const std::string& host) {
  if (host == "0.0.0.0") return "127.0.0.1";
  if (host == "::") return "[::1]";
  return host.find(':') == std::string::npos ? host : "[" + host + "]";
}

}  // namespace

Listener::Listener(const std::string& host, int port) : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  const AddressList addresses = resolve(host, port);
  const int family = addresses->ai_family;
  socket_ = FileDescriptor(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const int on = 1;
  ::setsockopt(socket_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  // A client that connects and says nothing stays with the kernel and costs no worker.
  const int secondsUntilFirstByte = 10;
  ::setsockopt(socket_.get(), IPPROTO_TCP, TCP_DEFER_ACCEPT, &secondsUntilFirstByte, sizeof secondsUntilFirstByte);
  if (!wake_.isOpen() || ::bind(socket_.get(), addresses->ai_addr, addresses->ai_addrlen) != 0 ||
      ::listen(socket_.get(), SOMAXCONN) != 0)
    throw LoadError("cannot listen on " + host + " port " + std::to_string(port) + ": " + std::strerror(errno));
  port_ = boundPort(socket_.get());
  address_ = "http://" + dialableHost(host) + ":" + std::to_string(port_);
}

FileDescriptor Listener::accept() {
  std::array<pollfd, 2> waits{{{socket_.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}}};
  for (;;) {
    if (::poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR) return {};
    if (waits[1].revents != 0) return {};
    FileDescriptor client(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (client.isOpen()) return client;
    // Out of descriptors or memory: the client stays in the kernel's queue, so give the workers a moment to free some.
    const bool isShort = errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
    if (isShort) ::poll(&waits[1], 1, 50);
  }
}

void Listener::interrupt() noexcept {
  const std::uint64_t one = 1;
  // The counter cannot be full and a full one would wake as well.
  [[maybe_unused]] const auto written = ::write(wake_.get(), &one, sizeof one);
}

}  // namespace service
