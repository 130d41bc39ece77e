#include "platform/engine/curl/TlsCheck.h"

#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <utility>

namespace platform {

namespace {

using Flag = std::shared_ptr<bool>;

void freeFlag(void*, void* flag, CRYPTO_EX_DATA*, int, long, void*) { delete static_cast<Flag*>(flag); }

/// Where a context keeps the flag that its connections raise.
int flagIndex() {
  static const int index = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, &freeFlag);
  return index;
}

/// Called for whatever happens on a connection.
void watch(const SSL* connection, int what, int value) {
  if (what != SSL_CB_READ_ALERT || (value & 0xFF) != SSL_AD_CLOSE_NOTIFY) return;
  if (auto* const flag = static_cast<Flag*>(::SSL_CTX_get_ex_data(::SSL_get_SSL_CTX(connection), flagIndex()))) {
    **flag = true;
  }
}

}  // namespace

TlsCheck::TlsCheck(std::string host) : host_(std::move(host)) {
  if (host_.ends_with('.')) host_.pop_back();  // a name that is meant absolutely is written without it
}

bool TlsCheck::applyTo(void* context) const {
  auto* const tls = static_cast<SSL_CTX*>(context);
  auto flag = std::make_unique<Flag>(isEndAnnounced_);
  if (::SSL_CTX_set_ex_data(tls, flagIndex(), flag.get()) != 1) return false;
  static_cast<void>(flag.release());
  ::SSL_CTX_set_info_callback(tls, &watch);

  X509_VERIFY_PARAM* const demands = ::SSL_CTX_get0_param(tls);
  if (!demands || host_.empty()) return false;
  ::X509_VERIFY_PARAM_set_hostflags(demands,
                                    X509_CHECK_FLAG_NEVER_CHECK_SUBJECT | X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
  if (::X509_VERIFY_PARAM_set1_ip_asc(demands, host_.c_str()) == 1) return true;
  return ::X509_VERIFY_PARAM_set1_host(demands, host_.c_str(), host_.size()) == 1;
}

}  // namespace platform
