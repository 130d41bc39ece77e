// The project's own reader of JSON against the packaged one, and its several ways through a document against each
// other.

#ifndef NDEBUG
#define NDEBUG
#endif
#include <random>
#include <simdjson.h>

#include "platform/foundation/Record.h"

namespace platform {
namespace {

using detail::JSONReader;
using detail::Place;

/// A record with a field of every kind.
struct Everything {
  std::string text;
  std::int64_t whole;
  bool flag;
  double number;
  std::vector<std::string> list;
  std::map<std::string, std::int64_t> table;
  std::vector<std::vector<std::int64_t>> grid;

  static constexpr auto fields() {
    using E = Everything;
    return std::tuple{field("text", &E::text),     field("whole", &E::whole), field("flag", &E::flag),
                      field("number", &E::number), field("list", &E::list),   field("table", &E::table),
                      field("grid", &E::grid)};
  }
  friend bool operator==(const Everything&, const Everything&) = default;
};

/// A record that looks at nothing of what its document holds.
struct Nothing {
  static constexpr std::tuple<> fields() { return {}; }
};

bool isPassedOver(std::string_view text) {
  JSONReader reader(text);
  return detail::isAtEnd(reader, detail::skipValue(reader, detail::skipSpace(reader, reader.begin)));
}

simdjson::error_code packagedVerdict(const std::string& text, std::string& minified) {
  static simdjson::dom::parser parser;
  simdjson::dom::element element;
  const auto error = parser.parse(text).get(element);
  if (!error) minified = simdjson::minify(element);
  return error;
}

bool hasLongInteger(std::string_view text) {
  std::size_t digits = 0;
  for (const char c : text) {
    digits = c >= '0' && c <= '9' ? digits + 1 : 0;
    if (digits >= 19) return true;
  }
  return false;
}

/// Every way of reading must come to the same verdict about a document, and the packaged parser as well: but for
/// integers beyond 64 bits, which are numbers here.
void expectOneVerdict(const std::string& text) {
  SCOPED_TRACE(text);
  const Result<JSONValue> value = JSONValue::parse(text);
  std::string minified;
  const auto error = packagedVerdict(text, minified);
  if (error != simdjson::NUMBER_ERROR || !hasLongInteger(text)) {
    ASSERT_EQ(value.hasValue(), !error) << error << " " << value.error();
    if (value && !hasLongInteger(text)) {
      ASSERT_TRUE(*JSONValue::parse(minified) == *value) << minified;
    }
  }
  ASSERT_EQ(isPassedOver(text), value.hasValue());
  ASSERT_EQ(decodeJSON<Nothing>("{\"unknown\":" + text + "}").hasValue(), value.hasValue());

  const Result<Everything> direct = decodeJSON<Everything>(text);
  const Result<Everything> careful =
      value ? decodeRecord<Everything>(*value) : Result<Everything>(Failure{value.error()});
  ASSERT_EQ(direct.error(), careful.error());
  if (direct) {
    ASSERT_TRUE(*direct == *careful);
  }
}

const Everything something{"a \"text\" of \u00e9 and \U0001F600 with more than sixteen bytes",
                           -12,
                           true,
                           0.5,
                           {"", "short", "sixteen bytes ..", "line\n"},
                           {{"one", 1}, {"", -1}},
                           {{1, 2, 3}, {}, {1714564800000}}};

TEST(JSONReader, TakesAndRefusesWhatThePackagedParserDoes) {
  const char* const table[] = {
      R"("\udc00")",
      R"("\ud800")",
      R"("\ud800x")",
      R"("\ud800\u0041")",
      R"("\ud83d\ude00")",
      R"("\ud800\ud800")",
      R"("\uD83D\uDE00\u00E9")",
      R"("\u0000")",
      R"("\ud800\uxxxx")",
      R"({"\ud800":1})",
      R"({"\u0061":1,"a":2})",
      R"("\/\b\f\n\r\t\"\\")",
      R"("\q")",
      R"("\)",
      R"("\u12")",
      R"("\u00g0")",
      "\"\x7f\"",
      "\"\x1f\"",
      "1e400",
      "-1e400",
      "1e-400",
      "-1e-5000",
      "0e999999999999999999",
      "0.0e400",
      "1e99999999999999999999",
      "100e9223372036854775807",
      "0.01e-9223372036854775808",
      "1.7976931348623159e308",
      "1.7976931348623157e308",
      "4.9e-324",
      "2e-324",
      "100000000000000000000.0",
      "-0",
      "00",
      "-",
      "1.e1",
      "1e1.0",
      "1E+2",
      "1e+",
      "0.",
      "0x1",
      "[-]",
      "[1,-01]",
      "18446744073709551615",
      "18446744073709551616",
      "-9223372036854775809",
      "[1,123456789012345678901234567890]",
      "[1]\x01",
      "\f1",
      "null ",
      "nul",
      "[truex]",
      "[true false]",
      "[true,false,null]",
      "{\"a\":1,\"a\":2}",
      "{}",
      "{ }",
      "[ ]",
      "[,]",
      "{,}",
      "[1,]",
      "{\"a\":1,}",
      "{\"a\"}",
      "{\"a\":}",
      "{1:2}",
      "[1}",
      "{\"a\":1]",
      "\"\xC3\xA9\"",
      "\"\xE2\x82\xAC\"",
      "\"\xF0\x9F\x98\x80\"",
      "\"\xF4\x90\x80\x80\"",
      "\"\xED\xA0\x80\"",
      "\"\xC0\xAF\"",
      "\"\xE2\x82\"",
      "\"\x80\"",
      "\"0123456789012345\xC3\"",
      "\"0123456789012345\xC3\xA9 and more than that\"",
      "\xC3\xA9",
      " 1 ",
      "\t[\r\n1 , 2 ]",
  };
  for (const char* const text : table) expectOneVerdict(text);
  expectOneVerdict(std::string("[1\0]", 4));
  expectOneVerdict(std::string("[1]\0", 4));
  expectOneVerdict(std::string("\"\0\"", 3));
}

