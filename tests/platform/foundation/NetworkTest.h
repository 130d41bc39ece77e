#pragma once

#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <utility>

#include "platform/dispatch/BackgroundActivity.h"
#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"
#include "tests/platform/foundation/LoopbackServer.h"

namespace platform {

/// A session that really goes over a socket. Virtual time waits for it, so settling is all that a test has to do.
class NetworkTest : public testing::Test {
 protected:
  using Connection = LoopbackServer::Connection;

  struct Outcome {
    std::optional<Data> data;
    std::optional<HTTPURLResponse> response;
    std::optional<URLError> error;
    int calls = 0;
  };

  static std::string reply(const std::string& body, const std::string& head = "HTTP/1.1 200 OK") {
    return head + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\nX-Tea: yes\r\nConnection: close\r\n\r\n" +
           body;
  }
  static URLSession::DataCompletion into(Outcome& outcome) {
    return
        [&outcome](std::optional<Data> data, std::optional<HTTPURLResponse> response, std::optional<URLError> error) {
          outcome = {std::move(data), std::move(response), error, outcome.calls + 1};
        };
  }
  Outcome load(URLRequest request) {
    Outcome outcome;
    session_->dataTask(std::move(request), into(outcome))->resume();
    RunLoop::settle();
    EXPECT_EQ(outcome.calls, 1);
    EXPECT_EQ(BackgroundActivity::count(), 0U);
    return outcome;
  }
  Outcome load(const std::string& address) { return load(URLRequest(*URL::parse(address))); }
  /// How a session fares with a server that writes these bytes and hangs up.
  Outcome outcomeOf(const std::string& bytes) {
    const LoopbackServer server([&](const std::string&, const Connection& connection) { connection.write(bytes); });
    return load(server.address());
  }
  URLError::Code codeAfter(const std::string& bytes) {
    const Outcome outcome = outcomeOf(bytes);
    EXPECT_FALSE(outcome.data) << *outcome.data;
    return outcome.error ? outcome.error->code() : URLError::unknown;
  }

  const VirtualTime time_;
  Ref<URLSession> session_ = URLSession::withConfiguration();
};

}  // namespace platform
