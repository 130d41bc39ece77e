#include "platform/foundation/URLRedirection.h"

namespace platform {

bool isRedirection(int statusCode) {
  return statusCode == 301 || statusCode == 302 || statusCode == 303 || statusCode == 307 || statusCode == 308;
}

std::variant<URLRequest, URLError> redirectedRequest(const URLRequest& request, int statusCode,
                                                     std::string_view location) {
  std::optional<URL> target = request.url().resolving(location);
  if (!target) return URLError(URLError::badServerResponse);
  const bool isOurUser = target->userInfo() == request.url().userInfo() && target->hasSameOrigin(request.url());
  if (!isOurUser) target = target->withoutUserInfo();
  const bool losesEncryption = request.url().scheme() == "https" && target->scheme() != "https";
  if (!target->isHTTP() || losesEncryption) return URLError(URLError::redirectToUnsafeLocation);

  URLRequest next = request;
  next.setURL(*target);
  const std::string& method = request.httpMethod();
  const bool becomesGet = statusCode == 303 ? method != "HEAD" : (statusCode <= 302 && method == "POST");
  HTTPHeaders headers;
  for (const auto& [name, value] : request.headers()) {
    const HTTPHeaders one{{name, value}};
    const bool describesContent =
        one.find("content-type") || one.find("content-encoding") || one.find("content-length");
    const bool isHarmless = describesContent || one.find("accept") || one.find("accept-language");
    if (becomesGet && describesContent) continue;
    if (isHarmless || target->hasSameOrigin(request.url())) headers.add(name, value);
  }
  next.setHeaders(std::move(headers));
  if (becomesGet) {
    next.setHTTPMethod("GET");
    next.setHTTPBody(std::nullopt);
  }
  return next;
}

}  // namespace platform
