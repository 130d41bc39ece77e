#pragma once

#include <memory>
#include <string>

namespace platform {

/// What is asked of a server beside what libcurl asks: that its certificate is for it by its alternative names alone,
/// whatever its common name says. And whether the server itself ended the connection, which anybody on the way could do
/// as well.
class TlsCheck {
 public:
  /// For a server of this name or address, without brackets.
  explicit TlsCheck(std::string host);

  /// Applies to the connections of a TLS context (OpenSSL's); false when it cannot be had, and nothing may be sent.
  bool applyTo(void* context) const;
  /// The server has said over TLS that nothing more follows.
  bool isEndAnnounced() const { return *isEndAnnounced_; }

 private:
  std::string host_;
  std::shared_ptr<bool> isEndAnnounced_ = std::make_shared<bool>(false);  // a context may live longer than this
};

}  // namespace platform
