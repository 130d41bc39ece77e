#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/engine/HTTPHeaders.h"
#include "platform/engine/URLError.h"
#include "platform/foundation/JSONValue.h"
#include "platform/foundation/URLRequest.h"
#include "platform/runtime/Data.h"

namespace platform {

/// Answers requests in place of the network, in every session of the process. Tests register one:
///
///     const auto stub = URLProtocol::registerHandler([&](const URLRequest& request) {
///       requests.push_back(request);
///       return URLProtocol::Reply::json(200, body);
///     });
///
/// Everything else of a session (checks of the header fields, redirections, limits, timeouts) works as with the
/// network.
class URLProtocol {
 public:
  struct Reply {
    int statusCode = 200;
    HTTPHeaders headers;
    Data body;
    /// Seconds (of the clock) until the reply is there. Beyond the request's timeout the task times out first.
    double delay = 0;
    /// The task fails with this instead.
    std::optional<URLError> error;
    /// The connection breaks after the head and a part of the body.
    bool closesInMidReply = false;
    /// Nothing ever comes: the task times out, or waits to be cancelled.
    bool neverAnswers = false;

    static Reply data(int statusCode, Data body);
    static Reply json(int statusCode, const JSONValue& body);
    static Reply failure(URLError::Code code);
    static Reply never();
    Reply after(double seconds) &&;
  };

  /// None leaves the request to the next handler, and at last to the network. The body of an upload is in the request.
  /// Called on the session's queue, one request at a time for each session.
  using Handler = std::function<std::optional<Reply>(const URLRequest& request)>;

  /// Keeps a handler registered for its lifetime.
  class Registration {
   public:
    Registration(Registration&&) noexcept;
    Registration& operator=(Registration&&) noexcept;
    ~Registration();

   private:
    friend class URLProtocol;
    explicit Registration(std::uint64_t number) : number_(number) {}
    std::uint64_t number_;
  };

  /// The handler registered last is asked first.
  [[nodiscard]] static Registration registerHandler(Handler handler);
  /// False when every request is for the network.
  static bool hasHandlers();
  /// What the handlers say to a request; none when it is for the network.
  static std::optional<Reply> replyFor(const URLRequest& request);
};

}  // namespace platform
