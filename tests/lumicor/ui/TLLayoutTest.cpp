#include <cstdio>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

#include "lumicor/core/TLLayout.h"
#include "lumicor/ui/LumicorFontHelper.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/URL.h"
#include "tests/lumicor/support/SessionTest.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::HasSubstr;
using testing::StartsWith;

// ---- Records

TEST(Layout, HoldsTheBuiltInLookWhenItIsMadeWithoutJson) {
  const TLLayout layout;
  JSONValue written = toJSONValue(layout);
  for (const char* address : {"image", "closeButton"}) {
    EXPECT_THAT(*written.find(address)->asString(), StartsWith("https://"));
    written.set(address, "");
  }
  JSONValue styles = *written.find("styles");
  EXPECT_THAT(*styles.find("fontURL")->asString(), testing::EndsWith(".otf"));
  written.set("styles", styles.set("fontURL", ""));
  EXPECT_EQ(*written.encode(),
            R"({"viewType":"TYPE_FLOATING","margin":[],"size":60,"image":"","imageSize":30,"closeButton":"","styles":{)"
            R"("backgroundColor":"#ffffff","fontSize":16,"sendFontColor":"#000000","receiveFontColor":"#ffffff",)"
            R"("receiveBubbleColor":"#5f5def","sendBubbleColor":"#c2c2c2","fontSpacing":0.0,"fontWeight":400,)"
            R"("lineHeight":1.5,"textDecoration":[],"fontName":"SF-Pro-Text-Regular.otf",)"
            R"("inputBackgroundColor":"#ffffff","sendButtonBackgroundColor":"#5f5def","sendButtonTextColor":"#ffffff",)"
            R"("inputFontSize":14,"sendButtonSize":12,"fontURL":""},"isFixed":false})");
}

TEST(Layout, IsNotCompletedWithDefaults) {
  const JSONValue whole = toJSONValue(TLLayout());
  ASSERT_EQ(*decodeRecord<TLLayout>(whole), TLLayout());
  const auto without = [](JSONValue value, const std::string& key) {
    std::erase_if(*value.asObject(), [&](const auto& member) { return member.first == key; });
    return value;
  };
  for (const auto& [key, value] : *whole.asObject()) {
    EXPECT_FALSE(decodeRecord<TLLayout>(without(whole, key))) << key;
  }
  const JSONValue styles = toJSONValue(TLStyles());
  for (const auto& [key, value] : *styles.asObject()) {
    JSONValue broken = whole;
    const auto decoded = decodeRecord<TLLayout>(broken.set("styles", without(styles, key)));
    EXPECT_FALSE(decoded) << key;
    EXPECT_THAT(decoded.error(), HasSubstr("styles." + key));
  }
}

TEST(Layout, TakesOnlyItsTypes) {
  const auto with = [](const char* key, const JSONValue& value) {
    JSONValue layout = toJSONValue(TLLayout());
    return decodeRecord<TLLayout>(layout.set(key, value));
  };
  EXPECT_EQ(with("viewType", "TYPE_EMBED")->viewType, TLViewType::TYPE_EMBED);
  EXPECT_FALSE(with("viewType", "TYPE_OTHER"));
  EXPECT_EQ(with("margin", JSONValue::array({1, -2}))->margin, (std::vector<std::int64_t>{1, -2}));
  EXPECT_FALSE(with("margin", JSONValue::array({1.5})));
  EXPECT_FALSE(with("size", 60.5));
  EXPECT_FALSE(with("isFixed", 0));
}

// ---- Colours

TEST(HexColour, ReadsTheThreeFormsWhateverSurroundsThem) {
  const UIColor violet(0x5f / 255.0, 0x5d / 255.0, 0xef / 255.0, 1);
  for (const char* text : {"#5f5def", "5f5def", "##5f5def##", " #5F5DEF; "}) {
    EXPECT_EQ(UIColorHex(text), violet) << text;
  }
  EXPECT_EQ(UIColorHex("#fff"), UIColor(1, 1, 1, 1));
  EXPECT_EQ(UIColorHex("#1a0"), UIColor(17 / 255.0, 170 / 255.0, 0, 1));
  EXPECT_EQ(UIColorHex("#80ff0000"), UIColor(1, 0, 0, 128 / 255.0));
}

