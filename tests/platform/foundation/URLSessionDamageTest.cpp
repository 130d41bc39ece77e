// Replies that did not arrive whole, or not sound, are errors; those that did are not.
#include <condition_variable>
#include <mutex>
#include <zlib.h>

#include "tests/platform/foundation/NetworkTest.h"

namespace platform {
namespace {

const std::string ok = "HTTP/1.1 200 OK\r\n";
const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";

std::string gzip(const std::string& plain) {
  std::string packed(plain.size() + 100, '\0');
  z_stream z{};
  deflateInit2(&z, 9, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  z.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(plain.data()));
  z.avail_in = static_cast<uInt>(plain.size());
  z.next_out = reinterpret_cast<Bytef*>(packed.data());
  z.avail_out = static_cast<uInt>(packed.size());
  deflate(&z, Z_FINISH);
  packed.resize(z.total_out);
  deflateEnd(&z);
  return packed;
}

/// A reply whose body is packed, with its right length.
std::string packedReply(const std::string& body) {
  return ok + "Content-Encoding: gzip\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string text() {
  std::string tea;
  for (int i = 0; i < 500; ++i) tea += "cup " + std::to_string(i * 7919) + "\n";
  return tea;
}

struct Damaged {
  std::string what;
  std::string bytes;
};

std::vector<Damaged> damagedReplies() {
  const std::string packed = gzip(text());
  std::string flipped = packed;
  flipped[packed.size() / 2] = static_cast<char>(flipped[packed.size() / 2] ^ 0x55);
  std::string miscounted = packed;
  miscounted.back() = static_cast<char>(miscounted.back() ^ 1);
  return {
      {"nothing", ""},
      {"half a status line", "HTTP/1.1 2"},
      {"half a head", ok + "Content-Le"},
      {"a head without its last line", ok + "Content-Type: text/plain\r\n"},
      {"three bytes of a hundred", ok + "Content-Length: 100\r\n\r\ntea"},
      {"none of a hundred bytes", ok + "Content-Length: 100\r\n\r\n"},
      {"a chunk cut off", chunked + "5\r\nte"},
      {"cut between chunks", chunked + "3\r\ntea\r\n"},
      {"cut inside a size", chunked + "3\r\ntea\r\n1"},
      {"cut before the last line", chunked + "3\r\ntea\r\n0\r\n"},
      {"cut one byte before the end", chunked + "3\r\ntea\r\n0\r\n\r"},
      {"cut inside a field after the body", chunked + "3\r\ntea\r\n0\r\nX-After: y"},
      {"cut one byte before the end of fields after the body", chunked + "3\r\ntea\r\n0\r\nX-After: yes\r\n\r"},
      {"a size that is no number", chunked + "zz\r\ntea\r\n0\r\n\r\n"},
      {"a size below nothing", chunked + "-3\r\ntea\r\n0\r\n\r\n"},
      {"a size beyond all bounds", chunked + "fffffffffffffffff\r\ntea\r\n0\r\n\r\n"},
      {"a chunk longer than it says", chunked + "3\r\nteapot\r\n0\r\n\r\n"},
      {"half of a packed body", packedReply(packed.substr(0, packed.size() / 2))},
      {"a packed body without its check", packedReply(packed.substr(0, packed.size() - 8))},
      {"a packed body with a half check", packedReply(packed.substr(0, packed.size() - 3))},
      {"the packed body's first bytes", packedReply(packed.substr(0, 5))},
      {"half of a packed body to the end of the connection",
       ok + "Content-Encoding: gzip\r\n\r\n" + packed.substr(0, packed.size() / 2)},
      {"half of a packed body in a chunk", ok + "Content-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n\r\n" +
                                               "40\r\n" + packed.substr(0, 64) + "\r\n0\r\n\r\n"},
      {"a packed body with a bit turned", packedReply(flipped)},
      {"a packed body of another length", packedReply(miscounted)},
      {"a packed body and more", packedReply(packed + "more")},
      {"a body that is not packed at all", packedReply("{\"statusCode\":200}")},
      {"packed in a way that nobody asked for", ok + "Content-Encoding: br\r\nContent-Length: 3\r\n\r\ntea"},
      {"packed twice", ok + "Content-Encoding: gzip, gzip\r\n\r\n" + gzip(packed)},
      {"packed twice, in two fields", ok + "Content-Encoding: gzip\r\nContent-Encoding: br\r\n\r\n" + packed},
      {"packed for the way", ok + "Transfer-Encoding: gzip, chunked\r\n\r\n3\r\ntea\r\n0\r\n\r\n"},
      {"a length beyond 63 bits", ok + "Content-Length: 9223372036854775808\r\n\r\ntea"},
      {"a length beyond all bounds", ok + "Content-Length: 99999999999999999999999999\r\n\r\ntea"},
      {"a length below nothing", ok + "Content-Length: -3\r\n\r\ntea"},
      {"a length that is no number", ok + "Content-Length: 3abc\r\n\r\ntea"},
      {"two lengths", ok + "Content-Length: 3\r\nContent-Length: 6\r\n\r\nteapot"},
  };
}

/// Sends the same reply to a hundred requests under way together.
class URLSessionDamageTest : public NetworkTest {
 protected:
  static constexpr int tries = 100;
  enum class Close { early, late };

