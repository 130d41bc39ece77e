// The whole way: the shop, the assistant in it, real HTTP on loopback, the real service.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "examples/teashop/ScreenCatalogue.h"
#include "platform/foundation/JSONValue.h"
#include "tests/support/ChildProcess.h"

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
  std::ostringstream content;
  content << std::ifstream(file).rdbuf();
  return content.str();
}

class Demo : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("demo_test_" + std::to_string(getpid()));
    fs::create_directories(folder_ / "out");
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::unique_ptr<ChildProcess> startService(const fs::path& configuration = fs::path(ASSISTANT_FOLDER) /
                                                                             "config.json") {
    const fs::path assistant = ASSISTANT_FOLDER;
    auto service = std::make_unique<ChildProcess>(std::vector<std::string>{
        SERVICE_PROGRAM, "--port", "0", "--data", folder_ / "data", "--config", configuration, "--tasks",
        assistant / "tasks.json", "--assets", assistant / "assets", "--exchange", folder_ / "out" / "http.jsonl"});
    const std::string greeting = service->readLine();
    const std::size_t at = greeting.find("http://");
    EXPECT_NE(at, std::string::npos) << greeting;
    address_ = at == std::string::npos ? "" : greeting.substr(at);
    return service;
  }

  int shop(std::string* said, const std::vector<std::string>& options) {
    std::vector<std::string> command = {TEASHOP_PROGRAM, "--service", address_, "--fast"};
    command.insert(command.end(), options.begin(), options.end());
    ChildProcess shop(command,
                      {{"PLATFORM_DEFAULTS_DIRECTORY", folder_ / "defaults"}, {"XDG_DATA_HOME", folder_ / "home"}});
    *said = shop.readAll();
    return shop.wait();
  }
  int play(std::string* said, std::vector<std::string> options = {}) {
    options.insert(options.end(), {"--play", folder_ / "out"});
    return shop(said, options);
  }

  /// The shop's configuration with the control bar for demonstrations in the place of the button.
  fs::path teachingConfiguration() const {
    std::string text = contentOf(fs::path(ASSISTANT_FOLDER) / "config.json");
    for (const auto& [from, to] :
         {std::pair<std::string, std::string>{"\"showTrackerView\": false", "\"showTrackerView\": true"},
          {"\"showTesselLumicor\": true", "\"showTesselLumicor\": false"}}) {
      const std::size_t at = text.find(from);
      EXPECT_NE(at, std::string::npos);
      text.replace(at, from.size(), to);
    }
    const fs::path file = folder_ / "teaching.json";
    std::ofstream(file) << text;
    return file;
  }

  fs::path folder_;
  std::string address_;
};

TEST_F(Demo, PlacesTheOrderAndWritesAReportThatShowsIt) {
  const auto service = startService();
  std::string said;
  ASSERT_EQ(play(&said), 0) << said;

  std::vector<std::string> paths;
  std::istringstream exchanges(contentOf(folder_ / "out" / "http.jsonl"));
  for (std::string line; std::getline(exchanges, line);) {
    const auto exchange = platform::JSONValue::parse(line);
    ASSERT_TRUE(exchange) << line;
    EXPECT_EQ(line.find("teashop-demo-key"), std::string::npos) << "a secret is in the log";
    paths.push_back(*exchange->find("path")->asString());
  }
  EXPECT_EQ(std::count(paths.begin(), paths.end(), "/sdk/init"), 1);
  EXPECT_EQ(std::count(paths.begin(), paths.end(), "/sdk/steps/get"), 1);
  EXPECT_GE(std::count(paths.begin(), paths.end(), "/sdk/event/log"), 5);

  const std::string report = contentOf(folder_ / "out" / "report.html");
  EXPECT_NE(report.find("Every request was carried out"), std::string::npos);
  int pictures = 0;
  for (const auto& file : fs::directory_iterator(folder_ / "out")) {
    if (file.path().extension() != ".png") continue;
    ++pictures;
    EXPECT_GT(file.file_size(), 5000u) << file.path() << " is an empty picture";
    EXPECT_NE(report.find(file.path().filename().string()), std::string::npos);
  }
  EXPECT_GE(pictures, 10 + std::ssize(teashop::screenCatalogue()));
  for (const teashop::NamedScreen& screen : teashop::screenCatalogue()) {
    EXPECT_NE(report.find("alt=\"" + screen.name + "\""), std::string::npos) << "not visited: " << screen.name;
  }
}