TEST(HexColour, IsOpaqueBlackForAnythingElse) {
  for (const char* text : {"", "#", "#12345", "#1234567", "#123456789", "#zzzzzz", "#xyz", "red!"}) {
    EXPECT_EQ(UIColorHex(text), UIColor(0, 0, 0, 1)) << text;
  }
  EXPECT_EQ(UIColorHex("12zzzz"), UIColor(0, 0, 0x12 / 255.0, 1)) << "as far as it reads as a number";
}

// ---- The chat's font

TEST(FontWeight, KnowsNoThinAndFallsBackToRegular) {
  const std::pair<std::int64_t, UIFontWeight> rows[] = {
      {100, UIFontWeightUltraLight}, {200, UIFontWeightUltraLight}, {300, UIFontWeightLight},
      {400, UIFontWeightRegular},    {500, UIFontWeightMedium},     {600, UIFontWeightSemibold},
      {700, UIFontWeightBold},       {800, UIFontWeightHeavy},      {900, UIFontWeightBlack},
      {450, UIFontWeightRegular},    {1000, UIFontWeightRegular},   {-1, UIFontWeightRegular}};
  for (const auto& [number, weight] : rows) EXPECT_EQ(LumicorFontHelper::fontWeight(number), weight) << number;
}

class FontLoadingTest : public SessionTest {
 protected:
  std::string printedBy(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    RunLoop::settle();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
  }
  StubService service_;
  std::vector<bool> outcomes_;
  LumicorFontHelper::Completion note_ = [this](bool registered) { outcomes_.push_back(registered); };
};

TEST_F(FontLoadingTest, TellsWhyAFontDidNotCome) {
  service_.answer("/gone.otf", URLProtocol::Reply::failure(URLError::cannotFindHost));
  service_.answer("/text.otf", URLProtocol::Reply::data(200, "no font"));
  const auto download = [&](const char* address) {
    return printedBy([&] { LumicorFontHelper::downloadFont(*URL::parse(address), note_); });
  };
  EXPECT_EQ(download("https://fonts.test/gone.otf"),
            "Font download failed: " + URLError(URLError::cannotFindHost).localizedDescription() + "\n");
  EXPECT_EQ(download("https://fonts.test/text.otf"), "Failed to create font from data provider.\n");
  EXPECT_EQ(printedBy([&] { LumicorFontHelper::registerFont(URL::fileURL("/nowhere/font.otf"), note_); }),
            "Failed to create font from data provider.\n");
  EXPECT_EQ(outcomes_, (std::vector<bool>{false, false, false}));
}

TEST_F(FontLoadingTest, LoadsAFontOnceAndRemembersItsName) {
  std::ifstream file("/usr/share/fonts/opentype/inter/InterDisplay-Bold.otf", std::ios::binary);
  if (!file) GTEST_SKIP() << "fonts-inter is not installed where it is expected";
  std::ostringstream font;
  font << file.rdbuf();
  service_.answer("/chat.otf", URLProtocol::Reply::failure(URLError::timedOut));
  service_.answer("/chat.otf", URLProtocol::Reply::data(200, font.str()));
  const auto load = [&](const std::string& address) {
    return printedBy([&] { LumicorFontHelper::loadFont(address); });
  };
  load("no address");
  EXPECT_TRUE(service_.requests().empty());
  if (LumicorFontHelper::isFontLoaded()) {  // an earlier round did, for the life of the process
    load("https://fonts.test/chat.otf");
    EXPECT_TRUE(service_.requests().empty());
    return;
  }
  load("https://fonts.test/chat.otf");
  EXPECT_FALSE(LumicorFontHelper::isFontLoaded()) << "the next start tries again";
  EXPECT_EQ(LumicorFontHelper::registeredFontName(), "");
  EXPECT_EQ(load("https://fonts.test/chat.otf"), "");
  EXPECT_TRUE(LumicorFontHelper::isFontLoaded());
  EXPECT_EQ(LumicorFontHelper::registeredFontName(), "InterDisplay-Bold");
  load("https://fonts.test/chat.otf");
  EXPECT_EQ(service_.requests().size(), 2U);

  EXPECT_THAT(printedBy([&] { LumicorFontHelper::downloadFont(*URL::parse("https://fonts.test/chat.otf"), note_); }),
              StartsWith("Error registering font: "));
  EXPECT_EQ(outcomes_, std::vector<bool>{false});
}

}  // namespace lumicor::test
