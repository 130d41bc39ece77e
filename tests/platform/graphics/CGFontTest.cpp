#include <filesystem>
#include <thread>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGFont.h"
#include "platform/graphics/UIFont.h"

namespace platform {
namespace {

constexpr const char* interFolder = "/usr/share/fonts/opentype/inter/";

CGDataProviderRef installed(const std::string& file) {
  return CGDataProviderCreateWithURL("file://" + (interFolder + file));
}

TEST(CGFont, IsNoneForWhatCannotBeReadOrIsNoFont) {
  EXPECT_EQ(CGDataProviderCreateWithURL("file:///there/is/no/such/font.otf"), nullptr);
  EXPECT_EQ(CGFontCreateWithDataProvider(nullptr), nullptr);
  std::string directoryOfNothing("\0\1\0\0\xFF\xFF", 6);
  directoryOfNothing.append(300, '\x7F');
  const std::vector<std::string> foreign{"", "OTTO", std::string("\0\1\0\0", 4), std::string(9999, '\xFF'),
                                         directoryOfNothing};
  for (const std::string& data : foreign) {
    EXPECT_EQ(CGFontCreateWithDataProvider(CGDataProviderCreateWithData(data)), nullptr);
  }
  CFError error;
  EXPECT_FALSE(CTFontManagerRegisterGraphicsFont(nullptr, &error));
  EXPECT_FALSE(error.description.empty());
}

TEST(CGFont, SurvivesAFontCutShortOrDamaged) {
  const auto provider = installed("Inter-LightItalic.otf");
  if (!provider) GTEST_SKIP() << "fonts-inter is not installed where it is expected";
  const std::string& whole = provider->data;
  for (std::size_t length = 0; length < 4096; length += 7) {
    EXPECT_EQ(CGFontCreateWithDataProvider(CGDataProviderCreateWithData(whole.substr(0, length))), nullptr);
  }
  for (std::size_t i = 0; i < 600; i += 3) {
    std::string damaged = whole;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x5A);
    (void)CGFontCopyPostScriptName(CGFontCreateWithDataProvider(CGDataProviderCreateWithData(damaged)));
  }
}

TEST(CGFont, IsUsableUnderItsPostScriptNameOnceRegisteredFromAnyThread) {
  const auto provider = installed("Inter-ExtraBold.otf");
  if (!provider) GTEST_SKIP() << "fonts-inter is not installed where it is expected";
  const CGFontRef font = CGFontCreateWithDataProvider(provider);
  EXPECT_EQ(CGFontCopyPostScriptName(font), "Inter-ExtraBold");
  bool registered = false;
  std::thread([&] { registered = CTFontManagerRegisterGraphicsFont(font); }).join();
  static bool isFirstRound = true;
  EXPECT_EQ(registered, std::exchange(isFirstRound, false)) << "once in the life of a process";
  const auto named = UIFont::named("Inter-ExtraBold", 20);
  ASSERT_TRUE(named);
  EXPECT_EQ(named->fontName(), "Inter-ExtraBold");
  EXPECT_EQ(named->pointSize(), 20);
  TextStyle heavy, regular;
  heavy.font = *named;
  regular.font = UIFont::systemFont(20);
  EXPECT_GT(TextLayout::measure("Tea time", heavy).width, TextLayout::measure("Tea time", regular).width + 3);
  CFError error;
  EXPECT_FALSE(CTFontManagerRegisterGraphicsFont(font, &error));
  EXPECT_NE(error.description.find("Inter-ExtraBold"), std::string::npos);
}

TEST(UIFont, FindsInstalledFontsByNameAndNothingElse) {
  EXPECT_FALSE(UIFont::named("NoSuchFont-Regular", 12));
  EXPECT_FALSE(UIFont::named("", 12));
  const auto semibold = UIFont::named("Inter-SemiBold", 15);
  if (!semibold) GTEST_SKIP() << "fonts-inter is not installed";
  EXPECT_EQ(semibold->face().weight, 600);
}

TEST(UIFont, ScalesItsMetricsWithItsSize) {
  const UIFont font = UIFont::systemFont(16), large = font.fontWithSize(32);
  EXPECT_GT(font.ascender(), font.capHeight());
  EXPECT_GT(font.capHeight(), font.xHeight());
  EXPECT_LT(font.descender(), 0);
  EXPECT_NEAR(font.lineHeight(), 16 * 1.21, 0.5);
  EXPECT_DOUBLE_EQ(large.lineHeight(), font.lineHeight() * 2);
  EXPECT_EQ(UIFont::systemFont(-3).pointSize(), 1);
  EXPECT_EQ(UIFont::systemFont(std::nan("")).pointSize(), 1);
  EXPECT_EQ(UIFont::systemFont(12, UIFontWeightUltraLight).face().weight, 100);
  EXPECT_EQ(UIFont::boldSystemFont(12).face().weight, 700);
}

}  // namespace
}  // namespace platform
