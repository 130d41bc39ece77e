#include "service/api/Identity.h"

#include "service/base/RequestError.h"
#include "service/base/Utf8.h"

namespace service {
namespace {

std::string readHeader(const HeaderFields& headers, const std::string& name) {
  constexpr std::size_t kMaximumLength = 256;
  const std::size_t count = headers.count(name);
  if (count == 0) throw RequestError(400, "the header \"" + name + "\" is missing");
  if (count > 1) throw RequestError(400, "the header \"" + name + "\" is given more than once");
  std::string value = *headers.value(name);
  if (value.size() > kMaximumLength) throw RequestError(400, "the header \"" + name + "\" is too long");
  if (!isUtf8(value)) throw RequestError(400, "the header \"" + name + "\" is not UTF-8 text");
  return value;
}

}  // namespace

Identity Identity::read(const HeaderFields& headers) {
  Identity identity;
  identity.secretKey = readHeader(headers, "secret-key");
  identity.userId = readHeader(headers, "user-id");
  identity.sdk = readHeader(headers, "sdk");
  identity.platform = readHeader(headers, "platform");
  identity.appVersion = readHeader(headers, "app-version");
  identity.iosVersion = readHeader(headers, "ios-version");
  return identity;
}

}  // namespace service
