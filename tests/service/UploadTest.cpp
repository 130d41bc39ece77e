#include <gmock/gmock.h>

#include "service/base/RequestError.h"
#include "service/teaching/MediaFolder.h"
#include "tests/service/RunningService.h"
#include "tests/service/Wire.h"

namespace service {
namespace {

using testing::HasSubstr;

std::vector<std::string> filesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  return names;
}

class UploadTest : public testing::Test {
 protected:
  int port() const { return service_.port(); }
  std::filesystem::path media() const { return data_.path() / "media"; }

  struct Address {
    std::string path;
    std::string key;
  };
  Address open(const std::string& extension = "mp4") {
    const Json body = {{"viewName", "taskRecording"}, {"extension", extension}};
    const Json reply = post(port(), "/sdk/media/upload", body.dump()).json();
    EXPECT_EQ(reply["statusCode"], 200) << reply;
    const std::string url = reply["data"]["url"];
    EXPECT_TRUE(url.starts_with(service_.address() + "/"));
    return {url.substr(service_.address().size()), reply["data"]["key"]};
  }

  static std::string head(const std::string& path, const std::string& fields) {
    return "PUT " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + fields + "\r\n";
  }
  WireResponse put(const std::string& path, const std::string& body) {
    return talk(port(), head(path, "Content-Length: " + std::to_string(body.size()) + "\r\n") + body);
  }

  TemporaryFolder data_;
  RunningService service_{{.bodyBytes = 4096, .bodyTime = std::chrono::seconds(5)}, data_.path()};
};

TEST_F(UploadTest, KeepsTheWholeFileUnderTheKeyAndTakesNoSecond) {
  const Address address = open();
  EXPECT_THAT(address.path, testing::Not(HasSubstr(address.key.substr(0, 32)))) << "a key must not tell an address";
  // Longer than what is gathered in memory of any other request.
  std::string film(1'000'000, 'f');
  film[0] = '\0';
  const WireResponse response = put(address.path, film);
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.json()["statusCode"], 200);
  EXPECT_THAT(filesIn(media()), testing::ElementsAre(address.key));
  EXPECT_EQ(readFile(media() / address.key), film);

  EXPECT_EQ(put(address.path, "other").status, 404);
  EXPECT_EQ(readFile(media() / address.key), film);
  const Address chunked = open("png");
  EXPECT_TRUE(chunked.key.ends_with(".png"));
  const std::string body = "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n";
  EXPECT_EQ(talk(port(), head(chunked.path, "Transfer-Encoding: chunked\r\n") + body).status, 200);
  EXPECT_EQ(readFile(media() / chunked.key), "abcde");
  const Address expecting = open();
  EXPECT_EQ(talk(port(), head(expecting.path, "Expect: 100-continue\r\nContent-Length: 2\r\n") + "hi").status, 200);
  EXPECT_EQ(readFile(media() / expecting.key), "hi");
}

