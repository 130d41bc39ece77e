#include <gmock/gmock.h>

#include "service/http/RequestLine.h"
#include "tests/service/RunningService.h"
#include "tests/service/Wire.h"

namespace service {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

class HttpTest : public testing::Test {
 protected:
  int port() const { return service_.port(); }

  /// A POST to /sdk/init whose headers are given, line ends included.
  WireResponse postWith(const std::string& headers, const std::string& body = "{}") {
    return talk(port(), "POST /sdk/init HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers + "\r\n" + body);
  }

  /// That it still serves, which is the point of all the rest.
  void TearDown() override { EXPECT_EQ(post(port(), "/sdk/init", "{}").status, 200); }

  RunningService service_;
};

std::string without(std::string text, const std::string& line) {
  const std::size_t begin = text.find(line);
  return text.erase(begin, text.find('\n', begin) + 1 - begin);
}

TEST_F(HttpTest, RefusesMalformedBodiesWithAReasonInTheReplysOwnSpelling) {
  const std::string bomb = std::string(100'000, '[') + std::string(100'000, ']');
  std::string many = "[1";
  for (int i = 0; i < 600'000; ++i) many += ",1";
  const std::vector<std::tuple<std::string, std::string, std::string>> table = {
      {"/sdk/init", "", "not JSON"},
      {"/sdk/init", "{", "not JSON"},
      {"/sdk/init", "{} {}", "not JSON"},
      {"/sdk/init", "{\"a\": \"\xff\"}", "not JSON"},
      {"/sdk/init", "{\"a\": 1e999}", "not JSON"},
      {"/sdk/init", "[]", "a JSON object is required"},
      {"/sdk/init", "null", "a JSON object is required"},
      {"/sdk/init", bomb, "nested too deeply"},
      {"/sdk/init", "{\"a\":" + bomb + "}", "nested too deeply"},
      {"/sdk/init", many + "]", "too many values"},
      {"/sdk/steps/get", "{}", "query: is missing"},
      {"/sdk/steps/get", R"({"query": null})", "query: must be a string"},
      {"/sdk/steps/get", R"({"query": ")" + std::string(9000, 'a') + "\"}", "query: must not be longer"},
      {"/sdk/steps/get", R"({"query": "a", "chat_history": {}})", "chat_history: must be a list"},
      {"/sdk/steps/get", R"({"query": "a", "chat_history": ["b"]})", "chat_history[0]: must be an object"},
      {"/sdk/event/log", R"({"eventName": "BREAKFAST", "taskId": ""})", "eventName: is not the name of an event"},
      {"/sdk/event/log", R"({"eventName": "task_success", "taskId": ""})", "eventName: is not the name of an event"},
      {"/sdk/event/log", R"({"eventName": "TASK_SUCCESS"})", "taskId: is missing"},
      {"/sdk/event/log", R"({"eventName": "TASK_SUCCESS", "taskId": 4})", "taskId: must be a string"},
      {"/sdk/messages/upload", "{}", "chatHistory: is missing"},
      {"/sdk/messages/upload", R"({"chatHistory": [{"message": "a", "isRemote": 1, "timestamp": 1}]})",
       "chatHistory[0].isRemote: must be true or false"},
      {"/sdk/messages/upload", R"({"chatHistory": [{"message": "a", "isRemote": true, "timestamp": 1.5}]})",
       "chatHistory[0].timestamp: must be a whole number"},
      {"/sdk/messages/upload",
       R"({"chatHistory": [{"message": "a", "isRemote": true, "timestamp": 9223372036854775808}]})",
       "chatHistory[0].timestamp: must be a whole number"},
  };
  for (const auto& [path, body, message] : table) {
    const WireResponse response = post(port(), path, body);
    EXPECT_EQ(response.status, 400) << message;
    const Json reply = response.json();
    EXPECT_EQ(reply["statusCode"], 400) << message;
    EXPECT_EQ(reply.contains("status_code"), path == "/sdk/steps/get");
    EXPECT_THAT(reply["message"].get<std::string>(), HasSubstr(message));
  }
}

TEST_F(HttpTest, JudgesARequestByItsHeadBeforeReadingTheBody) {
  const std::string all = identityHeaders();
  const std::string json = "Content-Type: application/json\r\n";
  const std::string length = "Content-Length: 2\r\n";
  const std::vector<std::tuple<int, std::string, std::string>> table = {
      {200, "all is well, in another case",
       "SECRET-KEY: second-key\r\n" + without(all, "secret-key") + "content-type: Application/JSON; charset=utf-8\r\n" +
           length},
      {400, "no user", without(all, "user-id") + json + length},
      {400, "no platform", without(all, "platform") + json + length},
      {400, "no version", without(all, "app-version") + json + length},
      {400, "two users", all + "user-id: bob\r\n" + json + length},
      {400, "a user that is not text", without(all, "user-id") + "user-id: \xff\xfe\r\n" + json + length},
      {400, "a long user", without(all, "user-id") + "user-id: " + std::string(300, 'u') + "\r\n" + json + length},
      {401, "an empty key", without(all, "secret-key") + "secret-key:\r\n" + json + length},
      {401, "another key", without(all, "secret-key") + "secret-key: bakery-key2\r\n" + json + length},
      {401, "a coded key", without(all, "secret-key") + "secret-key: bakery%2Dkey\r\n" + json + length},
      {415, "another type", all + "Content-Type: text/plain\r\n" + length},
      {415, "no type", all + length},
      {415, "packed", all + json + length + "Content-Encoding: gzip\r\n"},
      {411, "no length", all + json},
      {400, "a length that is no number", all + json + "Content-Length: two\r\n"},
      {400, "a negative length", all + json + "Content-Length: -2\r\n"},
      {400, "two lengths", all + json + length + "Content-Length: 3\r\n"},
      {400, "a length and chunks", all + json + length + "Transfer-Encoding: chunked\r\n"},
      {413, "a body of 9 MiB", all + json + "Content-Length: 9437184\r\n"},
      {413, "a body of too many digits", all + json + "Content-Length: 99999999999999999999999\r\n"},
      {400, "a name with a blank", all + json + length + "bad name: 1\r\n"},
      {400, "a folded line", all + json + length + " folded: 1\r\n"},
  };
  for (const auto& [status, what, headers] : table) {
    const WireResponse response = postWith(headers);
    EXPECT_EQ(response.status, status) << what;
    EXPECT_EQ(response.json()["statusCode"], status) << what;
  }
}

TEST_F(HttpTest, KnowsItsPathsAndMethods) {
  const std::vector<std::tuple<int, std::string, std::string>> table = {
      {404, "GET", "/"},
      {404, "GET", "/sdk"},
      {404, "POST", "/sdk/init/"},
      {404, "POST", "/sdk/init%00"},
      {404, "POST", "/SDK/INIT"},
      {405, "GET", "/sdk/init"},
      {405, "PUT", "/sdk/steps/get"},
      {405, "DELETE", "/admin/events"},
      {405, "POST", "/assets/button.png"},
      {200, "HEAD", "/assets/button.png"},
      {400, "BREW", "/sdk/init"},
      {400, "GET", "/admin/events?limit=-1"},
      {400, "GET", "/admin/events?user=x"},
      {400, "GET", "/admin/events?after"},
  };
  for (const auto& [status, method, path] : table)
    EXPECT_EQ(talk(port(), method + " " + path + " HTTP/1.1\r\nHost: localhost\r\nContent-Length: 0\r\n\r\n").status,
              status)
        << method << " " << path;
  EXPECT_EQ(talk(port(), "PUT /sdk/init HTTP/1.1\r\nHost: a\r\n\r\n").headers.value("Allow"), "POST");
}

TEST_F(HttpTest, GivesOutNothingBesideItsAssets) {
  for (const std::string name :
       {"..%2fconfig.json", "../config.json", "%2e%2e/config.json", "..", ".", "", ".hidden", "a/b.png", "button.png/",
        "button.png%00.txt", "/etc/passwd", "..%5cconfig.json", "none.png"})
    EXPECT_EQ(get(port(), "/assets/" + name).status, 404) << name;
}

TEST_F(HttpTest, ShowsWhatItKeepsToThisMachineOnly) {
  EXPECT_EQ(talk(port(), "GET /admin/events HTTP/1.1\r\nHost: [::1]:80\r\n\r\n").status, 200);
  // A page in a browser can bring its own name to our address.
  for (const std::string host : {"evil.example", "127.evil.example", "localhost.evil.example", "[::1].evil.example"})
    EXPECT_EQ(talk(port(), "GET /admin/events HTTP/1.1\r\nHost: " + host + "\r\n\r\n").status, 403) << host;
  EXPECT_EQ(talk(port(), "GET /admin/events HTTP/1.1\r\n\r\n").status, 403);
}

TEST_F(HttpTest, StopsReadingABodyInChunksThatGrowsTooLarge) {
  Wire wire(port());
  wire.send("POST /sdk/init HTTP/1.1\r\nHost: a\r\n" + identityHeaders() +
            "Content-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n");
  const std::string chunk = "100000\r\n" + std::string(0x100000, ' ') + "\r\n";
  for (int i = 0; i < 9; ++i) wire.send(chunk);
  wire.finishSending();
  EXPECT_EQ(wire.receive().status, 413);
}

TEST_F(HttpTest, AsksForABodyOnlyWhenItWillTakeIt) {
  const std::string head = "POST /sdk/init HTTP/1.1\r\nHost: a\r\nExpect: 100-continue\r\n" + identityHeaders() +
                           "Content-Type: application/json\r\n";
  EXPECT_EQ(talk(port(), head + "Content-Length: 2\r\n\r\n{}").status, 200);
  Wire refused(port());
  refused.send(head + "Content-Length: 99000000\r\n\r\n");
  refused.finishSending();
  EXPECT_EQ(refused.receive().status, 413);
}

TEST_F(HttpTest, TakesABodyInChunksAndOneOfTheFullSize) {
  const std::string head = "POST /sdk/init HTTP/1.1\r\nHost: a\r\n" + identityHeaders() +
                           "Content-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n";
  EXPECT_EQ(talk(port(), head + "1\r\n{\r\n1\r\n}\r\n0\r\n\r\n").status, 200);
  EXPECT_EQ(post(port(), "/sdk/init", "{" + std::string((8 << 20) - 2, ' ') + "}").status, 200);
}

TEST_F(HttpTest, LetsNothingOfARequestIntoTheHeadOfTheResponseOrTheLog) {
  testing::internal::CaptureStderr();
  const WireResponse response = get(port(), "/x%0d%0aSet-Cookie:%20a=b%0aPOST%20/fake%20200?secret-key=bakery-key");
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_EQ(response.status, 404);
  EXPECT_EQ(response.headers.value("Set-Cookie"), std::nullopt);
  EXPECT_THAT(log, HasSubstr("GET /x\\x0d\\x0aSet-Cookie: a=b\\x0aPOST /fake 200 404 "));
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1);
  EXPECT_THAT(log, Not(HasSubstr("bakery-key")));
  EXPECT_EQ(printable("a\x1b[31m\\\xc3\xa9", 80), "a\\x1b[31m\\x5c\\xc3\\xa9");
}

TEST_F(HttpTest, SurvivesWhatIsNotHttp) {
  for (const std::string& text :
       {std::string("\r\n\r\n"), std::string("GET\r\n\r\n"), std::string("GET / HTTP/9\r\n\r\n"),
        std::string(200, '\0') + "\r\n\r\n", std::string("\x16\x03\x01\x02\x00\x01", 6)}) {
    Wire wire(port());
    wire.send(text);
    wire.finishSending();
    const int status = wire.receive().status;
    EXPECT_TRUE(status == 0 || status == 400) << text << " " << status;
  }
  EXPECT_EQ(talk(port(), "GET /" + std::string(9000, 'a') + " HTTP/1.1\r\n\r\n").status, 414);
  EXPECT_EQ(talk(port(), "GET / HTTP/1.1\r\nBig: " + std::string(20'000, 'a') + "\r\n\r\n").status, 431);
  std::string many = "GET / HTTP/1.1\r\n";
  for (int i = 0; i < 3000; ++i) many += "H" + std::to_string(i) + ": 1\r\n";
  EXPECT_EQ(talk(port(), many + "\r\n").status, 431);
  EXPECT_EQ(talk(port(), std::string(40'000, 'a')).status, 431);
}

TEST_F(HttpTest, RefusesABodyThatEndsTooSoon) {
  Wire wire(port());
  wire.send(postRequest("/sdk/init", "{}"));
  EXPECT_EQ(wire.receive().status, 200);
  Wire half(port());
  half.send("POST /sdk/init HTTP/1.1\r\nHost: a\r\n" + identityHeaders() +
            "Content-Type: application/json\r\nContent-Length: 50\r\n\r\n{}");
  half.finishSending();
  EXPECT_EQ(half.receive().status, 400);
}

TEST(SlowClients, AreTurnedAwayWhenTheirTimeIsUpHoweverBusyTheyLook) {
  ServerLimits limits;
  limits.headTime = 40ms;
  limits.bodyTime = 40ms;
  limits.lingerTime = 40ms;
  limits.workers = 2;
  RunningService service(limits);
  Wire inHead(service.port());
  inHead.send("POST /sdk/init HTTP/1.1\r\nHost:");
  Wire inBody(service.port());
  inBody.send("POST /sdk/init HTTP/1.1\r\nHost: a\r\n" + identityHeaders() +
              "Content-Type: application/json\r\nContent-Length: 50\r\n\r\n{");
  EXPECT_EQ(inHead.receive().status, 408);
  EXPECT_EQ(inBody.receive().status, 408);
  EXPECT_EQ(post(service.port(), "/sdk/init", "{}").status, 200);
}

TEST(SlowClients, DoNotKeepTheServiceFromStopping) {
  ServerLimits limits;
  limits.headTime = 3600s;
  auto service = std::make_unique<RunningService>(limits);
  Wire idle(service->port());
  idle.send("POST /sdk/init HTTP/1.1\r\n");
  EXPECT_EQ(get(service->port(), "/").status, 404);
  service.reset();
  idle.receive();
}

TEST(BusyService, TellsThoseForWhomThereIsNoPlaceLeft) {
  ServerLimits limits;
  limits.workers = 1;
  limits.waitingConnections = 1;
  limits.headTime = 100ms;
  RunningService service(limits);
  std::vector<std::unique_ptr<Wire>> clients;
  for (int i = 0; i < 8; ++i) {
    clients.push_back(std::make_unique<Wire>(service.port()));
    clients.back()->send("POST");
  }
  std::map<int, int> statuses;
  for (const auto& client : clients) ++statuses[client->receive().status];
  EXPECT_GE(statuses[503], 1);
  EXPECT_GE(statuses[408], 1);
  EXPECT_EQ(statuses[503] + statuses[408], 8);
}

}  // namespace
}  // namespace service