TEST_F(Demo, CarriesOutEveryRequestThatTheShopsTaskFileHolds) {
  const auto service = startService();
  std::string said;
  ASSERT_EQ(play(&said, {"--all"}), 0) << said;
  const auto tasks = platform::JSONValue::parse(contentOf(fs::path(ASSISTANT_FOLDER) / "tasks.json"));
  ASSERT_TRUE(tasks);
  const std::string exchange = contentOf(folder_ / "out" / "http.jsonl");
  for (const platform::JSONValue& task : *tasks->find("tasks")->asArray()) {
    if (!task.find("steps")) continue;
    const std::string event = R"({\"eventName\":\"TASK_SUCCESS\",\"taskId\":\")" + *task.find("id")->asString();
    EXPECT_NE(exchange.find(event), std::string::npos) << *task.find("id")->asString();
  }
}

TEST_F(Demo, ShowsTheWholeGalleryBesideTheRealService) {
  const auto service = startService();
  const std::vector<std::string> command = {TEASHOP_PROGRAM,
                                            "--service",
                                            address_,
                                            "--gallery",
                                            folder_ / "out",
                                            "--styles",
                                            fs::path(ASSISTANT_FOLDER) / "styles"};
  ChildProcess shop(command, {{"PLATFORM_DEFAULTS_DIRECTORY", folder_ / "defaults"}});
  const std::string said = shop.readAll();
  EXPECT_EQ(shop.wait(), 0) << said;
  const std::string page = contentOf(folder_ / "out" / "gallery.html");
  int pictures = 0;
  for (const auto& file : fs::directory_iterator(folder_ / "out" / "gallery")) {
    ++pictures;
    EXPECT_NE(page.find("src=\"gallery/" + file.path().filename().string()), std::string::npos) << file.path();
  }
  EXPECT_GE(pictures, 30);
  EXPECT_EQ(said.find("never happened"), std::string::npos) << said;
}

TEST_F(Demo, DoesOnRequestWhatAPersonHasShownOnce) {
  std::string said;
  {
    const auto service = startService(teachingConfiguration());
    ASSERT_EQ(shop(&said, {"--teach", folder_ / "out"}), 0) << said;
  }
  fs::copy(folder_ / "data" / "media", folder_ / "out" / "media");
  const auto service = startService();
  ASSERT_EQ(shop(&said, {"--replay", folder_ / "out"}), 0) << said;

  const std::string report = contentOf(folder_ / "out" / "report.html");
  EXPECT_NE(report.find("Shown once, done on request"), std::string::npos);
  int videos = 0;
  for (std::size_t at = 0; (at = report.find("<video", at)) != std::string::npos; ++at) ++videos;
  EXPECT_EQ(videos, 2);
  EXPECT_EQ(report.find("no picture"), std::string::npos) << "every action has its screenshot";
  EXPECT_EQ(contentOf(folder_ / "out" / "http.jsonl").find("teashop-demo-key"), std::string::npos);
}

TEST_F(Demo, EndsWithAnErrorWhenThereIsNoService) {
  address_ = "http://127.0.0.1:9";
  std::string said;
  EXPECT_EQ(play(&said), 1);
  EXPECT_NE(said.find("never happened"), std::string::npos) << said;
  EXPECT_NE(contentOf(folder_ / "out" / "report.html").find("Not every request was carried out"), std::string::npos);
}

}  // namespace