TEST(JSONReader, TakesAndRefusesWhatThePackagedParserDoesOfDamagedDocuments) {
  std::mt19937 random(20261123);
  const std::string whole = *encodeJSON(something);
  const std::string spaced =
      " {\n\"grid\" : [ [1 ,2], [ ] ] , \"more\": {\"deep\": [null, \"\\ud83d\\ude00\", -1.5e3]},"
      "\"te\\u0078t\":\"\", \"whole\":2e2 ,\"flag\":false,\"number\":7,\"list\":[ ],\"table\":{ } }";
  static constexpr std::string_view pieces[] = {"\"",   "\\",   ",",       ":",       "{",
                                                "}",    "[",    "]",       "0",       "9",
                                                "-",    ".",    "e",       "E5",      " ",
                                                "\n",   "\x01", "\x80",    "\xC3",    "\xC3\xA9",
                                                "true", "null", "\\u00e9", "\\ud800", "1234567890123456789012",
                                                "text", "\t",   "+",       ""};
  ASSERT_TRUE(decodeJSON<Everything>(spaced));
  for (int i = 0; i < 20'000; ++i) {
    std::string text = i % 2 ? whole : spaced;
    for (unsigned changes = 1 + random() % 3; changes > 0; --changes) {
      const std::string_view piece = pieces[random() % std::size(pieces)];
      text.replace(random() % text.size(), random() % 3, piece);
    }
    if (random() % 8 == 0) text.resize(random() % text.size());
    ASSERT_NO_FATAL_FAILURE(expectOneVerdict(text));
  }
}

TEST(JSONReader, ReadsWhatIsWrittenWithoutASecondLook) {
  const std::string text = *encodeJSON(std::vector<Everything>(40, something));
  JSONReader reader(text);
  std::vector<Everything> read;
  EXPECT_TRUE(detail::isAtEnd(reader, detail::Coder<std::vector<Everything>>::read(reader, reader.begin, read)));
  EXPECT_TRUE(read == std::vector<Everything>(40, something));
}

TEST(JSONReader, LooksAtBytesInTheSameWayOnEveryProcessor) {
  std::mt19937 random(5);
  for (int i = 0; i < 200'000; ++i) {
    std::array<char, 16> bytes{};
    for (char& byte : bytes) byte = static_cast<char>(random() % 8 == 0 ? random() : 'a' + random() % 26);
    unsigned plain = 0;
    while (plain < 16 && detail::isPlain(static_cast<unsigned char>(bytes[plain]))) ++plain;
    ASSERT_EQ(detail::plainOf16(bytes.data()), plain);
    ASSERT_EQ(detail::plainOf16Anywhere(bytes.data()), plain);
  }
}

TEST(JSONReader, BoundsNestingAlikeOnEveryWay) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + "1" + std::string(depth, ']'); };
  for (const std::size_t depth : {JSONValue::maximumDepth - 1, JSONValue::maximumDepth, JSONValue::maximumDepth + 1}) {
    const bool isTaken = depth <= JSONValue::maximumDepth;
    EXPECT_EQ(JSONValue::parse(nested(depth)).hasValue(), isTaken) << depth;
    EXPECT_EQ(isPassedOver(nested(depth)), isTaken) << depth;
    EXPECT_EQ(decodeJSON<Nothing>("{\"a\":" + nested(depth - 1) + "}").hasValue(), isTaken) << depth;
  }
}

}  // namespace
}  // namespace platform
