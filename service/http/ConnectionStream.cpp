#include "service/http/ConnectionStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>

namespace service {
namespace {

using Clock = std::chrono::steady_clock;

using NameOfEnd = int (*)(int, sockaddr*, socklen_t*);

void describe(NameOfEnd nameOfEnd, int socket, std::string& ip, int& port) {
  sockaddr_storage storage{};
  socklen_t length = sizeof storage;
  auto* const address = reinterpret_cast<sockaddr*>(&storage);
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> service{};
  if (nameOfEnd(socket, address, &length) != 0) return;
  if (::getnameinfo(address, length, host.data(), host.size(), service.data(), service.size(),
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return;
  ip = host.data();
  port = std::stoi(service.data());
}

}  // namespace

ConnectionStream::ConnectionStream(int socket, const ServerLimits& limits)
    : socket_(socket), limits_(limits), readDeadline_(Clock::now() + limits.headTime) {}

void ConnectionStream::beginBody() {
  isInHead_ = false;
  readDeadline_ = Clock::now() + limits_.bodyTime;
}

void ConnectionStream::beginUpload() { uploadDeadline_ = Clock::now() + limits_.uploadTime; }

ssize_t ConnectionStream::read(char* target, size_t size) {
  if (begin_ == end_) {
    if (uploadDeadline_) readDeadline_ = std::min(*uploadDeadline_, Clock::now() + limits_.bodyTime);
    const ssize_t received = receive(readDeadline_);
    if (received <= 0) return received;
    begin_ = 0;
    end_ = static_cast<std::size_t>(received);
  }
  const std::size_t taken = std::min(size, end_ - begin_);
  if (isInHead_) {
    if (head_.size() + taken > limits_.headBytes) {
      isHeadTooLarge_ = true;
      return -1;
    }
    head_.append(buffer_.data() + begin_, taken);
  }
  std::memcpy(target, buffer_.data() + begin_, taken);
  begin_ += taken;
  return static_cast<ssize_t>(taken);
}

ssize_t ConnectionStream::receive(TimePoint deadline) {
  for (;;) {
    const ssize_t received = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
    if (received > 0) hasReceived_ = true;
    if (received >= 0) return received;
    if (errno == EINTR) continue;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return -1;
    if (!waitFor(POLLIN, deadline)) return -1;
  }
}

ssize_t ConnectionStream::write(const char* data, size_t size) {
  if (!hasSent_) writeDeadline_ = Clock::now() + limits_.writeTime;
  hasSent_ = true;
  for (;;) {
    const ssize_t sent = ::send(socket_, data, size, MSG_NOSIGNAL);
    if (sent >= 0) return sent;
    if (errno == EINTR) continue;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return -1;
    if (!waitFor(POLLOUT, writeDeadline_)) return -1;
  }
}

bool ConnectionStream::waitFor(short events, TimePoint deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd wait{socket_, events, 0};
    const int ready = left.count() > 0 ? ::poll(&wait, 1, static_cast<int>(left.count())) : 0;
    if (ready > 0) return true;
    if (ready < 0 && errno == EINTR) continue;
    hasTimedOut_ = ready == 0;
    return false;
  }
}

void ConnectionStream::finishWithUnreadInput() {
  ::shutdown(socket_, SHUT_WR);
  const TimePoint deadline = Clock::now() + limits_.lingerTime;
  std::size_t passed = 0;
  while (passed < 8 * limits_.bodyBytes && Clock::now() < deadline) {
    const ssize_t received = receive(deadline);
    if (received <= 0) return;
    passed += static_cast<std::size_t>(received);
  }
}

void ConnectionStream::get_remote_ip_and_port(std::string& ip, int& port) const {
  describe(&::getpeername, socket_, ip, port);
}

void ConnectionStream::get_local_ip_and_port(std::string& ip, int& port) const {
  describe(&::getsockname, socket_, ip, port);
}

}  // namespace service
