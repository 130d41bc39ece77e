// The style sheets that the shop's service can hand out, and the one of its configuration.

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

#include "lumicor/core/TLLayout.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/foundation/JSONValue.h"
#include "tests/support/Contrast.h"

namespace teashop {
namespace {

namespace fs = std::filesystem;
using namespace platform;
using lumicor::TLStyles;
using lumicor::UIColorHex;
using platform::test::contrast;
using platform::test::discernible;
using platform::test::readable;

JSONValue document(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  const auto value = JSONValue::parse(text.str());
  EXPECT_TRUE(value) << file;
  return value ? *value : JSONValue();
}

/// By name, each whole enough for an application.
std::map<std::string, TLStyles> styleSheets() {
  const fs::path folder = ASSISTANT_FOLDER;
  std::map<std::string, JSONValue> records = {
      {"config", *document(folder / "config.json").find("layoutData")->find("styles")}};
  for (const auto& file : fs::directory_iterator(folder / "styles")) {
    records.emplace(file.path().stem().string(), document(file.path()));
  }
  std::map<std::string, TLStyles> sheets;
  for (const auto& [name, record] : records) {
    const auto styles = decodeRecord<TLStyles>(record);
    EXPECT_TRUE(styles) << name << ": " << styles.error();
    if (styles) sheets.emplace(name, *styles);
  }
  return sheets;
}

TEST(StyleSheets, CanBeReadAndLookMeant) {
  const auto sheets = styleSheets();
  EXPECT_EQ(sheets.size(), 4u);
  for (const auto& [name, styles] : sheets) {
    SCOPED_TRACE(name);
    EXPECT_GE(contrast(UIColorHex(styles.receiveFontColor), UIColorHex(styles.receiveBubbleColor)), readable);
    EXPECT_GE(contrast(UIColorHex(styles.sendFontColor), UIColorHex(styles.sendBubbleColor)), readable);
    EXPECT_GE(contrast(UIColorHex(styles.sendButtonTextColor), UIColorHex(styles.sendButtonBackgroundColor)), readable);
    EXPECT_GE(contrast(UIColor::white(), UIColorHex(styles.receiveBubbleColor)), discernible) << "the typing dots";
    EXPECT_GE(contrast(UIColorHex(styles.sendButtonBackgroundColor), UIColorHex(styles.inputBackgroundColor)),
              discernible)
        << "the button on its bar";
    EXPECT_LE(contrast(UIColor::white(), UIColorHex(styles.backgroundColor)), 1.1)
        << "rows and header are white: below them another colour would look torn off";
    EXPECT_GE(styles.fontSize, 16);
    EXPECT_LE(styles.sendButtonSize, 18) << "the button is 80 points wide";
  }
}

}  // namespace
}  // namespace teashop
