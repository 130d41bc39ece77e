#pragma once

#include <array>
#include <chrono>
#include <httplib.h>
#include <optional>
#include <string>

#include "service/http/ServerLimits.h"

namespace service {

/// One client's socket as the HTTP library reads and writes it, with what the library lacks: deadlines for the whole
/// head, body and response instead of for single reads, a limit on the head's size, and the head as it was sent.
/// Owner: borrows the non-blocking socket. Thread: the worker that serves the connection.
class ConnectionStream final : public httplib::Stream {
 public:
  ConnectionStream(int socket, const ServerLimits& limits);

  /// Everything up to and including the blank line after the header fields.
  const std::string& head() const { return head_; }
  /// The head has been read; from here on the body's deadline counts.
  void beginBody();
  /// The body is a long one: from here on the upload's deadline counts, and the body's for each pause.
  void beginUpload();

  bool hasTimedOut() const { return hasTimedOut_; }
  bool isHeadTooLarge() const { return isHeadTooLarge_; }
  bool hasReceived() const { return hasReceived_; }
  bool hasSent() const { return hasSent_; }

  /// Says that nothing more will be sent and reads past what still comes, within the linger time.
  void finishWithUnreadInput();

  bool is_readable() const override { return true; }
  bool is_writable() const override { return true; }
  ssize_t read(char* target, size_t size) override;
  ssize_t write(const char* data, size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  using TimePoint = std::chrono::steady_clock::time_point;
  bool waitFor(short events, TimePoint deadline);
  ssize_t receive(TimePoint deadline);

  const int socket_;
  const ServerLimits& limits_;
  TimePoint readDeadline_;
  std::optional<TimePoint> uploadDeadline_;
  TimePoint writeDeadline_{};
  std::array<char, 16 << 10> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::string head_;
  bool isInHead_ = true;
  bool hasTimedOut_ = false;
  bool isHeadTooLarge_ = false;
  bool hasReceived_ = false;
  bool hasSent_ = false;
};

}  // namespace service
