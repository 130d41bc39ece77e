#pragma once

#include <string>

#include "service/http/FileDescriptor.h"

namespace service {

/// A listening TCP socket whose wait can be ended from outside.
class Listener {
 public:
  /// Port 0 takes any free one. Throws LoadError when the address cannot be listened on.
  Listener(const std::string& host, int port);

  /// "http://HOST:PORT" as a client writes it.
  const std::string& address() const { return address_; }
  int port() const { return port_; }

  /// Waits for the next client that has begun to send; a closed descriptor once interrupted.
  FileDescriptor accept();

  /// Ends accept() for good. Any thread; may be called from a signal handler.
  void interrupt() noexcept;

 private:
  FileDescriptor socket_;
  FileDescriptor wake_;
  std::string address_;
  int port_ = 0;
};

}  // namespace service