  /// The error codes of a hundred tries; `unknown` where there was none.
  std::vector<URLError::Code> codesOf(const std::string& bytes, Close close) {
    std::mutex mutex;
    std::condition_variable changed;
    int written = 0;
    bool mayClose = close == Close::early;
    const LoopbackServer server([&](const std::string& request, const Connection& connection) {
      const bool isBell = request.starts_with("GET /bell");
      connection.write(isBell ? reply("") : bytes);
      std::unique_lock lock(mutex);
      if (isBell) mayClose = true;
      ++written;
      changed.notify_all();
      changed.wait(lock, [&] { return mayClose; });
    });
    std::vector<Outcome> outcomes(tries);
    for (Outcome& outcome : outcomes) session_->dataTask(*URL::parse(server.address()), into(outcome))->resume();
    if (close == Close::late) {
      // Every byte has been written, and a whole further exchange passes before the first connection is closed.
      std::unique_lock lock(mutex);
      changed.wait(lock, [&] { return written == tries; });
      lock.unlock();
      Outcome bell;
      session_->dataTask(*URL::parse(server.address("/bell")), into(bell))->resume();
      RunLoop::settle();
    }
    RunLoop::settle();
    std::vector<URLError::Code> codes;
    for (const Outcome& outcome : outcomes) {
      EXPECT_EQ(outcome.calls, 1);
      codes.push_back(outcome.error ? outcome.error->code() : URLError::unknown);
    }
    EXPECT_EQ(server.requests(), tries + (close == Close::late ? 1 : 0));
    return codes;
  }
};

TEST_F(URLSessionDamageTest, TakesNoDamagedReplyForAWholeOne) {
  testing::internal::CaptureStderr();
  for (const auto& [what, bytes] : damagedReplies()) {
    SCOPED_TRACE(what);
    EXPECT_THAT(codesOf(bytes, Close::early), testing::Not(testing::Contains(URLError::unknown)));
    EXPECT_THAT(codesOf(bytes, Close::late), testing::Not(testing::Contains(URLError::unknown)));
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(URLSessionDamageTest, TakesWholeRepliesInEveryForm) {
  const std::string packed = gzip(text());
  const std::string half = packed.substr(0, packed.size() / 2);
  const std::string rest = packed.substr(packed.size() / 2);
  const auto inChunks = [](const std::string& piece) {
    char size[16];
    std::snprintf(size, sizeof size, "%zx\r\n", piece.size());
    return size + piece + "\r\n";
  };
  EXPECT_EQ(outcomeOf(packedReply(packed)).data, text());
  EXPECT_EQ(outcomeOf(ok + "Content-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n\r\n" + inChunks(half) +
                      inChunks(rest) + "0\r\n\r\n")
                .data,
            text());
  for (const char* const coding : {"GZIP", "x-gzip", "gzip, identity", "identity,gzip"}) {
    EXPECT_EQ(outcomeOf(ok + "Content-Encoding: " + coding + "\r\n\r\n" + packed).data, text()) << coding;
  }
  EXPECT_EQ(outcomeOf(ok + "Content-Encoding: Identity\r\nContent-Length: 3\r\n\r\ntea").data, "tea");
  EXPECT_EQ(outcomeOf(ok + "Content-Encoding: br\r\nContent-Length: 0\r\n\r\n").data, "") << "nothing to unpack";
  EXPECT_EQ(outcomeOf(packedReply(gzip("two ") + gzip("parts"))).data, "two parts");
  EXPECT_EQ(outcomeOf(packedReply("")).data, "");
  EXPECT_EQ(outcomeOf(chunked + "3\r\ntea\r\n0\r\nX-After: yes\r\n\r\n").data, "tea");
  EXPECT_EQ(outcomeOf(chunked + "3;signed=\"0\"\r\ntea\r\n00B \r\n, and a pot\r\n000\r\n\r\n").data, "tea, and a pot");
  EXPECT_EQ(outcomeOf(chunked + "3\ntea\n0\n\n").data, "tea") << "line feeds alone, as libcurl has it";
  EXPECT_EQ(outcomeOf(ok + "\r\nuntil the end").data, "until the end");
  EXPECT_EQ(outcomeOf("HTTP/1.1 100 Continue\r\nX-Interim: yes\r\n\r\n" + reply("tea")).data, "tea");
  EXPECT_EQ(outcomeOf(ok + "Content-Length: 3\r\nContent-Length: 3\r\n\r\ntea").data, "tea");
  const LoopbackServer server([](const std::string&, const Connection& connection) {
    connection.write(ok + "Content-Length: 99999999999\r\n\r\n");
  });
  URLRequest head(*URL::parse(server.address()));
  head.setHTTPMethod("HEAD");
  EXPECT_EQ(load(head).data, "");
  const Outcome folded = outcomeOf(ok + "X-Tea: green,\r\n  black\r\nContent-Length: 3\r\n\r\ntea");
  ASSERT_TRUE(folded.response);
  EXPECT_EQ(*folded.response->value("X-Tea"), "green, black");
}

TEST_F(URLSessionDamageTest, BoundsWhatIsUnpackedAndEveryHead) {
  EXPECT_EQ(codeAfter(packedReply(gzip(std::string(64 << 20, '0')))), URLError::dataLengthExceedsMaximum);
  const std::string field = "X-Tea: " + std::string(1000, 'x') + "\r\n";
  std::string fields;
  std::string interim;
  for (int i = 0; i < 400; ++i) {
    fields += field;
    interim += "HTTP/1.1 100 Continue\r\n" + field + "\r\n";
  }
  EXPECT_EQ(codeAfter(ok + fields + "\r\n"), URLError::dataLengthExceedsMaximum);
  EXPECT_EQ(codeAfter(interim + reply("tea")), URLError::dataLengthExceedsMaximum);
}

TEST_F(URLSessionDamageTest, EndsAReplyThatTricklesForEver) {
  URLSessionConfiguration configuration;
  configuration.timeoutIntervalForResource = 0.3;
  session_ = URLSession::withConfiguration(configuration);
  const LoopbackServer server([](const std::string&, const Connection& connection) {
    connection.write(ok + "\r\n");
    while (connection.write("x")) {  // something moves at every moment
    }
  });
  EXPECT_EQ(load(server.address()).error, URLError(URLError::timedOut));
}

}  // namespace
}  // namespace platform
