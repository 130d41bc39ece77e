#include "examples/teashop/model/DeliveryTime.h"
#include "lumicor/core/Lumicor.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/uikit/controls/NSProgress.h"
#include "platform/uikit/controls/UIProgressView.h"
#include "platform/uikit/lists/UIPickerView.h"
#include "platform/uikit/text/UIKeyboard.h"
#include "platform/uikit/text/UITextField.h"
#include "platform/uikit/text/UITextView.h"
#include "tests/examples/teashop/ShopFixture.h"

namespace teashop::test {

using testing::HasSubstr;
using testing::StartsWith;

using OrderTest = ShopFixture;

TEST_F(OrderTest, ADayCanBeTypedAndNonsenseIsTold) {
  open("delivery");
  const auto day = find<UITextField>("deliveryDate");
  const auto typed = [&](const std::string& words) {
    day->setText(words);
    day->sendActionsForControlEvents(UIControlEvents::editingChanged);
    return text("deliveryDateNote");
  };
  EXPECT_EQ(typed("2030-12-24"), "Tuesday, 24 December 2030");
  EXPECT_THAT(typed("soon"), StartsWith("Please write the day"));
  EXPECT_THAT(typed("2030-02-30"), StartsWith("Please write the day"));
  EXPECT_THAT(typed("1999-01-01"), StartsWith("The first day we can come is"));
}

TEST_F(OrderTest, ThePickerFillsItsFieldAndTheGiftItsPrice) {
  open("delivery");
  tap("deliverySlot");
  drag("deliverySlotPicker", 0, -32);
  EXPECT_THAT(text("deliverySlot"), testing::Not(testing::IsEmpty()));
  find("deliverySlot")->resignFirstResponder();
  RunLoop::advance(1);
  const std::string before = text("deliveryTotal");
  find("giftWrap");
  drag("deliveryForm", 0, -200);
  tap("giftWrap");
  EXPECT_NE(text("deliveryTotal"), before);
  tap("giftWrap");
  EXPECT_EQ(text("deliveryTotal"), before);
}

TEST_F(OrderTest, TheKeyboardNeverCoversWhatIsTypedInto) {
  open("delivery");
  drag("deliveryForm", 0, -240);
  tap("deliveryNotes");
  ASSERT_TRUE(UIKeyboard::shared().isVisible());
  const auto notes = find("deliveryNotes");
  EXPECT_LE(notes->convertRect(notes->bounds(), nullptr).maxY(), UIKeyboard::shared().frame().minY());
  type("Blue door");
  EXPECT_EQ(as<UITextView>(notes)->text(), "Blue door");
}

TEST_F(OrderTest, AnOrderKeepsWhatTheFormSays) {
  open("delivery");
  for (const auto& [field, words] : {std::pair("deliveryName", "Ada"), std::pair("deliveryStreet", "12 Harbour Street"),
                                     std::pair("deliveryCity", "Bristol"), std::pair("deliveryDate", "2030-12-24")}) {
    find<UITextField>(field)->setText(words);
    find<UITextField>(field)->sendActionsForControlEvents(UIControlEvents::editingChanged);
  }
  find<UIControl>("placeOrder")->sendActionsForControlEvents(UIControlEvents::touchUpInside);
  RunLoop::advance(1);
  ASSERT_EQ(screenName(), "ConfirmationScreen");
  EXPECT_THAT(text("orderSummary"), HasSubstr("Tuesday, 24 December 2030"));
  ASSERT_EQ(shop()->orders.orders().size(), 1u);
  EXPECT_TRUE(shop()->cart.isEmpty());
  tap("rate-4");
  EXPECT_EQ(text("ratingNote"), "Thank you: 4 of 5");
}

TEST_F(OrderTest, TheTimerRunsToItsEndAndStops) {
  open("timer");
  const auto wheels = find<UIPickerView>("timerMinutes");
  wheels->selectRow(0, 0, false);
  wheels->delegate()->perform<void>(sel("pickerView:didSelectRow:inComponent:"), wheels, std::int64_t{0},
                                    std::int64_t{0});
  EXPECT_EQ(text("timerRemaining"), "1:00");
  tapText("Start");
  RunLoop::advance(30);
  EXPECT_EQ(text("timerNote"), "Brewing \u2026");
  EXPECT_NEAR(find<UIProgressView>("timerProgress")->observedProgress()->fractionCompleted(), 0.5, 0.05);
  RunLoop::advance(60);
  EXPECT_EQ(text("timerNote"), "Your tea is ready");
  EXPECT_EQ(text("timerRemaining"), "0:00");
}

TEST_F(OrderTest, PreferencesAreLabelledWhereTheyStandAndTakeEffect) {
  open("preferences");
  const auto regions = lumicor::Lumicor::shared().getSwiftUICoordinates();
  for (const char* label : {"preferenceGreeting", "preferenceStrength", "preferenceNewsletter", "preferenceSummary"}) {
    ASSERT_TRUE(regions.contains(label)) << label;
    EXPECT_TRUE(regions.at(label).isVisible) << label;
  }
  const CGRect strength = regions.at("preferenceStrength").rect;
  const auto strong = find("strength-strong");
  EXPECT_TRUE(strength.insetBy(-1, -1).contains(strong->convertRect(strong->bounds(), nullptr).origin));
  tap("strength-strong");
  EXPECT_EQ(shop()->preferences.strength, "strong");
  open("shop");
  EXPECT_FALSE(lumicor::Lumicor::shared().getSwiftUICoordinates().at("preferenceStrength").isVisible);
}

TEST_F(OrderTest, EmptyingTheCartAsksFirst) {
  open("cart");
  tapBarButton("cartClear");
  tapText("Keep it");
  EXPECT_FALSE(shop()->cart.isEmpty());
  tapBarButton("cartClear");
  tapText("Empty it");
  EXPECT_TRUE(shop()->cart.isEmpty());
}

TEST_F(OrderTest, EveryScreenOfTheCatalogueCanFollowEveryOther) {
  for (const NamedScreen& first : screenCatalogue()) {
    for (const NamedScreen& second : screenCatalogue()) {
      open(first.name);
      const std::string before = screenName();
      open(second.name);
      EXPECT_EQ(screenName() == before, first.name == second.name) << first.name << ", " << second.name;
    }
  }
}

}  // namespace teashop::test
