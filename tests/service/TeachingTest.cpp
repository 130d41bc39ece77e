#include <gmock/gmock.h>

#include "service/base/RequestError.h"
#include "service/teaching/Teaching.h"
#include "tests/service/Flow.h"
#include "tests/service/RunningService.h"
#include "tests/service/Wire.h"

namespace service {
namespace {

using testing::HasSubstr;

class TeachingTest : public testing::Test {
 protected:
  int port() const { return service_->port(); }
  void restart() {
    service_.reset();
    service_ = std::make_unique<RunningService>(ServerLimits{}, data_.path());
  }

  WireResponse admin(const std::string& path, const Json& body) {
    const std::string text = body.dump();
    return talk(port(), "POST /admin/task/" + path +
                            " HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\n"
                            "Content-Length: " +
                            std::to_string(text.size()) + "\r\n\r\n" + text);
  }
  Json ask(const std::string& query) {
    return post(port(), "/sdk/steps/get", Json{{"query", query}}.dump()).json()["data"];
  }
  Json list() { return get(port(), "/admin/tasks").json()["data"]["tasks"]; }

  TemporaryFolder data_;
  std::unique_ptr<RunningService> service_ = std::make_unique<RunningService>(ServerLimits{}, data_.path());
};

TEST_F(TeachingTest, AnswersARequestInOtherWordsAndValuesOnceTheTaskHasAName) {
  const std::string id = teach(port(), orderFlow());
  EXPECT_EQ(ask("fetch 2 assam for York")["taskId"], "");
  EXPECT_EQ(list()[0]["state"], "unnamed");
  EXPECT_EQ(list()[0]["actions"], 9);

  EXPECT_EQ(admin("name", {{"id", id}, {"title", "Fetch tea"}, {"samples", {"fetch 4 sencha for Leeds"}}}).status, 200);
  const Json reply = ask("please fetch two assam for Kingston upon Hull");
  EXPECT_EQ(reply["taskId"], id);
  EXPECT_EQ(reply["isAction"], 1);
  const Json steps = Json::parse(reply["answer"].get<std::string>());
  ASSERT_EQ(steps.size(), 7u);
  const Json scroll = {{"viewId", "ShopScreen-teaList"}, {"offsets", {{"x", 0}, {"y", 240}}}};
  EXPECT_EQ(steps[1], Json({{"elementId", "tea-assam"},
                            {"index", 1},
                            {"value", ""},
                            {"viewName", "ShopScreen"},
                            {"actionType", "TYPE_DEFAULT"},
                            {"scrollDetails", {scroll}}}));
  EXPECT_EQ(steps[2]["elementId"], "plus");
  EXPECT_EQ(steps[3]["elementId"], "addToCart");
  EXPECT_EQ(steps[4]["value"], "Kingston upon Hull");
  EXPECT_EQ(ask("fetch sencha")["answer"], "Please tell me the city.");
  // The tasks of the file are there as before.
  EXPECT_EQ(ask("order rye to Mill Lane")["taskId"], "order-bread");

  EXPECT_EQ(admin("slot", {{"id", id}, {"slot", "tea"}, {"choices", {"Matcha=tea-matcha"}}}).status, 200);
  EXPECT_THAT(ask("fetch matcha for York")["answer"].get<std::string>(), HasSubstr("tea-matcha"));
  restart();
  EXPECT_THAT(ask("fetch matcha for York")["answer"].get<std::string>(), HasSubstr("tea-matcha"));
  EXPECT_EQ(list()[0]["state"], "answered");
  EXPECT_EQ(get(port(), "/admin/tasks/" + id).json()["data"]["samples"][0], "fetch {quantity} {tea} for {city}");
  EXPECT_EQ(admin("remove", {{"id", id}}).status, 200);
  EXPECT_EQ(ask("fetch matcha for York")["taskId"], "");
  EXPECT_EQ(list().size(), 0u);
}

TEST_F(TeachingTest, KeepsSnapshotsInOrderForTheirKeyAndUserOnly) {
  const std::string id = registerTask(port());
  const std::vector<Json> flow = orderFlow().snapshots();
  const int last = static_cast<int>(flow.size()) - 1;
  EXPECT_EQ(registerSnapshot(port(), id, 1, flow[1]), 409);
  EXPECT_EQ(registerSnapshot(port(), id, -1, flow[0]), 409);
  EXPECT_EQ(registerSnapshot(port(), id, 0, flow[0]), 200);
  EXPECT_EQ(registerSnapshot(port(), id, 0, flow[0]), 200) << "its reply may have been lost";
  EXPECT_EQ(registerSnapshot(port(), id, 0, flow[1]), 409);
  EXPECT_EQ(registerSnapshot(port(), id, 1, flow[1], "bob"), 404);
  EXPECT_EQ(registerSnapshot(port(), "taught-0", 0, flow[0]), 404);
  const Json body = {
      {"snapshotName", ""}, {"snapshotDescription", ""}, {"taskId", id}, {"index", 1}, {"snapshot", flow[1]}};
  std::string otherKey = postRequest("/sdk/snapshot/register", body.dump());
  otherKey.replace(otherKey.find("bakery-key"), 10, "second-key");
  EXPECT_EQ(talk(port(), otherKey).status, 404);
  EXPECT_EQ(list()[0]["actions"], 1);
  EXPECT_EQ(list()[0]["state"], "incomplete");
  EXPECT_EQ(admin("name", {{"id", id}, {"title", "Order"}}).status, 400);

  restart();
  for (int i = 1; i <= last; ++i) EXPECT_EQ(registerSnapshot(port(), id, i, flow[static_cast<std::size_t>(i)]), 200);
  EXPECT_EQ(registerSnapshot(port(), id, last, flow.back()), 200);
  EXPECT_EQ(registerSnapshot(port(), id, last + 1, flow[0]), 409) << "after the closing one";
  EXPECT_EQ(list()[0]["state"], "unnamed");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(data_.path())) {
    if (!entry.is_regular_file()) continue;
    EXPECT_THAT(readFile(entry.path()), testing::Not(HasSubstr("bakery-key"))) << entry.path();
  }
}

TEST_F(TeachingTest, RefusesMalformedSnapshotsAndGoesOn) {
  const std::string id = registerTask(port());
  const Json good = orderFlow().snapshots()[1];
  std::vector<std::pair<std::string, Json>> table = {{"no object", 7}, {"an empty one", Json::object()}};
  for (const auto& [key, value] : good.items()) {
    Json without = good;
    without.erase(key);
    table.emplace_back("without " + key, without);
    Json null = good;
    null[key] = nullptr;
    table.emplace_back("null " + key, null);
  }
  const auto changed = [&](const char* pointer, const Json& value) {
    Json snapshot = good;
    snapshot[Json::json_pointer(pointer)] = value;
    table.emplace_back(pointer, snapshot);
  };
  changed("/actionElement/type", "TYPE_BUTTON");
  changed("/elements/0/inputType", "TYPE_TEXT");
  changed("/elements/0/x", 0.5);
  changed("/elements/0/value", 3);
  changed("/inputs", {{"a", 1}});
  changed("/scrollDetails", Json::array());
  changed("/scrollDetails/teaList", 4);
  changed("/index", "0");
  for (const auto& [what, snapshot] : table) EXPECT_EQ(registerSnapshot(port(), id, 0, snapshot), 400) << what;
  // Strange, but sound: no number of it may do harm.
  Json huge = good;
  huge["elements"][0]["x"] = std::numeric_limits<std::int64_t>::max();
  huge["elements"][0]["width"] = std::numeric_limits<std::int64_t>::max();
  huge["actionElement"]["y"] = std::numeric_limits<std::int64_t>::min();
  for (const auto* name :
       {"pickerView-", "pickerView-9-", "LumicorCollectionView-", "LumicorCollectionView--", "", "Action on "}) {
    huge["actionElement"]["actionName"] = name;
    EXPECT_EQ(registerSnapshot(port(), id, list()[0]["actions"].get<int>(), huge), 200) << name;
  }
  Json closing = good;
  closing["actionElement"]["actionName"] = "Recording Stopped";
  EXPECT_EQ(registerSnapshot(port(), id, 6, closing), 200);
  EXPECT_EQ(list()[0]["state"], "unnamed");
  EXPECT_EQ(post(port(), "/sdk/task/register", R"({"taskName": "x"})").status, 400);
}

TEST_F(TeachingTest, LearnsFromTwoThousandActions) {
  Flow flow;
  flow.on("LongScreen");
  for (int i = 0; i < 1000; ++i) flow.press("next").type("field" + std::to_string(i), "word " + std::to_string(i));
  const std::string id = teach(port(), flow.close());
  EXPECT_EQ(admin("name", {{"id", id}, {"title", "Do everything"}, {"samples", {"do it all with word 7"}}}).status,
            200);
  const Json reply = ask("do it all with biscuits");
  EXPECT_EQ(reply["taskId"], id);
  const Json steps = Json::parse(reply["answer"].get<std::string>());
  ASSERT_EQ(steps.size(), 2001u);
  EXPECT_EQ(steps[15]["value"], "biscuits");
  EXPECT_EQ(steps[17]["value"], "word 8");
  EXPECT_EQ(steps[1999]["value"], "word 999");
}

TEST_F(TeachingTest, RefusesAdminPostsFromElsewhereAndFaultyOnes) {
  const std::string id = teach(port(), orderFlow());
  const std::string text = Json{{"id", id}, {"title", "Mine"}}.dump();
  const auto request = [&](const std::string& host, const std::string& type) {
    return "POST /admin/task/name HTTP/1.1\r\nHost: " + host + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text;
  };
  EXPECT_EQ(talk(port(), request("shop.example", "application/json")).status, 403);
  EXPECT_EQ(talk(port(), request("127.0.0.1", "text/plain")).status, 415) << "what a page in a browser could send";
  EXPECT_EQ(admin("name", {{"id", id}}).status, 400);
  EXPECT_EQ(admin("name", {{"id", "taught-0"}, {"title", "x"}}).status, 400);
  EXPECT_EQ(admin("slot", {{"id", id}, {"slot", "nothing"}}).status, 400);
  EXPECT_EQ(admin("remove", {{"id", "../" + id}}).status, 400);
  EXPECT_EQ(get(port(), "/admin/tasks/" + id + "x").status, 400);
  EXPECT_EQ(list()[0]["state"], "unnamed");
}

TEST(DemonstrationStore, BoundsWhatAKeyMayRegisterAndForgetsWhatNeverEnded) {
  const TemporaryFolder folder;
  DemonstrationStore store(folder.path(), {.demonstrations = 3, .snapshots = 2, .demonstrationTime = 100});
  const Demonstrator who{store.ownerOf("key"), "ann"};
  const auto refused = [](const std::function<void()>& work) {
    try {
      work();
    } catch (const RequestError& error) {
      return error.status();
    }
    return 200;
  };
  const std::vector<Json> flow = orderFlow().snapshots();
  const std::string kept = store.registerTask(who, {"app", "", true}, 0);
  const std::string lost = store.registerTask(who, {"app", "", true}, 0);
  store.remove(store.registerTask(who, {"app", "", true}, 0));
  const std::string spare = store.registerTask(who, {"app", "", true}, 0);
  EXPECT_EQ(refused([&] { store.registerTask(who, {"app", "", true}, 0); }), 429);
  EXPECT_EQ(refused([&] { store.registerTask({store.ownerOf("other"), "ann"}, {"app", "", true}, 0); }), 200);
  store.remove(spare);
  store.registerSnapshot(who, kept, 0, flow[0], 1);
  store.registerSnapshot(who, kept, 1, flow.back(), 1);
  store.registerSnapshot(who, lost, 0, flow[0], 50);
  store.registerSnapshot(who, lost, 1, flow[1], 50);
  EXPECT_EQ(refused([&] { store.registerSnapshot(who, lost, 2, flow[2], 50); }), 413);

  Json shown = flow[2];
  MediaFolder media(folder.path(), {});
  const UploadAddress picture = media.open(who.owner, "bob", "v", "png", 0);
  media.receive(picture.token, 0, 1)->finish();
  const UploadAddress other = media.open(who.owner, "ann", "v", "mp4", 0);
  media.receive(other.token, 0, 1)->finish();
  shown["screenshotKey"] = picture.key;
  const std::string third = store.registerTask({who.owner, "bob"}, {"app", other.key, true}, 160);
  store.registerSnapshot({who.owner, "bob"}, third, 0, shown, 160);
  Teaching teaching(store, media);
  teaching.removeAbandoned(150);
  EXPECT_EQ(store.find(lost).snapshots, 2) << "its last snapshot came 100 ago, which is allowed";
  teaching.removeAbandoned(151);
  EXPECT_THROW(store.find(lost), JsonError);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "media" / picture.key));
  teaching.removeAbandoned(300);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "media" / picture.key)) << "with its pictures";
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "media" / other.key)) << "which is somebody else's";
  EXPECT_TRUE(store.find(kept).isComplete);
}

