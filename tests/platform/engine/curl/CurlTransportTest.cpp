#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/engine/curl/CurlTransport.h"
#include "tests/platform/engine/curl/TlsServer.h"
#include "tests/platform/foundation/LoopbackServer.h"

namespace platform {
namespace {

using testing::AnyOf;

const std::string tea = "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\ntea";

HttpTransport::Request get(const std::string& address) {
  HttpTransport::Request request;
  request.url = address;
  request.method = "GET";
  request.maximumReplyBytes = 1000;
  return request;
}

/// A transport that trusts one authority, and servers with certificates of all kinds.
class CurlTransportTest : public testing::Test {
 protected:
  CurlTransportTest() { std::ofstream(path_) << root_.pem(); }
  ~CurlTransportTest() override { std::filesystem::remove(path_); }

  HttpTransport::Reply load(const std::string& address) { return load(address, transport_); }
  static HttpTransport::Reply load(const std::string& address, HttpTransport& transport) {
    HttpTransport::Request request = get(address);
    request.method = "POST";
    request.headers.set("secret-key", "k");
    request.body = "{}";
    std::promise<HttpTransport::Reply> promise;
    transport.send(std::move(request), [&](HttpTransport::Reply reply) { promise.set_value(std::move(reply)); });
    return promise.get_future().get();
  }

  static Certificate::Content authority(const std::string& name) {
    return {.commonName = name, .constraints = "critical,CA:TRUE", .usage = ""};
  }
  static Certificate::Content forLocalhost() {
    return {.commonName = "server", .alternativeNames = "DNS:localhost,IP:127.0.0.1"};
  }

