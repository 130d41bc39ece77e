#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <sys/resource.h>

#include "lumicor/screen/LumicorSnapshot.h"
#include "tests/lumicor/support/StubService.h"

namespace lumicor::test {

namespace {

LumicroElement element(const std::string& id, std::int64_t x = 0, std::int64_t y = 0) {
  return {id,
          "",
          x,
          y,
          120,
          44,
          "",
          false,
          "",
          "",
          "Pay",
          "Default",
          LumicorType::TYPE_INPUT,
          LumicorInputType::TYPE_BUTTON};
}

LumicroElement emptyElement() {
  return {"", "", 0, 0, 0, 0, "", false, "", "", "", "", LumicorType::TYPE_DEFAULT, LumicorInputType::TYPE_DEFAULT};
}

LumicorSnapshot cart() {
  return {"CartScreen",
          844,
          390,
          "PORTRAIT",
          {element("pay", 20, 700), element("note \"for\" us\n", -4, -12)},
          {element("amount", 20, 100)},
          element("pay", 20, 700),
          {{"feed", {0, 0, 240}}, {"LumicorCollectionView-list-0-5", {1, 0, 0}}},
          "Default",
          "key-7",
          3};
}

std::string goldenText(const char* name) {
  std::ifstream file(std::string(GOLDEN_FOLDER) + "/" + name);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// Every member on a line of its own, for eyes; what is compared is the compact form.
std::string oneMemberALine(const std::string& compact) {
  std::string text;
  bool inString = false;
  for (std::size_t i = 0; i < compact.size(); ++i) {
    const char c = compact[i];
    if (c == '"' && (i == 0 || compact[i - 1] != '\\')) inString = !inString;
    text += c;
    if (!inString && (c == ',' || c == '{' || c == '[')) text += '\n';
  }
  return text + '\n';
}

}  // namespace

TEST(Vocabulary, AcceptsExactlyItsRawValuesInTheirOrder) {
  const std::vector<std::string> types = {
      "TYPE_TEXT",          "TYPE_IMAGE",       "TYPE_WEBVIEW",         "TYPE_RADIO_GROUP",
      "TYPE_INPUT",         "TYPE_TABBAR",      "TYPE_BAR_BUTTON_ITEM", "TYPE_SEARCH",
      "TYPE_SEARCH_CANCEL", "TYPE_SYSTEM_BACK", "TYPE_PICKER_VIEW",     "TYPE_DEFAULT"};
  for (std::size_t i = 0; i < types.size(); ++i) {
    EXPECT_EQ(caseFromRawValue<LumicorType>(types[i]), LumicorType(i));
    EXPECT_EQ(rawValue(LumicorType(i)), types[i]);
  }
  const std::vector<std::string> inputs = {"TYPE_EDIT_TEXT", "TYPE_BUTTON",          "TYPE_CHECKBOX",
                                           "TYPE_RADIO",     "TYPE_SELECT",          "TYPE_PROGRESS_BAR",
                                           "TYPE_TOGGLE",    "TYPE_BAR_BUTTON_ITEM", "TYPE_DEFAULT"};
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    EXPECT_EQ(caseFromRawValue<LumicorInputType>(inputs[i]), LumicorInputType(i));
  }
  EXPECT_FALSE(caseFromRawValue<LumicorType>("TYPE_BUTTON"));
  EXPECT_FALSE(caseFromRawValue<LumicorType>("type_text"));
  EXPECT_FALSE(caseFromRawValue<LumicorInputType>("TYPE_TEXT"));
}

TEST(LumicroElement, WritesAllKeysInOrderAlsoEmptyOnes) {
  EXPECT_EQ(*encodeJSON(emptyElement()),
            R"({"elementId":"","fragmentId":"","x":0,"y":0,"width":0,"height":0,"actionName":"",)"
            R"("isNavigational":false,"actionId":"","destination":"","value":"","elementDescription":"",)"
            R"("type":"TYPE_DEFAULT","inputType":"TYPE_DEFAULT"})");
}

TEST(LumicroElement, DiffersInEveryFieldAndChangesInThree) {
  const JSONValue whole = toJSONValue(element("pay"));
  EXPECT_EQ(*decodeRecord<LumicroElement>(whole), element("pay"));
  for (const auto& [name, value] : *whole.asObject()) {
    JSONValue other = whole;
    if (name == "type" || name == "inputType") {
      other.set(name, "TYPE_BAR_BUTTON_ITEM");
    } else if (value.asString()) {
      other.set(name, *value.asString() + "!");
    } else {
      other.set(name, value.asBool() ? JSONValue(!*value.asBool()) : JSONValue(*value.asInteger() + 1));
    }
    EXPECT_NE(*decodeRecord<LumicroElement>(other), element("pay")) << name;
  }
  LumicroElement changed = element("pay");
  changed.setNavigational(true);
  changed.setDestination("Thanks");
  changed.setValue("Paid");
  JSONValue expected = whole;
  expected.set("isNavigational", true).set("destination", "Thanks").set("value", "Paid");
  EXPECT_EQ(toJSONValue(changed), expected);
}

TEST(LumicroElement, DecodesOnlyWhenEveryKeyHasItsType) {
  const JSONValue whole = toJSONValue(element("pay", -4, 7));
  ASSERT_TRUE(decodeRecord<LumicroElement>(whole));
  EXPECT_EQ(decodeRecord<LumicroElement>(whole)->x(), -4);
  for (const auto& [name, value] : *whole.asObject()) {
    SCOPED_TRACE(name);
    JSONValue broken = whole;
    broken.set(name, nullptr);
    EXPECT_FALSE(decodeRecord<LumicroElement>(broken));
    broken.set(name, value.asString() ? JSONValue(1) : JSONValue("1"));
    EXPECT_FALSE(decodeRecord<LumicroElement>(broken));
    std::erase_if(*broken.asObject(), [&, key = name](const auto& member) { return member.first == key; });
    EXPECT_FALSE(decodeRecord<LumicroElement>(broken));
  }
  JSONValue other = whole;
  EXPECT_FALSE(decodeRecord<LumicroElement>(other.set("type", "TYPE_BUTTON")));
  EXPECT_TRUE(decodeRecord<LumicroElement>(
      other.set("type", "TYPE_BAR_BUTTON_ITEM").set("inputType", "TYPE_BAR_BUTTON_ITEM").set("unknown", nullptr)));
  EXPECT_FALSE(decodeRecord<LumicroElement>(other.set("x", 0.5)));
}

TEST(LumicorSnapshot, EncodesAsTheGoldenFileSays) {
  const std::string compact = *encodeJSON(cart());
  EXPECT_EQ(oneMemberALine(compact), goldenText("cart-snapshot.json"));
  EXPECT_EQ(*decodeJSON<LumicorSnapshot>(compact), cart());
}

TEST(LumicorSnapshot, WritesEmptyListsAndMaps) {
  const LumicorSnapshot empty{"", 0, 0, "", {}, {}, emptyElement(), {}, "", "", 0};
  const std::string text = *encodeJSON(empty);
  EXPECT_THAT(text, testing::HasSubstr(R"("elements":[],"inputs":[],"actionElement":{)"));
  EXPECT_THAT(text, testing::HasSubstr(R"("scrollDetails":{},"viewDescription")"));
}

TEST(LumicorSnapshot, FailsAsAWholeAndNamesThePlace) {
  const JSONValue whole = toJSONValue(cart());
  for (const auto& [name, value] : *whole.asObject()) {
    JSONValue broken = whole;
    EXPECT_FALSE(decodeRecord<LumicorSnapshot>(broken.set(name, nullptr))) << name;
  }
  std::string text = *encodeJSON(cart());
  const std::size_t at = text.rfind("\"elementDescription\":\"Default\",");
  text.erase(at, std::string("\"elementDescription\":\"Default\",").size());
  const auto decoded = decodeJSON<LumicorSnapshot>(text);
  ASSERT_FALSE(decoded);
  EXPECT_THAT(decoded.error(), testing::HasSubstr("actionElement.elementDescription"));
}

// ---- Malformed input, read the way a reply is read

/// Every way in which one member of a record can be wrong: gone, null, of another type, out of its range.
std::vector<std::pair<std::string, JSONValue>> broken(const JSONValue& record, const std::string& name) {
  const JSONValue& value = *record.find(name);
  std::vector<std::pair<std::string, JSONValue>> all;
  JSONValue missing = record;
  std::erase_if(*missing.asObject(), [&](const auto& member) { return member.first == name; });
  all.emplace_back("missing", missing);
  const auto with = [&](const std::string& what, const JSONValue& wrong) {
    JSONValue changed = record;
    all.emplace_back(what, changed.set(name, wrong));
  };
  with("null", nullptr);
  with("another type", value.asString() ? JSONValue(7) : JSONValue("7"));
  with("a list of lists", JSONValue::array({JSONValue::array({})}));
  if (!value.asObject()) with("an object", JSONValue::object({{"a", 1}}));
  if (value.asInteger()) {
    with("a fraction", 0.5);
    with("beyond 64 bits", 1e19);
  }
  if (name == "type" || name == "inputType") {
    with("outside the vocabulary", "TYPE_UNHEARD_OF");
    with("of the other vocabulary", name == "type" ? "TYPE_BUTTON" : "TYPE_TEXT");
  }
  return all;
}

TEST(MalformedSnapshots, FailWithThePathOfWhatIsWrong) {
  const JSONValue whole = toJSONValue(cart());
  const auto expectRefused = [](const JSONValue& snapshot, const std::string& path, const std::string& what) {
    const auto decoded = decodeJSON<LumicorSnapshot>(*snapshot.encode());
    EXPECT_FALSE(decoded) << path << ": " << what;
    EXPECT_THAT(decoded.error(), testing::StartsWith(path)) << what;
  };
  for (const auto& [name, value] : *whole.asObject()) {
    for (const auto& [what, snapshot] : broken(whole, name)) expectRefused(snapshot, name, what);
  }
  const JSONValue& element = whole.find("elements")->asArray()->at(1);
  for (const auto& [name, value] : *element.asObject()) {
    for (const auto& [what, wrong] : broken(element, name)) {
      JSONValue snapshot = whole;
      snapshot.set("elements", JSONValue::array({element, wrong}));
      expectRefused(snapshot, "elements[1]." + name, what);
      expectRefused(JSONValue(whole).set("actionElement", wrong), "actionElement." + name, what);
    }
  }
  const JSONValue& scroll = *whole.find("scrollDetails")->find("feed");
  for (const auto& [name, value] : *scroll.asObject()) {
    for (const auto& [what, wrong] : broken(scroll, name)) {
      expectRefused(JSONValue(whole).set("scrollDetails", JSONValue::object({{"feed", wrong}})),
                    "scrollDetails.feed." + name, what);
    }
  }
}

TEST(MalformedSnapshots, AreRefusedBeforeTheyCostMemoryOrStack) {
  for (const std::string& text :
       {std::string(100'000'000, '['), std::string(60'000'000, '['), "{\"elements\":" + std::string(100'000, '['),
        "{\"elements\":[{\"elementId\":" + std::string(100'000, '{')}) {
    const auto decoded = decodeJSON<LumicorSnapshot>(text);
    EXPECT_FALSE(decoded);
    EXPECT_FALSE(decoded.error().empty());
    EXPECT_LT(decoded.error().size(), 500u);
  }
// Sanitizers need memory of their own; they are used with clang.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__clang__)
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  EXPECT_LT(used.ru_maxrss, 400'000) << "kilobytes, of which the texts take 160,000";
#endif
}

TEST(LumicorSnapshot, StaysJSONWhateverItsIdentifiersAre) {
  for (const std::string& id : {std::string(), std::string(1 << 20, 'x'), std::string("\xff\xc3(\0\x1f", 5),
                                std::string("caf\xc3\xa9 \xf0\x9f\x8d\xb5")}) {
    const auto text = encodeJSON(std::vector{element(id)});
    ASSERT_TRUE(text);
    const auto parsed = JSONValue::parse(*text);
    ASSERT_TRUE(parsed) << parsed.error();
    ASSERT_TRUE(decodeJSON<std::vector<LumicroElement>>(*text));
    const std::string& read = *parsed->asArray()->at(0).find("elementId")->asString();
    const bool isText = id.empty() || id[0] != '\xff';
    EXPECT_EQ(read == id, isText);
  }
}

}  // namespace lumicor::test
