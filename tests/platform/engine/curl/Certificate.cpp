#include "tests/platform/engine/curl/Certificate.h"

#include <atomic>
#include <cstdlib>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

namespace platform {

namespace {

void demand(bool isDone) {
  if (!isDone) std::abort();  // the test itself is wrong
}

void addExtension(X509* certificate, X509* issuer, int kind, const std::string& value) {
  if (value.empty()) return;
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
  demand(extension && X509_add_ext(certificate, extension, -1) == 1);
  X509_EXTENSION_free(extension);
}

void damageSignature(X509* certificate) {
  const ASN1_BIT_STRING* signature = nullptr;
  X509_get0_signature(&signature, nullptr, certificate);
  signature->data[signature->length - 1] ^= 1;
}

}  // namespace

Certificate::Certificate(const Content& content, const Certificate* issuer)
    : key_(content.isKeyShort ? EVP_RSA_gen(1024) : EVP_EC_gen("P-256"), &EVP_PKEY_free),
      x509_(X509_new(), &X509_free) {
  static std::atomic<long> serial{1};
  X509* const made = x509_.get();
  demand(key_ && made && X509_set_version(made, X509_VERSION_3) == 1);
  ASN1_INTEGER_set(X509_get_serialNumber(made), serial++);
  X509_gmtime_adj(X509_getm_notBefore(made), content.validFrom);
  X509_gmtime_adj(X509_getm_notAfter(made), content.validTo);
  X509_set_pubkey(made, key());
  X509_NAME_add_entry_by_txt(X509_get_subject_name(made), "CN", MBSTRING_UTF8,
                             reinterpret_cast<const unsigned char*>(content.commonName.c_str()), -1, -1, 0);
  X509* const signer = issuer ? issuer->x509() : made;
  X509_set_issuer_name(made, X509_get_subject_name(signer));
  addExtension(made, signer, NID_basic_constraints, content.constraints);
  addExtension(made, signer, NID_subject_alt_name, content.alternativeNames);
  addExtension(made, signer, NID_ext_key_usage, content.usage);
  addExtension(made, signer, NID_name_constraints, content.nameConstraints);
  demand(X509_sign(made, issuer ? issuer->key() : key(), content.isHashWeak ? EVP_sha1() : EVP_sha256()) > 0);
  if (content.isDamaged) damageSignature(made);
}

std::string Certificate::pem() const {
  BIO* const memory = BIO_new(BIO_s_mem());
  PEM_write_bio_X509(memory, x509());
  char* data = nullptr;
  const long size = BIO_get_mem_data(memory, &data);
  std::string text(data, static_cast<std::size_t>(size));
  BIO_free(memory);
  return text;
}

}  // namespace platform
