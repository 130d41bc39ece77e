#include <gmock/gmock.h>

#include "lumicor/actions/TLPickerRow.h"
#include "lumicor/actions/TLStepPreparation.h"
#include "lumicor/core/TLAction.h"
#include "lumicor/core/TLDefaults.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

using testing::ElementsAre;

namespace {

const char* const wholeStep = R"({"elementId":"pay","index":2,"value":"x","scrollDetails":[{"viewId":"a-b",
    "offsets":{"x":1,"y":-2}}],"viewName":"Cart","actionType":"TYPE_BUTTON"})";

/// True when the record decodes whole, and no longer once any one of its members is missing, null or of another type.
template <class T>
void expectStrict(const char* text) {
  const JSONValue whole = json(text);
  ASSERT_TRUE(decodeRecord<T>(whole)) << decodeRecord<T>(whole).error();
  for (const auto& [name, value] : *whole.asObject()) {
    SCOPED_TRACE(name);
    JSONValue broken = whole;
    EXPECT_FALSE(decodeRecord<T>(broken.set(name, nullptr)));
    EXPECT_FALSE(decodeRecord<T>(broken.set(name, value.asString() ? JSONValue(1) : JSONValue("1"))));
    EXPECT_FALSE(decodeRecord<T>(broken.set(name, true)));
    std::erase_if(*broken.asObject(), [key = name](const auto& member) { return member.first == key; });
    EXPECT_FALSE(decodeRecord<T>(broken));
  }
  JSONValue more = whole;
  EXPECT_TRUE(decodeRecord<T>(more.set("unknown", nullptr)));
}

}  // namespace

TEST(StepRecords, WantEveryKeyWithItsType) {
  expectStrict<TLAction>(wholeStep);
  expectStrict<TLScrollActionDetails>(R"({"viewId":"a","offsets":{"x":1,"y":2}})");
  expectStrict<TLScrollOffset>(R"({"x":1,"y":2})");
  expectStrict<TLActionPosition>(R"({"x":1,"y":2,"width":3,"height":4})");
  expectStrict<TLDefaults>(R"({"failureMessage":"no","successMessageTemplate":"yes"})");
}

TEST(StepRecords, TakeWholeNumbersAlone) {
  EXPECT_FALSE(decodeJSON<TLScrollOffset>(R"({"x":0.5,"y":0})"));
  EXPECT_EQ(decodeJSON<TLScrollOffset>(R"({"x":1e3,"y":2.0})").value().x, 1000) << "whole in any form";
  EXPECT_FALSE(decodeJSON<TLScrollOffset>(R"({"x":9223372036854775808,"y":0})"));
}

TEST(StepRecords, FailAsAWholeList) {
  const std::string list = "[" + std::string(wholeStep) + R"(,{"elementId":"pay"}])";
  EXPECT_FALSE(decodeJSON<std::vector<TLAction>>(list));
}

TEST(StepPreparation, SortsByTheSignedIndexAndKeepsTheOrderOfEqualOnes) {
  std::vector<TLAction> steps;
  for (int i = 0; i < 100; ++i) steps.push_back({std::to_string(i), 1 - i % 3, "", {}, "", ""});
  const std::vector<TLAction> sorted = preparedSteps(steps);
  std::vector<std::string> order, expected;
  for (const TLAction& step : sorted) order.push_back(step.elementId);
  for (const int remainder : {2, 1, 0}) {  // indexes -1, 0 and 1
    for (int i = remainder; i < 100; i += 3) expected.push_back(std::to_string(i));
  }
  EXPECT_EQ(order, expected);
}

TEST(PickerRow, IsTwoDecimalNumbersAtADash) {
  const auto row = TLPickerRow::parse("12-3");
  ASSERT_TRUE(row);
  EXPECT_EQ(row->row, 12);
  EXPECT_EQ(row->component, 3);
  EXPECT_TRUE(TLPickerRow::parse("2-0-9"));
  for (const char* text : {"", "-", "2", "2-", "-0", "x-0", "2-x", "-1-0", "99999999999999999999-0", "2--0"}) {
    EXPECT_FALSE(TLPickerRow::parse(text)) << text;
  }
}

TEST(PartsAtDashes, KeepEmptyParts) {
  EXPECT_THAT(partsAtDashes("a--b-"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(partsAtDashes(""), ElementsAre(""));
}

}  // namespace lumicor::test
