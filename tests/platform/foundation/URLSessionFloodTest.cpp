// A peer that never ends costs its own request, and no other.
#include <atomic>
#include <future>
#include <zlib.h>

#include "platform/engine/HttpTransport.h"
#include "tests/platform/foundation/NetworkTest.h"

namespace platform {
namespace {

const std::string ok = "HTTP/1.1 200 OK\r\n";
const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";

std::string repeated(const std::string& text) {
  std::string result;
  while (result.size() < 64 << 10) result += text;
  return result;
}

/// A packed file that unpacks to a thousand times its size: whoever reads it is always slower than who sends it.
std::string packedBlanks() {
  const std::string blanks(32 << 20, ' ');
  std::string packed(1 << 20, '\0');
  z_stream z{};
  deflateInit2(&z, 9, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(blanks.data()));
  z.avail_in = static_cast<uInt>(blanks.size());
  z.next_out = reinterpret_cast<Bytef*>(packed.data());
  z.avail_out = static_cast<uInt>(packed.size());
  deflate(&z, Z_FINISH);
  packed.resize(z.total_out);
  deflateEnd(&z);
  return packed;
}

/// What comes again and again after a beginning.
struct Flood {
  const char* what;
  std::string beginning;
  std::string block;
};

class URLSessionFloodTest : public NetworkTest {
 protected:
  /// Far more than any limit, and than connections hold.
  static constexpr std::size_t endless = std::size_t{4} << 30;

  /// Writes until the client has gone, or has taken all of it for want of a limit.
  static LoopbackServer::Handler flooding(const Flood& flood, const std::function<bool()>& isOver = nullptr) {
    return [flood, isOver](const std::string&, const Connection& connection) {
      connection.write(flood.beginning);
      for (std::size_t sent = 0; sent < endless && connection.write(flood.block); sent += flood.block.size()) {
        if (isOver && isOver()) return;
      }
    };
  }
  struct Sent {
    std::future<HttpTransport::Reply> reply;
    Ref<HttpTransport::Exchange> exchange;
  };
  static Sent send(const std::string& address, double overallTimeout) {
    HttpTransport::Request request;
    request.url = address;
    request.method = "GET";
    request.overallTimeout = overallTimeout;
    request.maximumReplyBytes = 2 * endless;
    request.replyFile = "/dev/null";
    auto promise = std::make_shared<std::promise<HttpTransport::Reply>>();
    return {promise->get_future(), HttpTransport::shared().send(request, [promise](HttpTransport::Reply reply) {
              promise->set_value(std::move(reply));
            })};
  }
};

TEST_F(URLSessionFloodTest, BoundsEverythingThatIsNoBody) {
  URLSessionConfiguration configuration;
  configuration.timeoutIntervalForResource = 10;
  session_ = URLSession::withConfiguration(configuration);
  const std::string nothingPacked("\x1F\x8B\x08\0\0\0\0\0\0\x03\x03\0\0\0\0\0\0\0\0\0", 20);
  const Flood floods[] = {
      {"a remark on a piece", chunked + "3;", repeated("x")},
      {"a remark on every piece", chunked, repeated("1;" + std::string(100, 'x') + "\r\nt\r\n")},
      {"a field after the body", chunked + "3\r\ntea\r\n0\r\nX-Tea: ", repeated("x")},
      {"fields after the body", chunked + "3\r\ntea\r\n0\r\n", repeated("X-Tea: yes\r\n")},
      {"a field", ok + "X-Tea: ", repeated("x")},
      {"fields", ok, repeated("X-Tea: yes\r\n")},
      {"a status line", "HTTP/1.1 200 ", repeated("x")},
      {"interim replies", "", repeated("HTTP/1.1 100 Continue\r\n\r\n")},
      {"packed files with nothing in them", ok + "Content-Encoding: gzip\r\n\r\n", repeated(nothingPacked)},
  };
  for (const Flood& flood : floods) {
    SCOPED_TRACE(flood.what);
    const LoopbackServer server(flooding(flood));
    EXPECT_EQ(load(server.address()).error, URLError(URLError::dataLengthExceedsMaximum));
    EXPECT_EQ(server.requests(), 1);
  }
}

TEST_F(URLSessionFloodTest, EndsAtItsLimitHoweverFastThePeerIs) {
  const Flood floods[] = {
      {"a body", ok + "\r\n", repeated("x")},
      {"pieces", chunked, repeated("8\r\nteapots!\r\n")},
      {"much in little", ok + "Content-Encoding: gzip\r\n\r\n", packedBlanks()},
  };
  for (const Flood& flood : floods) {
    SCOPED_TRACE(flood.what);
    const LoopbackServer server(flooding(flood));
    EXPECT_EQ(send(server.address(), 0.3).reply.get().error, URLError(URLError::timedOut));
    EXPECT_EQ(server.requests(), 1);
  }
}

TEST_F(URLSessionFloodTest, LetsOtherRequestsGoOn) {
  std::atomic<bool> isAnswered{false};
  std::promise<void> begun;
  const std::string packed = packedBlanks();
  const LoopbackServer flooder([&](const std::string& request, const Connection& connection) {
    connection.write(ok + "Content-Encoding: gzip\r\n\r\n" + packed);
    begun.set_value();
    flooding({"much in little", "", packed}, [&] { return isAnswered.load(); })(request, connection);
  });
  const LoopbackServer calm([](const std::string&, const Connection& connection) { connection.write(reply("tea")); });
  const Sent flooded = send(flooder.address(), 0);
  begun.get_future().wait();
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(send(calm.address(), 0).reply.get().error);
    EXPECT_EQ(flooded.reply.wait_for(std::chrono::seconds(0)), std::future_status::timeout)
        << "the flood was over first";
  }
  isAnswered = true;
  flooded.exchange->cancel();
}

}  // namespace
}  // namespace platform
