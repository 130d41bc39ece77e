#include <cmath>
#include <limits>
#include <random>

#include "platform/foundation/JSONValue.h"

namespace platform {
namespace {

using testing::HasSubstr;

std::string encoded(const JSONValue& value) {
  const Result<Data> bytes = value.encode();
  EXPECT_TRUE(bytes) << bytes.error();
  return bytes ? *bytes : "";
}

/// Reads and writes again.
std::string rewritten(std::string_view text) {
  const Result<JSONValue> value = JSONValue::parse(text);
  return value ? encoded(*value) : "error: " + value.error();
}

TEST(JSONValue, KeepsBooleansIntegersAndOtherNumbersApart) {
  const JSONValue value = *JSONValue::parse(R"({"b":true,"i":1,"d":1.0,"e":1e0,"n":null,"s":"1"})");
  EXPECT_EQ(value.find("b")->asBool(), true);
  EXPECT_EQ(value.find("b")->asInteger(), std::nullopt);
  EXPECT_EQ(value.find("b")->asDouble(), std::nullopt);
  EXPECT_EQ(value.find("i")->asInteger(), 1);
  EXPECT_EQ(value.find("i")->asBool(), std::nullopt);
  EXPECT_EQ(value.find("i")->asDouble(), 1.0);
  EXPECT_EQ(value.find("d")->kind(), JSONValue::Kind::number);
  EXPECT_TRUE(value.find("n")->isNull());
  EXPECT_EQ(value.find("s")->asInteger(), std::nullopt);
  EXPECT_EQ(value.find("absent"), nullptr);
  EXPECT_EQ(JSONValue(1).find("b"), nullptr);
}

TEST(JSONValue, IsBuiltInPlaceAndKeepsTheOrderOfMembers) {
  JSONValue body =
      JSONValue::object({{"query", "tea"}, {"limit", 10}, {"tags", JSONValue::array({"a", nullptr, 0.5})}});
  body.set("zebra", true).set("apple", JSONValue::object()).set("limit", 20);
  EXPECT_EQ(encoded(body), R"({"query":"tea","limit":20,"tags":["a",null,0.5],"zebra":true,"apple":{}})");
  JSONValue list;
  list.append(1).append(JSONValue::array());
  EXPECT_EQ(encoded(list), "[1,[]]");
  EXPECT_EQ(encoded(JSONValue::object({{"a", 1}, {"b", 2}, {"a", 3}})), R"({"a":3,"b":2})");
}

TEST(JSONValue, ReadsNumbersToTheLastDigit) {
  const struct {
    const char* text;
    const char* expected;
  } table[] = {
      {"0", "0"},
      {"-0", "0"},
      {"9223372036854775807", "9223372036854775807"},
      {"-9223372036854775808", "-9223372036854775808"},
      {"9223372036854775808", "9223372036854775808.0"},  // beyond a signed integer
      {"-9223372036854775809", "-9223372036854775808.0"},
      {"123456789012345678901234567890", "1.2345678901234568e+29"},
      {"1.0", "1.0"},
      {"120.0", "120.0"},
      {"0.1", "0.1"},
      {"1e2", "100.0"},
      {"1E-7", "1e-07"},
      {"123456789012.5", "123456789012.5"},
      {"1.7976931348623157e308", "1.7976931348623157e+308"},
      {"5e-324", "5e-324"},
      {"-0.0", "-0.0"},
      {"3.141592653589793", "3.141592653589793"},
  };
  for (const auto& row : table) EXPECT_EQ(rewritten(row.text), row.expected) << row.text;
}

TEST(JSONValue, WritesEscapesThatEveryReaderUnderstands) {
  EXPECT_EQ(encoded(JSONValue("\"\\/\b\f\n\r\t")), R"("\"\\/\b\f\n\r\t")");
  EXPECT_EQ(encoded(JSONValue(std::string("\0\x01\x1f\x7f", 4))), "\"\\u0000\\u0001\\u001f\x7f\"");
  EXPECT_EQ(rewritten(R"("\u0041\u00e9\u20ac\ud83d\ude00")"), "\"Aé€😀\"");
  EXPECT_EQ(rewritten(R"({"k\u0065y\n":1})"), R"({"key\n":1})");
}

TEST(JSONValue, PutsAReplacementCharacterWhereTextIsNotUTF8) {
  const struct {
    const char* text;
    const char* expected;
  } table[] = {
      {"a\xFFz", "a\uFFFDz"},
      {"\x80", "\uFFFD"},
      {"\xC0\xAF", "\uFFFD\uFFFD"},            // an overlong slash
      {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},  // a surrogate
      {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xE2\x82", "\uFFFD"},  // the beginning of a euro sign
      {"\xE2\x82x", "\uFFFDx"},
      {"\xF0\x9F\x98\x80 ok", "\U0001F600 ok"},
  };
  for (const auto& row : table) {
    const std::string text = encoded(JSONValue(row.text));
    EXPECT_EQ(text, "\"" + std::string(row.expected) + "\"");
    EXPECT_TRUE(JSONValue::parse(text));
  }
}

TEST(JSONValue, EscapesAnywhereInTextOfAnyLength) {
  // The writer copies sixteen bytes at a time; every position in and around such a block is tried.
  for (std::size_t length = 0; length < 70; ++length) {
    const std::string plain(length, 'x');
    ASSERT_EQ(encoded(JSONValue(plain)), "\"" + plain + "\"");
    for (std::size_t at = 0; at < length; ++at) {
      for (const std::string_view special : {"\"", "\n", "é", "\xFF"}) {
        std::string text = plain;
        text.replace(at, 1, special);
        const std::string_view written = special == "\""   ? "\\\""
                                         : special == "\n" ? "\\n"
                                         : special == "é"  ? "é"
                                                           : "\uFFFD";
        std::string expected = plain;
        expected.replace(at, 1, written);
        ASSERT_EQ(encoded(JSONValue(text)), "\"" + expected + "\"") << length << " " << at;
      }
    }
  }
}

TEST(JSONValue, RefusesWhatIsNotJSON) {
  const char* const table[] = {
      "",
      " ",
      "{",
      "[",
      "]",
      "}",
      "[1,]",
      "[,1]",
      "[1 2]",
      "{\"a\"}",
      "{\"a\":}",
      "{\"a\":1,}",
      "{a:1}",
      "{'a':1}",
      "{\"a\" 1}",
      "{\"a\":1 \"b\":2}",
      "[1}",
      "{\"a\":1]",
      "\"open",
      "\"tab\there\"",
      "\"line\nbreak\"",
      "\"wrong \\x escape\"",
      "\"\\u12g4\"",
      "\"\\u12\"",
      "01",
      "-",
      "+1",
      ".5",
      "1.",
      "1e",
      "1e+",
      "0x10",
      "NaN",
      "Infinity",
      "1e400",
      "tru",
      "True",
      "nulll",
      "null null",
      "[] []",
      "{} x",
      "// note\n1",
      "\xEF\xBB\xBF",
      "\xEF\xBB\xBF\xEF\xBB\xBF{}",
      " \xEF\xBB\xBF{}",
      "\xEF\xBB{}",
      "\"\xFF\"",
      "\"\xC0\xAF\"",
      "\"\xED\xA0\x80\"",
      "\xFF",
      "[1,2",
      "{\"a\":[1,2}",
      "[\"a\",\"b\"",
  };
  for (const char* const text : table) {
    const Result<JSONValue> value = JSONValue::parse(text);
    EXPECT_FALSE(value) << text;
    EXPECT_THAT(value.error(), HasSubstr("not valid JSON: ")) << text;
  }
  EXPECT_FALSE(JSONValue::parse(std::string("[1\0]", 4)));
}

TEST(JSONValue, PassesOverAByteOrderMark) { EXPECT_EQ(rewritten("\xEF\xBB\xBF {\"a\":1}"), R"({"a":1})"); }

TEST(JSONValue, TakesTheLastOfEqualMembersAtThePlaceOfTheFirst) {
  EXPECT_EQ(rewritten(R"({"a":1,"b":2,"a":3})"), R"({"a":3,"b":2})");
  std::string many = "{";
  for (int i = 0; i < 40; ++i) many += "\"k" + std::to_string(i % 30) + "\":" + std::to_string(i) + ",";
  many.back() = '}';
  const JSONValue value = *JSONValue::parse(many);
  EXPECT_EQ(value.asObject()->size(), 30U);
  EXPECT_EQ(value.find("k3")->asInteger(), 33);
  EXPECT_EQ(value.find("k15")->asInteger(), 15);
}

TEST(JSONValue, BoundsNestingWhenReadingAndWriting) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  EXPECT_EQ(rewritten(nested(JSONValue::maximumDepth)), nested(JSONValue::maximumDepth));
  EXPECT_EQ(rewritten(nested(JSONValue::maximumDepth + 1)), "error: not valid JSON: it is nested too deeply");
  JSONValue deep;
  for (std::size_t i = 0; i <= JSONValue::maximumDepth; ++i) deep = JSONValue::array({std::move(deep)});
  EXPECT_FALSE(deep.encode());
}

TEST(JSONValue, RefusesFloodsOfBracketsBeforeTheyCostAnything) {
  EXPECT_EQ(rewritten(std::string(100 << 20, '[')), "error: the JSON document is too long");
  EXPECT_EQ(rewritten(std::string(60 << 20, '[')), "error: not valid JSON: it is nested too deeply");
  std::string members;
  for (int i = 0; i < 200'000; ++i) members += "{\"a\":";
  EXPECT_EQ(rewritten(members + "1" + std::string(200'000, '}')), "error: not valid JSON: it is nested too deeply");
  const std::string brackets(1 << 20, '[');
  EXPECT_EQ(*JSONValue::parse("\"" + brackets + "\"")->asString(), brackets) << "in a string they are text";
}

TEST(JSONValue, EndsHoweverDeeplyItIsNested) {
  JSONValue deep;
  for (int i = 0; i < 1'000'000; ++i) {
    JSONValue outer = JSONValue::array();
    outer.append(std::move(deep)).append("beside");
    deep = std::move(outer);
  }
  deep = nullptr;
  EXPECT_TRUE(deep.isNull());
}

TEST(JSONValue, MayBeReplacedByAPartOfItself) {
  JSONValue value = *JSONValue::parse(R"({"inner":{"list":[1,2,3]}})");
  value = std::move(*const_cast<JSONValue*>(value.find("inner")->find("list")));
  EXPECT_EQ(encoded(value), "[1,2,3]");
  value = JSONValue(value.asArray()->at(1));
  EXPECT_EQ(encoded(value), "2");
}

TEST(JSONValue, RefusesNumbersThatJSONCannotCarry) {
  for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_FALSE(JSONValue::object({{"a", JSONValue::array({number})}}).encode());
  }
}

TEST(JSONValue, WritesTextsLongerThanThePiecesTheyAreWrittenIn) {
  std::mt19937 random(11);
  for (std::size_t length = 8000; length < 8400; length += 7) {
    std::string text(2 * length, 'x');
    std::string expected = text;
    for (std::size_t i = random() % 300; i < text.size(); i += 200 + random() % 2000) text[i] = expected[i] = '\n';
    for (std::size_t at = 0; (at = expected.find('\n', at)) != std::string::npos; ++at) expected.replace(at, 1, "\\n");
    const JSONValue value = JSONValue::object({{text, JSONValue::array({text, text.substr(length)})}});
    ASSERT_EQ(encoded(value), "{\"" + expected + "\":[\"" + expected + "\"," + encoded(text.substr(length)) + "]}");
    ASSERT_TRUE(*JSONValue::parse(encoded(value)) == value);
  }
}

class RandomJSON {
 public:
  explicit RandomJSON(unsigned seed) : random_(seed) {}

  JSONValue value(int depth) {
    switch (pick(depth > 0 ? 8 : 6)) {
      case 0:
        return nullptr;
      case 1:
        return pick(2) == 1;
      case 2:
        return static_cast<std::int64_t>(bits());
      case 3:
        return number();
      case 4:
        return static_cast<std::int64_t>(pick(1000)) - 500;
      case 5:
        return text();
      case 6: {
        JSONValue list = JSONValue::array();
        for (std::size_t i = pick(5); i > 0; --i) list.append(value(depth - 1));
        return list;
      }
      default: {
        JSONValue object = JSONValue::object();
        for (std::size_t i = pick(5); i > 0; --i) object.set(text(), value(depth - 1));
        return object;
      }
    }
  }

 private:
  std::uint64_t bits() { return random_(); }
  std::size_t pick(std::size_t count) { return bits() % count; }
  double number() {
    for (;;) {
      const auto value = std::bit_cast<double>(bits());
      if (std::isfinite(value)) return value;
    }
  }
  std::string text() {
    static const std::vector<std::string> pieces{"a",   "\"", "\\", "\n", "é", "€", "😀", " plain text of some length ",
                                                 "\x01"};
    std::string text;
    for (std::size_t i = pick(6); i > 0; --i) text += pieces[pick(pieces.size())];
    return text;
  }
  std::mt19937_64 random_;
};

TEST(JSONValue, ReadsBackEveryValueItWrites) {
  RandomJSON random(20240501);
  for (int i = 0; i < 3000; ++i) {
    const JSONValue value = random.value(5);
    const std::string text = encoded(value);
    const Result<JSONValue> read = JSONValue::parse(text);
    ASSERT_TRUE(read) << read.error() << ": " << text;
    ASSERT_TRUE(*read == value) << text;
    ASSERT_EQ(encoded(*read), text);
  }
}

TEST(JSONValueDeath, DiesOfAMemberInWhatIsNoObject) {
  JSONValue text("text");
  EXPECT_DEATH(text.set("a", 1), "fatal error: JSONValue::set: the value is no object");
  EXPECT_DEATH(text.append(1), "fatal error: JSONValue::append: the value is no array");
}

}  // namespace
}  // namespace platform