  const Certificate root_{authority("root")};
  const std::filesystem::path path_ =
      std::filesystem::temp_directory_path() / ("authorities " + std::to_string(::getpid()));
  CurlTransport transport_{path_.string()};
};

TEST_F(CurlTransportTest, AcceptsACertificateForItsAlternativeNames) {
  const Certificate middle(authority("middle"), &root_);
  const Certificate direct(forLocalhost(), &root_);
  const Certificate indirect(forLocalhost(), &middle);
  const TlsServer near(direct, {}, tea);
  const TlsServer far(indirect, {middle}, tea);
  for (const char* const host : {"localhost", "127.0.0.1", "LOCALHOST"}) {
    EXPECT_EQ(load(near.address(host)).body, "tea") << host;
    EXPECT_EQ(load(far.address(host)).body, "tea") << host;
  }
}

TEST_F(CurlTransportTest, SendsNothingToAServerWithAWrongCertificate) {
  const Certificate other(authority("other"));
  const Certificate middle(authority("middle"), &root_);
  const Certificate leaf(forLocalhost(), &root_);
  Certificate::Content narrowAuthority = authority("narrow");
  narrowAuthority.nameConstraints = "critical,permitted;DNS:tea.example";
  const Certificate narrow(narrowAuthority, &root_);
  Certificate::Content lastAuthority = authority("last");
  lastAuthority.constraints = "critical,CA:TRUE,pathlen:0";
  const Certificate last(lastAuthority, &root_);
  const Certificate beyond(authority("beyond"), &last);

  struct Wrong {
    const char* what;
    Certificate certificate;
    std::vector<Certificate> between = {};
    const char* host = "localhost";
  };
  const auto with = [&](auto change, const Certificate* issuer) {
    Certificate::Content content = forLocalhost();
    change(content);
    return Certificate(content, issuer);
  };
  const auto named = [&](const std::string& commonName, const std::string& alternativeNames) {
    return Certificate({.commonName = commonName, .alternativeNames = alternativeNames}, &root_);
  };
  const std::vector<Wrong> wrongs = {
      {"signed by itself", Certificate(forLocalhost())},
      {"of an authority that nobody trusts", Certificate(forLocalhost(), &other), {other}},
      {"of an authority between that is not shown", Certificate(forLocalhost(), &middle)},
      {"of somebody who is no authority", Certificate(forLocalhost(), &leaf), {leaf}},
      {"below an authority that may have none below it", Certificate(forLocalhost(), &beyond), {beyond, last}},
      {"beyond the names of its authority", Certificate(forLocalhost(), &narrow), {narrow}},
      {"expired", with([](auto& c) { c.validTo = -60; }, &root_)},
      {"not valid yet", with([](auto& c) { c.validFrom = 600; }, &root_)},
      {"with a damaged signature", with([](auto& c) { c.isDamaged = true; }, &root_)},
      {"signed over a weak hash", with([](auto& c) { c.isHashWeak = true; }, &middle), {middle}},
      {"with a short key", with([](auto& c) { c.isKeyShort = true; }, &root_)},
      {"for clients only", with([](auto& c) { c.usage = "clientAuth"; }, &root_)},
      {"for another name", named("tea.example", "DNS:tea.example")},
      {"for another name, its common name right", named("localhost", "DNS:tea.example")},
      {"with a common name alone", named("localhost", "")},
      {"with a common name and an address for mail", named("localhost", "email:tea@localhost")},
      {"with a part of the name left open", named("server", "DNS:local*")},
      {"for another address, its common name right", named("127.0.0.1", "IP:127.0.0.2"), {}, "127.0.0.1"},
      {"with an address written as a name", named("server", "DNS:127.0.0.1"), {}, "127.0.0.1"},
      {"with an address as the common name alone", named("127.0.0.1", ""), {}, "127.0.0.1"},
  };
  for (const Wrong& wrong : wrongs) {
    SCOPED_TRACE(wrong.what);
    const TlsServer server(wrong.certificate, wrong.between, tea);
    const HttpTransport::Reply reply = load(server.address(wrong.host));
    ASSERT_TRUE(reply.error);
    EXPECT_THAT(reply.error->code(), AnyOf(URLError::serverCertificateUntrusted, URLError::secureConnectionFailed));
    EXPECT_EQ(server.requests(), 0);
    EXPECT_EQ(server.connections(), 1);
  }
}

TEST_F(CurlTransportTest, TrustsNoAuthorityOfATestUnlessToldTo) {
  const Certificate certificate(forLocalhost(), &root_);
  const TlsServer server(certificate, {root_}, tea);
  EXPECT_TRUE(load(server.address("localhost"), HttpTransport::shared()).error);
  EXPECT_EQ(server.requests(), 0);
  EXPECT_EQ(load(server.address("localhost")).body, "tea");
}

TEST_F(CurlTransportTest, TakesNoReplyForWholeThatAnybodyCouldHaveCut) {
  using Ending = TlsServer::Ending;
  const Certificate certificate(forLocalhost(), &root_);
  const std::string untilTheEnd = "HTTP/1.1 200 OK\r\n\r\ntea";
  const std::string inPieces = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\ntea\r\n0\r\n\r\n";
  const TlsServer cut(certificate, {}, untilTheEnd, Ending::cut);
  EXPECT_EQ(load(cut.address("localhost")).error, URLError(URLError::networkConnectionLost));
  EXPECT_EQ(cut.requests(), 1);
  EXPECT_EQ(cut.connections(), 1);
  const TlsServer announced(certificate, {}, untilTheEnd, Ending::announced);
  EXPECT_EQ(load(announced.address("localhost")).body, "tea");
  for (const std::string& withItsLength : {tea, inPieces}) {
    const TlsServer server(certificate, {}, withItsLength, Ending::cut);
    EXPECT_EQ(load(server.address("localhost")).body, "tea") << "it says itself where it ends";
  }
}

TEST_F(CurlTransportTest, SendsNothingThroughAProxyOverTls) {
  const Certificate certificate(forLocalhost(), &root_);
  const TlsServer proxy(certificate, {}, tea);
  ::setenv("https_proxy", proxy.address("localhost").c_str(), 1);
  EXPECT_EQ(load("https://tea.example/").error, URLError(URLError::serverCertificateUntrusted));
  ::unsetenv("https_proxy");
  EXPECT_EQ(proxy.connections(), 1);
  EXPECT_EQ(proxy.requests(), 0) << "not even which server is meant";
}

TEST(CurlTransport, RefusesFilesThatCannotCarryABody) {
  const LoopbackServer server([](const std::string&, const LoopbackServer::Connection& c) { c.write(tea); });
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / ("files " + std::to_string(::getpid()));
  std::filesystem::create_directory(folder);
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  CurlTransport transport;
  const auto errorOf = [&](const std::string& bodyFile, const std::string& replyFile) {
    HttpTransport::Request request = get(server.address());
    request.bodyFile = bodyFile;
    request.replyFile = replyFile;
    std::promise<HttpTransport::Reply> promise;
    transport.send(request, [&](HttpTransport::Reply reply) { promise.set_value(std::move(reply)); });
    return promise.get_future().get().error;
  };
  EXPECT_EQ(errorOf(folder / "nothing", ""), URLError(URLError::fileDoesNotExist));
  EXPECT_EQ(errorOf(pipe, ""), URLError(URLError::cannotOpenFile));
  EXPECT_EQ(errorOf(folder, ""), URLError(URLError::cannotOpenFile));
  EXPECT_EQ(errorOf("", folder), URLError(URLError::cannotWriteToFile));
  EXPECT_EQ(server.connections(), 0) << "nothing was sent";
  EXPECT_EQ(errorOf("", "/dev/full"), URLError(URLError::cannotWriteToFile)) << "a reply that the disk cannot take";
  std::filesystem::remove_all(folder);
}

TEST(CurlTransport, EndsWhatIsUnderWayWhenItIsStopped) {
  std::promise<void> asked;
  const LoopbackServer server([&](const std::string&, const LoopbackServer::Connection& connection) {
    asked.set_value();
    connection.waitForClient();
  });
  std::promise<HttpTransport::Reply> promise;
  const auto into = [&](HttpTransport::Reply reply) { promise.set_value(std::move(reply)); };
  CurlTransport transport;
  transport.send(get(server.address()), into);
  asked.get_future().wait();
  transport.stop();
  EXPECT_EQ(promise.get_future().get().error, URLError(URLError::networkConnectionLost));

  const auto held = std::make_shared<int>(1);
  transport.send(get(server.address()), [held](HttpTransport::Reply) { *held = 2; });
  EXPECT_EQ(*held, 1);
  EXPECT_EQ(held.use_count(), 1) << "let go, uncalled";
  EXPECT_EQ(server.requests(), 1);
}

}  // namespace
}  // namespace platform