TEST_F(UploadTest, LeavesNothingOfAnUploadThatIsCut) {
  const Address address = open();
  {
    Wire wire(port());
    wire.send(head(address.path, "Content-Length: 100000\r\n") + std::string(70'000, 'x'));
    wire.finishSending();
    EXPECT_EQ(wire.receive().status, 400);
  }
  EXPECT_THAT(filesIn(media()), testing::IsEmpty());
  EXPECT_EQ(put(address.path, "again").status, 404);
}

TEST_F(UploadTest, TakesOnlyAddressesAndNamesOfItsOwn) {
  const std::string path = open().path;
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  for (const std::string& name : {std::string(), std::string("../lumicor.sqlite"), std::string("..%2Flumicor.sqlite"),
                                  std::string("%00"), std::string(32, '0'), std::string("a/b"), open().key})
    EXPECT_EQ(put(folder + name, "x").status, 404) << name;
  for (const auto* extension : {"", "../x", "mp4/..", "m p", "toolongname", "m\u00e9", ".mp4"}) {
    const Json body = {{"viewName", "v"}, {"extension", extension}};
    EXPECT_EQ(post(port(), "/sdk/media/upload", body.dump()).status, 400) << extension;
  }
  EXPECT_EQ(post(port(), "/sdk/media/upload", R"({"viewName": "v"})").status, 400);
  const std::vector<std::pair<int, std::string>> heads = {
      {411, ""},
      {400, "Content-Length: -1\r\n"},
      {400, "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n"},
      {413, "Content-Length: 9999999999999\r\n"},
      {415, "Content-Length: 1\r\nContent-Encoding: gzip\r\n"},
      {415, "Content-Length: 1\r\nContent-Type: multipart/form-data; boundary=x\r\n"}};
  for (const auto& [status, fields] : heads) EXPECT_EQ(talk(port(), head(path, fields) + "x").status, status) << fields;
  EXPECT_EQ(post(port(), path, "{}").status, 405);
  EXPECT_EQ(get(port(), path).status, 405);
  EXPECT_EQ(put("/sdk/init", "x").status, 405);
  EXPECT_THAT(filesIn(media()), testing::IsEmpty());
  EXPECT_EQ(put(path, "x").status, 200) << "what was refused by its head has not used the address up";
}

/// The same without a wire, where a moment and a small limit can be chosen.
class MediaFolderTest : public testing::Test {
 protected:
  int statusOf(const std::function<void()>& work) {
    try {
      work();
    } catch (const RequestError& error) {
      return error.status();
    }
    return 200;
  }
  std::string put(const UploadAddress& address, const std::string& bytes, std::int64_t now = 10) {
    const auto upload = folder_.receive(address.token, std::nullopt, now);
    if (!upload->take(bytes)) return std::to_string(upload->refusal().status);
    return std::to_string(upload->finish().status);
  }

  TemporaryFolder data_;
  MediaFolder folder_{data_.path(), {.fileBytes = 10, .keyBytes = 25, .addressTime = 100, .openAddresses = 3}};
};

TEST_F(MediaFolderTest, ForgetsAnAddressAfterItsTimeAndAfterItsUse) {
  const UploadAddress early = folder_.open("owner", "ann", "v", "mp4", 0);
  const UploadAddress late = folder_.open("owner", "ann", "v", "mp4", 0);
  EXPECT_EQ(put(early, "abc", 99), "200");
  EXPECT_EQ(statusOf([&] { put(early, "abc", 99); }), 404);
  EXPECT_EQ(statusOf([&] { put(late, "abc", 100); }), 404);
  EXPECT_EQ(statusOf([&] { folder_.receive("", std::nullopt, 1); }), 404);
}

TEST_F(MediaFolderTest, BoundsAFileAKeyAndTheOpenAddresses) {
  const auto open = [this](const char* owner = "owner") { return folder_.open(owner, "ann", "v", "mp4", 0); };
  EXPECT_EQ(put(open(), std::string(11, 'x')), "413");
  EXPECT_EQ(put(open(), std::string(10, 'x')), "200");
  // Reserved while it is on its way, so that two files that come together do not pass the limit together.
  const UploadAddress first = open();
  const UploadAddress second = open();
  const auto under = folder_.receive(first.token, 10, 1);
  EXPECT_EQ(statusOf([&] { folder_.receive(second.token, 6, 1); }), 413);
  EXPECT_EQ(put(second, std::string(6, 'x')), "413");
  EXPECT_EQ(put(open(), std::string(5, 'x')), "200");
  EXPECT_EQ(statusOf([&] { put(open(), "x"); }), 413);
  EXPECT_EQ(put(open("other"), "x"), "200") << "another key has its own room";
  open();
  open();
  EXPECT_EQ(statusOf([&] { open(); }), 429);
}

TEST_F(MediaFolderTest, RemovesFilesForTheirOwnerOnly) {
  const UploadAddress address = folder_.open("owner", "ann", "v", "mp4", 0);
  EXPECT_EQ(put(address, "abc"), "200");
  folder_.remove("other", "ann", {address.key, "../lumicor.sqlite"});
  folder_.remove("owner", "bob", {address.key});
  EXPECT_TRUE(std::filesystem::exists(data_.path() / "media" / address.key));
  folder_.remove("owner", "ann", {address.key, "../lumicor.sqlite", ""});
  EXPECT_FALSE(std::filesystem::exists(data_.path() / "media" / address.key));
  EXPECT_TRUE(std::filesystem::exists(data_.path() / "lumicor.sqlite"));
}

}  // namespace
}  // namespace service
