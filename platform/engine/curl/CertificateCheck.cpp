#include "platform/engine/curl/CertificateCheck.h"

#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <utility>

namespace platform {

CertificateCheck::CertificateCheck(std::string host) : host_(std::move(host)) {
  if (host_.ends_with('.')) host_.pop_back();  // a name that is meant absolutely is written without it
}

bool CertificateCheck::applyTo(void* context) const {
  X509_VERIFY_PARAM* const demands = ::SSL_CTX_get0_param(static_cast<SSL_CTX*>(context));
  if (!demands || host_.empty()) return false;
  ::X509_VERIFY_PARAM_set_hostflags(demands,
                                    X509_CHECK_FLAG_NEVER_CHECK_SUBJECT | X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
  if (::X509_VERIFY_PARAM_set1_ip_asc(demands, host_.c_str()) == 1) return true;
  return ::X509_VERIFY_PARAM_set1_host(demands, host_.c_str(), host_.size()) == 1;
}

}  // namespace platform
