#pragma once

#include <memory>
#include <openssl/ssl.h>
#include <string>

namespace platform {

/// A certificate with its key, made for a test. A value that shares both.
class Certificate {
 public:
  /// What it says. The extensions are written as in a configuration of OpenSSL; an empty one is left out.
  struct Content {
    std::string commonName = {};
    std::string alternativeNames = {};
    std::string constraints = "critical,CA:FALSE";
    std::string usage = "serverAuth";
    std::string nameConstraints = {};
    long validFrom = -3600;  ///< seconds from now
    long validTo = 3600;
    bool isHashWeak = false;
    bool isKeyShort = false;
    bool isDamaged = false;  ///< a bit of the signature is turned
  };

  /// Signed by the issuer's key, or by its own.
  explicit Certificate(const Content& content, const Certificate* issuer = nullptr);

  X509* x509() const { return x509_.get(); }
  EVP_PKEY* key() const { return key_.get(); }
  /// As text in the form that files of authorities have.
  std::string pem() const;

 private:
  std::shared_ptr<EVP_PKEY> key_;
  std::shared_ptr<X509> x509_;
};

}  // namespace platform
