#pragma once

#include <string>

namespace platform {

/// What a server has to prove beside what libcurl asks of it: that its certificate is for it by its alternative names
/// alone, whatever its common name says.
class CertificateCheck {
 public:
  /// For a server of this name or address, without brackets.
  explicit CertificateCheck(std::string host);

  /// Applies to the connections of a TLS context (OpenSSL's); false when it cannot be had, and nothing may be sent.
  bool applyTo(void* context) const;

 private:
  std::string host_;
};

}  // namespace platform