TEST(Teaching, RemovesFilesThatNoDemonstrationEverNamed) {
  const TemporaryFolder folder;
  DemonstrationStore store(folder.path(), {.demonstrationTime = 100});
  MediaFolder media(folder.path(), {.keyBytes = 3, .addressTime = 10, .demonstrationTime = 100});
  const Demonstrator who{store.ownerOf("key"), "ann"};
  const auto upload = [&](std::int64_t now) {
    const UploadAddress address = media.open(who.owner, "ann", "v", "png", now);
    const auto file = media.receive(address.token, 1, now);
    file->take("x");
    EXPECT_EQ(file->finish().status, 200);
    return address.key;
  };
  const std::string video = upload(0);
  const std::string picture = upload(0);
  const std::string orphan = upload(0);  // its application ended before it could register anything
  EXPECT_THROW(upload(1), RequestError) << "the room of the key is used up";
  Flow flow = orderFlow();
  const std::string id = store.registerTask(who, {"app", video, true}, 1);
  Json shown = flow.snapshots()[0];
  shown["screenshotKey"] = picture;
  store.registerSnapshot(who, id, 0, shown, 1);
  store.registerSnapshot(who, id, 1, flow.snapshots().back(), 1);

  Teaching teaching(store, media);
  const auto isThere = [&](const std::string& key) { return std::filesystem::exists(folder.path() / "media" / key); };
  teaching.removeAbandoned(110);
  EXPECT_TRUE(isThere(orphan)) << "it may still be named";
  teaching.removeAbandoned(111);
  EXPECT_FALSE(isThere(orphan));
  EXPECT_TRUE(isThere(video) && isThere(picture));
  upload(111);
  teaching.remove(id);
  EXPECT_FALSE(isThere(video) || isThere(picture));
}

}  // namespace
}  // namespace service
