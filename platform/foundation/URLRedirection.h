#pragma once

#include <string_view>
#include <variant>

#include "platform/engine/URLError.h"
#include "platform/foundation/URLRequest.h"

namespace platform {

/// True for the statuses whose "Location" a session follows.
bool isRedirection(int statusCode);

/// What to ask next when a request was answered with a redirection, or why it is not followed. A POST becomes a GET
/// except where the status forbids it. To another origin goes nothing that could be a secret: of the header fields only
/// those that describe content. Nobody is sent a name and a password that a server wrote into the "Location". From
/// HTTPS nothing leads to HTTP, and nothing leads elsewhere than HTTP and HTTPS.
std::variant<URLRequest, URLError> redirectedRequest(const URLRequest& request, int statusCode,
                                                     std::string_view location);

}  // namespace platform
