// Whatever becomes of a request, the server sees it once, and at once.
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>

#include "tests/platform/foundation/NetworkTest.h"

namespace platform {
namespace {

/// What a server does in place of a reply.
struct Misdeed {
  const char* what;
  const char* bytes;
  URLError::Code code;
};
constexpr Misdeed misdeeds[] = {
    {"hangs up", "", URLError::networkConnectionLost},
    {"hangs up inside the head", "HTTP/1.1 200 OK\r\nContent-Le", URLError::networkConnectionLost},
    {"does not speak HTTP", "220 mail.example ESMTP\r\n", URLError::cannotParseResponse},
    {"hangs up inside the body", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", URLError::networkConnectionLost},
    {"asks for time and hangs up", "HTTP/1.1 100 Continue\r\n\r\n", URLError::networkConnectionLost},
};

class URLSessionOnceTest : public NetworkTest {
 protected:
  ~URLSessionOnceTest() override { std::filesystem::remove(path_); }

  URLRequest request(const std::string& address, const std::string& method) const {
    URLRequest request(*URL::parse(address));
    request.setHTTPMethod(method);
    if (method == "POST") request.setHTTPBody("{}");
    return request;
  }
  /// A PUT sends a file, everything else what `request` says.
  Outcome send(const std::string& address, const std::string& method) {
    if (method != "PUT") return load(request(address, method));
    std::ofstream(path_) << std::string(200'000, 'x');
    Outcome outcome;
    session_->uploadTask(request(address, method), URL::fileURL(path_.string()), into(outcome))->resume();
    RunLoop::settle();
    return outcome;
  }

 private:
  const std::filesystem::path path_ = std::filesystem::temp_directory_path() / "url session once test";
};

TEST_F(URLSessionOnceTest, SendsARequestOnceWhateverTheServerDoes) {
  for (const Misdeed& misdeed : misdeeds) {
    for (const char* const method : {"POST", "PUT", "GET", "DELETE"}) {
      SCOPED_TRACE(std::string(method) + " to a server that " + misdeed.what);
      const LoopbackServer server([&](const std::string&, const Connection& c) { c.write(misdeed.bytes); });
      EXPECT_EQ(send(server.address(), method).error, URLError(misdeed.code));
      EXPECT_EQ(server.connections(), 1);
      EXPECT_EQ(server.requests(), 1);
    }
  }
}

TEST_F(URLSessionOnceTest, SendsARequestOnceWhenAKeptConnectionTurnsOutToBeClosed) {
  for (const char* const method : {"POST", "PUT", "GET"}) {
    SCOPED_TRACE(method);
    const LoopbackServer server([&](const std::string& request, const Connection& connection) {
      if (!request.starts_with("GET /first")) return;  // hangs up
      connection.write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\nConnection: keep-alive\r\n\r\nfirst");
      connection.keepOpen();
    });
    EXPECT_EQ(load(server.address("/first")).data, "first");
    EXPECT_EQ(send(server.address("/second"), method).error, URLError(URLError::networkConnectionLost));
    EXPECT_EQ(server.requests(), 2);
  }
}

TEST_F(URLSessionOnceTest, LetsNoRequestWaitForAnother) {
  constexpr int count = 30;
  std::mutex mutex;
  std::condition_variable changed;
  int asked = 0;
  // Nobody is answered before all have asked.
  const LoopbackServer server([&](const std::string&, const Connection& connection) {
    std::unique_lock lock(mutex);
    if (++asked == count) changed.notify_all();
    changed.wait(lock, [&] { return asked >= count; });
    connection.write(reply("tea"));
  });
  std::vector<Outcome> outcomes(count);
  for (Outcome& outcome : outcomes) {
    session_->dataTask(request(server.address(), "POST"), into(outcome))->resume();
  }
  RunLoop::settle();
  for (const Outcome& outcome : outcomes) EXPECT_EQ(outcome.data, "tea");
  EXPECT_EQ(server.requests(), count);
}

TEST_F(URLSessionOnceTest, AnswersARefusalThatComesBeforeTheWholeFileWasSent) {
  const LoopbackServer server(
      [](const std::string&, const Connection& c) { c.write(reply("too big", "HTTP/1.1 413 No")); });
  const Outcome outcome = send(server.address(), "PUT");
  EXPECT_EQ(outcome.data, "too big");
  EXPECT_EQ(server.requests(), 1);
}

}  // namespace
}  // namespace platform
