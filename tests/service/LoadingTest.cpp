#include <functional>
#include <gmock/gmock.h>
#include <thread>

#include "service/api/AssetFolder.h"
#include "service/api/LookChecks.h"
#include "service/assistant/TaskFile.h"
#include "service/base/Arguments.h"
#include "service/base/Configuration.h"
#include "service/base/LoadError.h"
#include "service/base/Utf8.h"
#include "service/store/Store.h"
#include "tests/service/TemporaryFolder.h"

namespace service {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string complaintOf(const std::function<void()>& load) {
  try {
    load();
  } catch (const LoadError& error) {
    return error.what();
  }
  return "no complaint";
}

/// The file's text with one part replaced, which must be in it.
std::string changed(std::string text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  EXPECT_NE(place, std::string::npos) << from;
  return text.replace(place, from.size(), to);
}

TEST(Arguments, AreReadAndComplainedAboutByName) {
  const std::vector<const char*> words{"--data", "d", "--config", "c", "--tasks", "t", "--port", "0", "--host", "::1"};
  const Arguments arguments = Arguments::parse(words);
  EXPECT_EQ(arguments.dataFolder, "d");
  EXPECT_EQ(arguments.port, 0);
  EXPECT_EQ(arguments.host, "::1");
  const std::vector<std::pair<std::vector<const char*>, std::string>> table = {
      {{}, "--data DIR is required; try --help"},
      {{"--data", "d", "--config", "c"}, "--tasks FILE is required; try --help"},
      {{"--data"}, "--data: a value is required"},
      {{"--port", "65536"}, R"(--port: "65536" is not a port number (0 to 65535))"},
      {{"--port", "80x"}, R"(--port: "80x" is not a port number (0 to 65535))"},
      {{"--verbose"}, R"("--verbose" is not an option; try --help)"},
  };
  for (const auto& [wrong, complaint] : table) {
    EXPECT_EQ(complaintOf([&words = wrong] { Arguments::parse(words); }), complaint);
  }
}

TEST(TaskFile, NamesTheFileTheTaskAndTheFieldThatIsWrong) {
  const TemporaryFolder folder;
  const std::string good = readFile(dataFolder() / "tasks.json");
  const std::vector<std::tuple<std::string, std::string, std::string>> table = {
      {R"("title": "Order bread")", R"("title": 7)", R"(task "order-bread".title: must be a string)"},
      {R"("title": "Order bread",)", "", R"(task "order-bread".title: is missing)"},
      {R"("id": "go-back")", R"("id": "show-orders")", R"(tasks[3].id: "show-orders" is used twice)"},
      {R"("id": "order-bread")", R"("id": "")", "tasks[0].id: must not be empty"},
      {R"("samples": ["go back")", R"("sampels": ["go back")", R"(task "go-back".sampels: is not a known key)"},
      {"order {quantity} {product} to", "order {amount} {product} to",
       R"(task "order-bread".samples[0]: there is no slot "amount")"},
      {"order {quantity} {product} to", "order {quantity {product} to",
       R"(task "order-bread".samples[0]: "{quantity {product}" is not a placeholder)"},
      {"order {quantity} {product} to", "{product} {product} to",
       R"(task "order-bread".samples[0]: {product} stands there twice)"},
      {R"("go back", )", R"("?!", )", R"(task "go-back".samples[0]: must hold a word)"},
      {R"("type": "number", "default": 1)", R"("type": "integer", "default": 1)",
       R"(task "order-bread".slots[0].type: must be "number", "text" or "one-of")"},
      {R"("default": 1, "maximum": 12)", R"("default": 13, "maximum": 12)",
       R"(task "order-bread".slots[0].default: is not from minimum to maximum)"},
      {R"("name": "note")", R"("name": "address")", R"(task "order-bread".slots[3]: "address" is used twice)"},
      {R"("value": "Baguette")", R"("value": 4)", R"(task "order-bread".slots[1].choices[1].value: must be a string)"},
      {R"({"row": 1, "view": "cell-baguette"})", R"({"row": 1})",
       R"(task "order-bread".steps[1].elementId: not every choice of "product" has the attribute "view")"},
      {R"({"row": 1, )", R"({"row": "first", )",
       R"(task "order-bread".steps[1].scrollDetails[0].offsets.y: is not a whole number)"},
      {R"("repeat": "{quantity-1}")", R"("repeat": "{address}")",
       R"(task "order-bread".steps[2].repeat: is not a whole number)"},
      {R"("repeat": "{quantity-1}")", R"("repeat": "{quantity+500}")",
       R"(task "order-bread".steps[2].repeat: could be more than 200 times)"},
      {R"("when": "note", )", "",
       R"(task "order-bread".steps[4].value: the slot "note" may have no value: add "when": "note" or a default)"},
      {R"("actionType": "TYPE_SYSTEM_BACK")", R"("actionType": "TYPE_BACK")",
       R"(task "go-back".steps[0].actionType: "TYPE_BACK" is not an action type)"},
      {R"("viewName": "RecipeScreen", )", "", R"(task "search-recipes".steps[0].viewName: is missing)"},
      {R"("answer": "We)", R"("steps": [], "answer": "", "title": "We)", R"(task "opening-hours".answer: must not)"},
      {R"("tasks": [)", R"("tasks": [)" + std::string(60, '['), "the JSON is nested too deeply"},
      {R"("tasks": [)", R"("tasks": )", "not JSON: the fault is near byte"},
  };
  for (const auto& [from, to, complaint] : table) {
    const auto file = folder.write("tasks.json", changed(good, from, to));
    EXPECT_THAT(complaintOf([&] { TaskFile::load(file); }), HasSubstr(file.string() + ": " + complaint));
  }
  EXPECT_THAT(complaintOf([&] { TaskFile::load(folder.path() / "none.json"); }),
              HasSubstr("none.json: cannot be read"));
  EXPECT_THAT(complaintOf([&] { TaskFile::load(folder.path()); }), HasSubstr("cannot be read"));
}

TEST(Configuration, RefusesALayoutThatApplicationsWouldRefuse) {
  const TemporaryFolder folder;
  const std::string good = readFile(dataFolder() / "config.json");
  const std::vector<std::tuple<std::string, std::string, std::string>> table = {
      {R"("isFixed": false,)", "", "layoutData.isFixed: is missing"},
      {R"("TYPE_FLOATING")", R"("FLOATING")", R"(layoutData.viewType: must be "TYPE_FLOATING" or "TYPE_EMBED")"},
      {R"([0, 16, 24, 0])", "[0, 1.5]", "layoutData.margin[1]: must be a whole number"},
      {R"("fontSize": 16)", R"("fontSize": 16.5)", "layoutData.styles.fontSize: must be a whole number"},
      {R"("textDecoration": [])", R"("textDecoration": [1])", "layoutData.styles.textDecoration[0]: must be a string"},
      {R"("showTesselLumicor": true)", R"("showTesselLumicor": 1)", "showTesselLumicor: must be true or false"},
      {R"("showTesselLumicor")", R"("showTeselLumicor")", "showTeselLumicor: is not a known key"},
      {R"("failureMessage": "That did not work.",)", "", "tlDefaults.failureMessage: is missing"},
      {R"("uploaded")", R"([{"message": "a", "isRemote": true}])", "chatHistory[0].timestamp: is missing"},
      {R"(["bakery-key", "second-key"])", "[]", "acceptedKeys: must name a key"},
  };
  for (const auto& [from, to, complaint] : table) {
    const auto file = folder.write("config.json", changed(good, from, to));
    EXPECT_THAT(complaintOf([&] { Configuration::load(file); }), HasSubstr(file.string() + ": " + complaint));
  }
}

TEST(Configuration, TakesItsStylesFromASheetThatIsWhole) {
  const TemporaryFolder folder;
  const auto config = dataFolder() / "config.json";
  Json styles = parseJson(readFile(config))["layoutData"]["styles"];
  styles["sendBubbleColor"] = "#123456";
  styles["fontURL"] = "/assets/Other.otf";
  const std::string good = styles.dump();
  const Json before = Configuration::load(config).dataFor("http://here:1");
  const Json after = Configuration::load(config, folder.write("good.json", good)).dataFor("http://here:1");
  EXPECT_EQ(after["layoutData"]["styles"]["sendBubbleColor"], "#123456");
  EXPECT_EQ(after["layoutData"]["styles"]["fontURL"], "http://here:1/assets/Other.otf");
  EXPECT_EQ(after["layoutData"]["image"], before["layoutData"]["image"]);

  const std::vector<std::tuple<std::string, std::string, std::string>> table = {
      {R"("sendBubbleColor":"#123456",)", "", "sendBubbleColor: is missing"},
      {R"("sendBubbleColor":"#123456")", R"("sendBubbleColor":7)", "sendBubbleColor: must be a string"},
      {R"("fontSize":16)", R"("fontSize":"16")", "fontSize: must be a whole number"},
      {R"("textDecoration":[])", R"("textDecoration":[1])", "textDecoration[0]: must be a string"},
      {"{", R"({"bubbleColor":"#000000",)", "bubbleColor: is not a known key"},
      {"{", "[", "not JSON"},
  };
  for (const auto& [from, to, complaint] : table) {
    const auto sheet = folder.write("styles.json", changed(good, from, to));
    EXPECT_THAT(complaintOf([&] { Configuration::load(config, sheet); }), HasSubstr(sheet.string() + ": " + complaint));
  }
  const auto plain = folder.write("plain.json", "{}");
  EXPECT_THAT(complaintOf([&] { Configuration::load(plain, folder.path() / "good.json"); }),
              HasSubstr(plain.string() + ": layoutData: is missing"));
  EXPECT_THAT(complaintOf([&] { Configuration::load(config, folder.path() / "none.json"); }),
              HasSubstr("none.json: cannot be read"));
}

TEST(Configuration, CompletesRelativeAddressesAndAcceptsAnyKeyUnlessToldWhich) {
  const std::string good = readFile(dataFolder() / "config.json");
  const Json data = Configuration::parse(good).dataFor("http://here:1");
  EXPECT_EQ(data["layoutData"]["image"], "http://here:1/assets/button.png");
  EXPECT_EQ(data["layoutData"]["closeButton"], "https://pictures.example/close.png");
  EXPECT_EQ(data["layoutData"]["styles"]["fontURL"], "http://here:1/assets/Bakery.otf");
  const std::string published = changed(good, "{", R"({"publicAddress": "https://assistant.example",)");
  EXPECT_EQ(Configuration::parse(published).dataFor("http://here:1")["layoutData"]["image"],
            "https://assistant.example/assets/button.png");
  EXPECT_FALSE(Configuration::parse(good).accepts("other"));
  EXPECT_TRUE(Configuration::parse("{}").accepts("other"));
  EXPECT_FALSE(Configuration::parse("{}").accepts(""));
}

TEST(Configuration, IsWarnedAboutWhereItCannotBeShown) {
  const TemporaryFolder folder;
  folder.write("button.png", "x");
  folder.write("Bakery.otf", "x");
  const AssetFolder assets(folder.path());
  const std::string good = readFile(dataFolder() / "config.json");
  const auto warnings = [](const std::string& text, const AssetFolder* from) {
    return lookWarnings(Configuration::parse(text).dataFor(""), from);
  };
  EXPECT_THAT(warnings(good, &assets), IsEmpty());
  EXPECT_THAT(warnings("{}", nullptr), IsEmpty());
  EXPECT_THAT(warnings(good, nullptr),
              ElementsAre("layoutData.image: /assets/button.png is not among the assets",
                          "layoutData.styles.fontURL: /assets/Bakery.otf is not among the assets"));
  const std::vector<std::tuple<std::string, std::string, std::string>> table = {
      {"/assets/button.png", "/assets/../config.json", "image: /assets/../config.json is not among the assets"},
      {R"("fontSize": 16)", R"("fontSize": -3)", "styles.fontSize: is not above 0"},
      {R"("backgroundColor": "#ffffff")", R"("backgroundColor": "plum")", "styles.backgroundColor: \"plum\" is no"},
      {R"("sendBubbleColor": "#c2c2c2")", R"("sendBubbleColor": "#7a2f5g")",
       "styles.sendBubbleColor: \"#7a2f5g\" is no"},
  };
  for (const auto& [from, to, warning] : table) {
    EXPECT_THAT(warnings(changed(good, from, to), &assets), ElementsAre(HasSubstr("layoutData." + warning)));
  }
}

TEST(Utf8, TellsTextFromOtherBytes) {
  for (const auto* text : {"", "a", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x8D\x9E", "\xF4\x8F\xBF\xBF"})
    EXPECT_TRUE(isUtf8(text)) << text;
  const std::vector<std::pair<std::string, std::string>> wrong = {
      {"a lone continuation", "\x80"}, {"cut short", "a\xE2\x82"},
      {"overlong in two", "\xC0\xAF"}, {"overlong in three", "\xE0\x80\xAF"},
      {"a surrogate", "\xED\xA0\x80"}, {"beyond the last", "\xF4\x90\x80\x80"},
      {"no such byte", "\xFF"}};
  for (const auto& [what, text] : wrong) EXPECT_FALSE(isUtf8(text)) << what;
  EXPECT_EQ(utf8Prefix("a\xE2\x82\xAC", 3), "a");
  EXPECT_EQ(utf8Prefix("a\xE2\x82\xAC", 4), "a\xE2\x82\xAC");
}

TEST(Store, MayBeOpenedTwiceAtOnce) {
  const TemporaryFolder folder;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&folder, i] {
      Store store(folder.path() / "new");
      for (int n = 0; n < 5; ++n) store.addEvent({0, n, "user " + std::to_string(i), "MESSAGE_SENT", ""});
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(Store(folder.path() / "new").events({}).size(), 20u);
}

TEST(Store, RefusesWhatItCannotRead) {
  const TemporaryFolder folder;
  { const Store store(folder.path()); }
  Database(folder.path() / "lumicor.sqlite").run("PRAGMA user_version = 3");
  EXPECT_THAT(complaintOf([&] { Store store(folder.path()); }), HasSubstr("written by a newer lumicor-service"));
  const TemporaryFolder broken;
  broken.write("lumicor.sqlite", std::string(4096, 'x'));
  EXPECT_THAT(complaintOf([&] { Store store(broken.path()); }), HasSubstr("lumicor.sqlite: file is not a database"));
  const auto file = broken.write("file", "");
  EXPECT_THAT(complaintOf([&] { Store store(file / "below"); }), HasSubstr("is not a usable folder"));
}

}  // namespace
}  // namespace service
