#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "platform/engine/HTTPHeaders.h"
#include "platform/engine/URLError.h"
#include "platform/runtime/Data.h"
#include "platform/runtime/Ref.h"

namespace platform {

/// Carries one HTTP request to a server and its reply back. A request is sent once, whatever becomes of it, and none
/// waits for another. It follows no redirections, keeps no cookies and no cache, and always verifies certificates. Any
/// thread.
class HttpTransport {
 public:
  struct Request {
    std::string url;
    std::string method;
    HTTPHeaders headers;
    Data body;
    /// When set, the body is read from this file while it is sent, and bit by bit. A file that is changed, shortened or
    /// removed meanwhile is an error, and the request never becomes whole.
    std::string bodyFile;
    /// When set, the body of the reply is written to this file while it arrives.
    std::string replyFile;
    /// Seconds without any byte sent or received after which the exchange fails.
    double idleTimeout = 60;
    /// Seconds after which it fails however busy it is; none for 0.
    double overallTimeout = 0;
    /// A longer reply closes the connection.
    std::size_t maximumReplyBytes = 0;
  };
  struct Reply {
    std::optional<URLError> error;
    int statusCode = 0;
    HTTPHeaders headers;
    Data body;
  };
  /// Called once, on a thread of the transport: hand over and return. Let go, uncalled, when the exchange is cancelled.
  using Completion = std::function<void(Reply)>;

  /// A request under way. Dropping it does not end it.
  class Exchange {
   public:
    virtual ~Exchange() = default;
    virtual void cancel() = 0;
  };

  virtual ~HttpTransport() = default;
  virtual Ref<Exchange> send(Request request, Completion completion) = 0;

  /// The engine's transport.
  static HttpTransport& shared();
};

}  // namespace platform
