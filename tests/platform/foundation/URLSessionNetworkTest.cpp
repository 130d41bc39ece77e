#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>

#include "tests/platform/foundation/NetworkTest.h"

namespace platform {
namespace {

using testing::HasSubstr;

using URLSessionNetworkTest = NetworkTest;

TEST_F(URLSessionNetworkTest, CarriesRequestAndReply) {
  std::string received;
  auto server = std::make_unique<LoopbackServer>([&](const std::string& request, const Connection& connection) {
    received = request;
    connection.write(reply("{\"statusCode\":200}", "HTTP/1.1 500 Oh"));
  });
  URLRequest post(*URL::parse(server->address("/sdk/init?a=%20b")));
  post.setHTTPMethod("POST");
  post.setValue("application/json", "Content-Type");
  post.setValue("k", "secret-key");
  post.setValue("Zoë 茶", "user-id");
  post.setValue("", "app-version");
  post.setHTTPBody("{\"a\":1}");
  const Outcome outcome = load(post);
  server = nullptr;  // its thread has written down what it received
  EXPECT_THAT(received, HasSubstr("POST /sdk/init?a=%20b HTTP/1.1\r\n"));
  EXPECT_THAT(received, HasSubstr("\r\nsecret-key: k\r\n"));
  EXPECT_THAT(received, HasSubstr("\r\nuser-id: Zoë 茶\r\n"));
  EXPECT_THAT(received, HasSubstr("\r\napp-version:\r\n"));
  EXPECT_THAT(received, HasSubstr("\r\nContent-Type: application/json\r\n"));
  EXPECT_THAT(received, HasSubstr("\r\n\r\n{\"a\":1}"));
  EXPECT_EQ(outcome.data, "{\"statusCode\":200}");
  EXPECT_EQ(outcome.response->statusCode(), 500);
  EXPECT_EQ(*outcome.response->value("x-tea"), "yes");
}

TEST_F(URLSessionNetworkTest, DeliversErrorPagesAsReplies) {
  for (const char* const head : {"HTTP/1.1 400 No", "HTTP/1.1 401 No", "HTTP/1.1 404 No", "HTTP/1.1 407 No",
                                 "HTTP/1.1 418 Teapot", "HTTP/1.1 503 No"}) {
    const LoopbackServer server([&](const std::string&, const Connection& c) { c.write(reply("page", head)); });
    EXPECT_EQ(load(server.address()).data, "page") << head;
  }
}

TEST_F(URLSessionNetworkTest, TellsWhyAServerCouldNotBeReached) {
  const std::string nobody = "http://127.0.0.1:" + std::to_string(LoopbackServer::freePort()) + "/";
  EXPECT_EQ(load(nobody).error, URLError(URLError::cannotConnectToHost));
  for (const char* const proxy : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) ::unsetenv(proxy);
  EXPECT_EQ(load("http://no-such-host.invalid/").error, URLError(URLError::cannotFindHost));
}

TEST_F(URLSessionNetworkTest, FailsWhenTheServerDoesNotSpeakHTTP) {
  EXPECT_EQ(codeAfter("220 mail.example ESMTP\r\n"), URLError::cannotParseResponse);
  EXPECT_EQ(codeAfter(std::string(100'000, '\xFF')), URLError::cannotParseResponse);
  EXPECT_EQ(codeAfter("HTTP/1.1 20x Well\r\n\r\n"), URLError::cannotParseResponse);
  EXPECT_EQ(codeAfter("HTTP/1.1 101 Switching\r\n\r\nother talk"), URLError::networkConnectionLost);
}

TEST_F(URLSessionNetworkTest, TimesOutWhenNothingMoves) {
  const LoopbackServer server([](const std::string&, const Connection& connection) {
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nslow");
    connection.waitForClient();
  });
  URLRequest request(*URL::parse(server.address()));
  request.setTimeoutInterval(0.2);
  EXPECT_EQ(load(request).error, URLError(URLError::timedOut));
}

TEST_F(URLSessionNetworkTest, ClosesTheConnectionOnAReplyThatIsTooLong) {
  std::atomic<std::size_t> sent{0};
  const LoopbackServer endless([&](const std::string&, const Connection& connection) {
    const std::string block(64 << 10, 'x');
    connection.write("HTTP/1.1 200 OK\r\n\r\n");  // no length: only counting helps
    for (sent = 0; sent < (200U << 20) && connection.write(block);) sent += block.size();
  });
  EXPECT_EQ(load(endless.address()).error, URLError(URLError::dataLengthExceedsMaximum));
  const LoopbackServer announced([&](const std::string&, const Connection& connection) {
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 52428800\r\n\r\n");
    connection.waitForClient();  // not a byte of it has to arrive
  });
  EXPECT_EQ(load(announced.address()).error, URLError(URLError::dataLengthExceedsMaximum));
  EXPECT_LT(sent, 64U << 20);
}

TEST_F(URLSessionNetworkTest, FollowsRedirectionsAndGivesUpOnALoop) {
  const LoopbackServer server([](const std::string& request, const Connection& connection) {
    if (request.starts_with("POST /moved")) {
      connection.write("HTTP/1.1 307 Moved\r\nLocation: /here\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    } else if (request.starts_with("POST /here")) {
      connection.write(reply(request.substr(request.find("\r\n\r\n") + 4)));
    } else {
      connection.write("HTTP/1.1 302 Round\r\nLocation: /round\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    }
  });
  URLRequest post(*URL::parse(server.address("/moved")));
  post.setHTTPMethod("POST");
  post.setHTTPBody("again");
  EXPECT_EQ(load(post).data, "again");
  EXPECT_EQ(load(server.address("/round")).error, URLError(URLError::httpTooManyRedirects));
  EXPECT_EQ(server.connections(), 2 + 11);
}

TEST_F(URLSessionNetworkTest, IntroducesItselfAsNobodyWhomAServerNames) {
  std::mutex mutex;
  std::string received;
  auto server = std::make_unique<LoopbackServer>([&](const std::string& request, const Connection& connection) {
    {
      const std::lock_guard lock(mutex);
      received += request;
    }
    const std::string host = request.substr(request.find("Host: ") + 6);
    const std::string location = "http://me:secret@" + host.substr(0, host.find('\r')) + "/here";
    const bool isMoved = request.starts_with("GET /moved");
    connection.write(isMoved ? "HTTP/1.1 302 Moved\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n"
                             : reply("here"));
  });
  EXPECT_EQ(load(server->address("/moved")).data, "here");
  EXPECT_EQ(server->requests(), 2);
  server = nullptr;  // its thread has written down what it received
  EXPECT_THAT(received, testing::Not(HasSubstr("Authorization")));
}

TEST_F(URLSessionNetworkTest, SendsNothingWhenAHeaderFieldCouldBreakOut) {
  const LoopbackServer server([](const std::string&, const Connection& connection) { connection.write(reply("")); });
  URLRequest request(*URL::parse(server.address()));
  request.setValue("me\r\nX-Injected: yes", "user-id");
  EXPECT_EQ(load(request).error, URLError(URLError::badRequest));
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(URLSessionNetworkTest, CancelsAnExchangeUnderWay) {
  std::mutex mutex;
  std::condition_variable changed;
  bool isAsked = false;
  const LoopbackServer server([&](const std::string&, const Connection& connection) {
    {
      const std::lock_guard lock(mutex);
      isAsked = true;
    }
    changed.notify_one();
    connection.waitForClient();
  });
  std::optional<URLError> error;
  const auto task = session_->dataTask(
      *URL::parse(server.address()),
      [&](std::optional<Data>, std::optional<HTTPURLResponse>, std::optional<URLError> failure) { error = failure; });
  task->resume();
  {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return isAsked; });
  }
  task->cancel();
  RunLoop::settle();
  EXPECT_EQ(error, URLError(URLError::cancelled));
  EXPECT_EQ(BackgroundActivity::count(), 0U);
}

TEST_F(URLSessionNetworkTest, StreamsUploadsAndDownloadsThroughFiles) {
  const std::string film = [] {
    std::string bytes(3'000'000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 2654435761U >> 13);
    return bytes;
  }();
  const LoopbackServer server([](const std::string& request, const Connection& connection) {
    connection.write(reply(request.substr(request.find("\r\n\r\n") + 4)));
  });
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "url session network test";
  std::ofstream(path, std::ios::binary) << film;
  URLRequest put(*URL::parse(server.address("/film")));
  put.setHTTPMethod("PUT");
  std::optional<Data> echoed;
  session_
      ->uploadTask(put, URL::fileURL(path.string()),
                   [&](std::optional<Data> data, std::optional<HTTPURLResponse>, std::optional<URLError>) {
                     echoed = std::move(data);
                   })
      ->resume();
  RunLoop::settle();
  EXPECT_TRUE(echoed == film);
  std::filesystem::remove(path);

  put.setHTTPBody(film);
  bool isSame = false;
  session_
      ->downloadTask(put,
                     [&](std::optional<URL> file, std::optional<HTTPURLResponse>, std::optional<URLError>) {
                       ASSERT_TRUE(file);
                       std::ifstream stream(file->path(), std::ios::binary);
                       isSame = std::string(std::istreambuf_iterator<char>(stream), {}) == film;
                     })
      ->resume();
  RunLoop::settle();
  EXPECT_TRUE(isSame);
}

TEST_F(URLSessionNetworkTest, HoldsVirtualTimeUntilAllRepliesAreThere) {
  std::promise<void> everyTaskWasStarted;
  const std::shared_future<void> start = everyTaskWasStarted.get_future().share();
  const LoopbackServer server([start](const std::string& request, const Connection& connection) {
    start.wait();
    connection.write(reply(request.substr(4, 3)));
  });
  std::vector<double> instants;
  for (int i = 0; i < 20; ++i) {
    session_
        ->dataTask(*URL::parse(server.address()),
                   [&](std::optional<Data> data, std::optional<HTTPURLResponse>, std::optional<URLError>) {
                     EXPECT_TRUE(data);
                     DispatchQueue::main().async([&] { instants.push_back(CACurrentMediaTime()); });
                   })
        ->resume();
  }
  everyTaskWasStarted.set_value();
  RunLoop::advance(1000);
  EXPECT_EQ(instants, std::vector<double>(20, Clock::virtualMediaTimeAtStart));
}

}  // namespace
}  // namespace platform
