#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>

#include "lumicor/core/Lumicor.h"
#include "platform/dispatch/Clock.h"
#include "tools/play/Scenario.h"
#include "tools/play/ScenarioRun.h"

namespace play {

using namespace platform;
using namespace lumicor;
using testing::HasSubstr;

namespace {

constexpr const char* step =
    R"({"elementId":"a","index":%,"value":"","scrollDetails":[],"viewName":"S","actionType":"TYPE_BUTTON"})";

std::string stepAt(int index) {
  std::string text = step;
  return text.replace(text.find('%'), 1, std::to_string(index));
}

TEST(Scenario, ComesAsAListOrAsAReplyInEitherForm) {
  const std::string list = "[" + stepAt(2) + "," + stepAt(0) + "]";
  std::string quoted = list;
  for (std::size_t at = 0; (at = quoted.find('"', at)) != quoted.npos; at += 2) quoted.insert(at, "\\");
  for (const std::string& text : {list, R"({"answer":)" + list + "}", R"({"data":{"answer":)" + list + "}}",
                                  R"({"statusCode":200,"data":{"answer":")" + quoted + R"("}})"}) {
    SCOPED_TRACE(text);
    const auto steps = readScenario(text);
    ASSERT_TRUE(steps) << steps.error();
    ASSERT_EQ(steps->size(), 2u);
    EXPECT_EQ(steps->front().index, 0);
  }
}

TEST(Scenario, SaysWhatIsWrongWithASteplessOrMalformedOne) {
  EXPECT_THAT(readScenario("").error(), HasSubstr("not JSON"));
  EXPECT_THAT(readScenario("[{]").error(), HasSubstr("not JSON"));
  EXPECT_THAT(readScenario(R"({"data":{}})").error(), HasSubstr("answer"));
  EXPECT_THAT(readScenario(R"({"answer":7})").error(), HasSubstr("answer"));
  EXPECT_THAT(readScenario(R"([{"elementId":"a"}])").error(), HasSubstr("[0].index"));
}

/// The shop in virtual time.
class Play : public testing::Test {
 protected:
  ~Play() override { Lumicor::shared().setCurrentViewController(nullptr); }

  static TLAction doing(std::string elementId, std::string viewName, std::string actionType = "TYPE_BUTTON",
                        std::string value = "") {
    return {std::move(elementId), 0, std::move(value), {}, std::move(viewName), std::move(actionType)};
  }
  Outcome play(const char* screen, std::vector<TLAction> steps,
               const std::optional<std::filesystem::path>& pictures = std::nullopt) {
    steps.push_back(doing("never performed", "Nowhere"));
    return playScenario(application_, *teashop::screenNamed(screen), std::move(steps), pictures, out_);
  }
  std::string said() const { return out_.str(); }

  VirtualTime time_;
  teashop::TeashopApplication application_;
  std::ostringstream out_;
};

TEST_F(Play, TellsWhatEachStepLookedUpAndReturned) {
  const auto folder = std::filesystem::temp_directory_path() / ("play_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  EXPECT_EQ(play("shop",
                 {doing("product-sencha", "ShopScreen", "TYPE_DEFAULT"), doing("addToCart", "ProductScreen"),
                  doing("productShare", "ProductScreen", "TYPE_BAR_BUTTON_ITEM")},
                 folder),
            Outcome::succeeded);
  EXPECT_THAT(said(), HasSubstr("1.5 s  step 1 of 4   TYPE_DEFAULT  \"product-sencha\" on ShopScreen"));
  EXPECT_THAT(said(), HasSubstr("look-up 1 on ShopScreen: ProductCell, the tab bar of UITabBarController"));
  EXPECT_THAT(said(), HasSubstr("5.0 s  step 2 of 4"));
  EXPECT_THAT(said(), HasSubstr("done after 1 try, returned \"Add to cart"));
  EXPECT_THAT(said(), HasSubstr("a bar button item"));
  EXPECT_EQ(application_.shop()->cart.count(), 1);
  for (const char* name : {"step-01.png", "step-02.png", "step-03.png"}) {
    EXPECT_TRUE(std::filesystem::exists(folder / name)) << name;
  }
  std::filesystem::remove_all(folder);
}

TEST_F(Play, TellsFailuresAndStalls) {
  EXPECT_EQ(play("shop", {doing("notThere", "ShopScreen")}), Outcome::failed);
  EXPECT_THAT(said(), HasSubstr("FAILED after 1 try"));
  TLAction scrolling = doing("product-sencha", "ShopScreen");
  scrolling.scrollDetails = {{"nowhere", {0, 10}}};
  EXPECT_EQ(play("shop", {scrolling}), Outcome::failed);
  EXPECT_THAT(said(), HasSubstr("\"nowhere\" to 0, 10: NOT FOUND"));
  EXPECT_EQ(play("shop", {}), Outcome::stalled) << "one step performs nothing";
}

}  // namespace

}  // namespace play
