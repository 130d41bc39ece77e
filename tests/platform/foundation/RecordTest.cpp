#include <cmath>
#include <cstdint>

#include "platform/foundation/Record.h"

namespace platform {
namespace {

enum class Size { small, large };

/// A class with fields that nobody can change, as most records are.
class Cup {
 public:
  Cup(std::string tea, std::int64_t millilitres, Size size)
      : tea_(std::move(tea)), millilitres_(millilitres), size_(size) {}
  const std::string& tea() const { return tea_; }
  std::int64_t millilitres() const { return millilitres_; }
  Size size() const { return size_; }
  static constexpr auto fields() {
    return std::tuple{field("tea", &Cup::tea_), field("millilitres", &Cup::millilitres_), field("size", &Cup::size_)};
  }

 private:
  const std::string tea_;
  const std::int64_t millilitres_;
  const Size size_;
};

struct Price {
  double amount;
  float discount;
  static constexpr auto fields() {
    return std::tuple{field("amount", &Price::amount), field("discount", &Price::discount)};
  }
};

/// An aggregate with everything that a field may be.
struct Order {
  bool isPaid;
  Price price;
  std::vector<Cup> cups;
  std::map<std::string, Cup> gifts;
  std::vector<std::vector<std::int64_t>> grid;
  std::vector<bool> flags;
  static constexpr auto fields() {
    return std::tuple{field("isPaid", &Order::isPaid), field("price", &Order::price), field("cups", &Order::cups),
                      field("gifts", &Order::gifts),   field("grid", &Order::grid),   field("flags", &Order::flags)};
  }
};

}  // namespace

template <>
struct RawValues<Size> {
  static constexpr std::pair<Size, std::string_view> cases[] = {{Size::small, "SMALL"}, {Size::large, "LARGE"}};
};

namespace {

const std::string orderText =
    R"({"isPaid":true,"price":{"amount":12.5,"discount":0.1},)"
    R"("cups":[{"tea":"Assam","millilitres":250,"size":"SMALL"},{"tea":"\"Sencha\"","millilitres":-1,"size":"LARGE"}],)"
    R"("gifts":{"a b":{"tea":"Chai","millilitres":100,"size":"LARGE"}},"grid":[[1,2],[],[3]],"flags":[true,false]})";

/// What is wrong with a document, as both ways of reading must say it.
template <class T>
std::string reasonAgainst(const std::string& text) {
  const Result<T> read = decodeJSON<T>(text);
  if (const Result<JSONValue> value = JSONValue::parse(text)) {
    const Result<T> converted = decodeRecord<T>(*value);
    EXPECT_EQ(read.hasValue(), converted.hasValue()) << text;
    EXPECT_EQ(read.error(), converted.error()) << text;
  }
  return read.error();
}

TEST(Record, IsWrittenCompactlyInDeclaredOrderAndReadBack) {
  const Result<Order> order = decodeJSON<Order>(orderText);
  ASSERT_TRUE(order) << order.error();
  EXPECT_EQ(order->cups[1].tea(), "\"Sencha\"");
  EXPECT_EQ(order->cups[1].millilitres(), -1);
  EXPECT_EQ(order->gifts.at("a b").size(), Size::large);
  EXPECT_EQ(order->price.discount, 0.1F);
  EXPECT_EQ(order->flags, (std::vector{true, false}));
  EXPECT_EQ(*encodeJSON(*order), orderText);
  EXPECT_EQ(*toJSONValue(*order).encode(), [] {
    std::string text = orderText;
    return text.replace(text.find("0.1"), 3, "0.10000000149011612");  // a value knows double precision only
  }());
}

TEST(Record, IsReadWhateverTheOrderTheSpacesAndTheEscapesOfItsKeys) {
  const std::string text =
      " [ { \"size\" : \"SMALL\" ,\n\"millilitres\":0, \"t\\u0065a\" : \"x\\ty\" } , "
      R"({"extra":{"deep":[1,{"tea":5}]},"tea":"","tea2":null,"millilitres":7,"size":"LARGE","more":1e5}])";
  const Result<std::vector<Cup>> cups = decodeJSON<std::vector<Cup>>(text);
  ASSERT_TRUE(cups) << cups.error();
  ASSERT_EQ(cups->size(), 2U);
  EXPECT_EQ(cups->at(0).tea(), "x\ty");
  EXPECT_EQ(cups->at(1).millilitres(), 7);
}

TEST(Record, ReadsAndWritesEmptyContainers) {
  EXPECT_EQ(*encodeJSON(std::vector<Cup>{}), "[]");
  EXPECT_TRUE(decodeJSON<std::vector<Cup>>(" [ ] ")->empty());
  EXPECT_EQ((*encodeJSON(std::map<std::string, Cup>{})), "{}");
  EXPECT_TRUE((decodeJSON<std::map<std::string, Cup>>("{}")->empty()));
}

TEST(Record, NamesTheFirstThingThatIsWrongAndItsPlace) {
  const auto spoiled = [](const std::string& from, const std::string& to) {
    std::string text = orderText;
    return text.replace(text.find(from), from.size(), to);
  };
  const struct {
    std::string text;
    std::string reason;
  } table[] = {
      {spoiled(R"("isPaid":true,)", ""), "isPaid: missing"},
      {spoiled("true", "1"), "isPaid: wants true or false"},
      {spoiled("true", "null"), "isPaid: wants true or false"},
      {spoiled("12.5", "\"12.5\""), "price.amount: wants a number"},
      {spoiled("12.5", "true"), "price.amount: wants a number"},
      {spoiled("0.1", "1e39"), "price.discount: wants a number of single precision"},
      {spoiled(R"({"amount":12.5,"discount":0.1})", "[]"), "price: wants an object"},
      {spoiled("250", "250.5"), "cups[0].millilitres: wants an integer"},
      {spoiled("250", "25e-1"), "cups[0].millilitres: wants an integer"},
      {spoiled("250", "1e30"), "cups[0].millilitres: wants an integer"},
      {spoiled("250", "123456789012345678901234567890"), "cups[0].millilitres: wants an integer"},
      {spoiled("250", "9223372036854775808"), "cups[0].millilitres: wants an integer"},
      {spoiled("250", "true"), "cups[0].millilitres: wants an integer"},
      {spoiled("250", "\"250\""), "cups[0].millilitres: wants an integer"},
      {spoiled(R"(,"size":"LARGE"}])", "}]"), "cups[1].size: missing"},
      {spoiled("SMALL", "small"), "cups[0].size: has no case \"small\""},
      {spoiled("\"SMALL\"", "0"), "cups[0].size: wants a string"},
      {spoiled("\"Assam\"", "null"), "cups[0].tea: wants a string"},
      {spoiled("\"Chai\"", "{}"), "gifts.a b.tea: wants a string"},
      {spoiled("[[1,2],[],[3]]", "[[1,2],{},[3]]"), "grid[1]: wants an array"},
      {spoiled("[[1,2],[],[3]]", "[[1,2],[],[3,null]]"), "grid[2][1]: wants an integer"},
      {spoiled("[true,false]", "[true,0]"), "flags[1]: wants true or false"},
      {"[" + orderText + "]", "wants an object"},
      {"7", "wants an object"},
      {"null", "wants an object"},
  };
  for (const auto& row : table) EXPECT_EQ(reasonAgainst<Order>(row.text), row.reason) << row.text;
  EXPECT_EQ(reasonAgainst<std::vector<Cup>>("{}"), "wants an array");
  EXPECT_EQ(
      reasonAgainst<std::vector<Cup>>(R"([{"tea":"a","millilitres":1,"size":"SMALL"},{"tea":"b","size":"SMALL"}])"),
      "[1].millilitres: missing");
}

TEST(Record, IsNotReadFromWhatIsNotJSONEvenWhereNobodyLooks) {
  const std::string good = R"({"tea":"a","millilitres":1,"size":"SMALL","extra":[1,{"b":"c"}]})";
  ASSERT_TRUE(decodeJSON<Cup>(good));
  const char* const table[][2] = {
      {"[1,", "[1 "},      {"\"c\"", "c"},         {"\"c\"", "\"\\q\""}, {"[1", "[01"},   {"[1", "[tru"},
      {"\"b\":", "\"b\""}, {"\"extra\"", "extra"}, {"}]}", "}]"},        {"}]}", "}]}}"}, {"}]}", "}]} x"},
      {"}]}", "]}}"},      {"\"c\"", "\"\xFF\""},  {"\"c\"", "\"\n\""},  {"}]}", "}],}"}, {"{\"tea\"", "{,\"tea\""},
  };
  for (const auto& row : table) {
    std::string text = good;
    text.replace(text.find(row[0]), std::string_view(row[0]).size(), row[1]);
    const Result<Cup> cup = decodeJSON<Cup>(text);
    EXPECT_FALSE(cup) << text;
    EXPECT_TRUE(cup.error().starts_with("not valid JSON: ")) << cup.error() << ": " << text;
  }
  for (std::size_t length = 0; length < orderText.size(); ++length) {
    ASSERT_FALSE(decodeJSON<Order>(orderText.substr(0, length))) << length;
  }
}

TEST(Record, TakesTheLastOfEqualKeysHoweverItIsRead) {
  const std::string text = R"({"tea":"first","millilitres":1,"size":"SMALL","tea":"last"})";
  EXPECT_EQ(decodeJSON<Cup>(text)->tea(), "last");
  EXPECT_EQ(decodeRecord<Cup>(*JSONValue::parse(text))->tea(), "last");
  EXPECT_EQ(reasonAgainst<Cup>(R"({"tea":"first","millilitres":1,"size":"SMALL","tea":null})"), "tea: wants a string");
  const std::string map =
      R"({"a":{"tea":"1","millilitres":1,"size":"SMALL"},"a":{"tea":"2","millilitres":1,"size":"SMALL"}})";
  EXPECT_EQ((decodeJSON<std::map<std::string, Cup>>(map)->at("a").tea()), "2");
}

TEST(Record, TakesIntegersWhereNumbersAreWanted) {
  const Result<Price> price = decodeJSON<Price>(R"({"amount":3,"discount":-7})");
  ASSERT_TRUE(price) << price.error();
  EXPECT_EQ(price->amount, 3.0);
  EXPECT_EQ(price->discount, -7.0F);
  EXPECT_EQ(*encodeJSON(*price), R"({"amount":3.0,"discount":-7.0})");
}

TEST(Record, TakesWholeNumbersHoweverTheyAreWritten) {
  const struct {
    const char* text;
    std::optional<std::int64_t> whole;
  } table[] = {
      {"7", 7},
      {"1.0", 1},
      {"2e2", 200},
      {"1E+2", 100},
      {"-0.0", 0},
      {"-0", 0},
      {"-12.50e1", -125},
      {"70e-1", 7},
      {"0.0e400", 0},
      {"12345678", 12345678},
      {"-123456789", -123456789},
      {"1714564800000", 1714564800000},
      {"123456789012345678", 123456789012345678},
      {"9007199254740993", 9007199254740993},
      {"9223372036854775807", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"-9.223372036854775e18", -9223372036854774784},
      {"1e18", 1000000000000000000},
      {"0.5", {}},
      {"-1.25", {}},
      {"5e-1", {}},
      {"9223372036854775808", {}},
      {"-9223372036854775809", {}},
      {"9.3e18", {}},
      {"1e30", {}},
      {"123456789012345678901234567890", {}},
      {"12345678901234567890123.0", {}},
      {"1e400", {}},
      {"01", {}},
      {"1.", {}},
      {"12345678x", {}},
  };
  using Whole = std::vector<std::int64_t>;
  for (const auto& row : table) {
    // Near the end of a document numbers are read more slowly than before it.
    for (const char* const behind : {"]", "                                ]"}) {
      const std::string text = std::string("[") + row.text + behind;
      const Result<Whole> read = decodeJSON<Whole>(text);
      EXPECT_EQ(read ? std::optional(read->front()) : std::nullopt, row.whole) << text << " " << read.error();
      const Result<JSONValue> value = JSONValue::parse(text);
      EXPECT_EQ(value ? value->asArray()->front().asInteger() : std::nullopt, row.whole) << text;
    }
  }
}

TEST(Record, PassesOverWhateverNumberNobodyAsksFor) {
  for (const char* const number : {"123456789012345678901234567890", "-99999999999999999999", "18446744073709551616"}) {
    const std::string text = std::string(R"({"tea":"a","extra":)") + number + R"(,"millilitres":2.5e2,"size":"LARGE"})";
    EXPECT_EQ(reasonAgainst<Cup>(text), "") << text;
    EXPECT_EQ(reasonAgainst<Cup>("\xEF\xBB\xBF" + text), "") << "nor does a byte-order mark matter";
  }
}

TEST(Record, IsNotWrittenWithANumberThatJSONCannotCarry) {
  EXPECT_FALSE(encodeJSON(std::vector{Price{1, 1}, Price{std::nan(""), 1}}));
  EXPECT_FALSE(encodeJSON(Price{1, HUGE_VALF}));
}

TEST(Record, BoundsWhatItReads) {
  std::string deep = R"({"tea":"a","millilitres":1,"size":"SMALL","extra":)" + std::string(100'000, '[') +
                     std::string(100'000, ']') + "}";
  EXPECT_EQ(reasonAgainst<Cup>(deep), "not valid JSON: it is nested too deeply");
  deep = R"({"tea":"a","millilitres":1,"size":"SMALL","extra":)" + std::string(600, '[') + std::string(600, ']') + "}";
  EXPECT_EQ(reasonAgainst<Cup>(deep), "not valid JSON: it is nested too deeply");
  EXPECT_EQ(decodeJSON<Cup>(std::string(JSONValue::maximumBytes + 1, ' ')).error(), "the JSON document is too long");
}

TEST(Record, MakesRoomForWhatComesNotForWhatCouldCome) {
  std::string text = "[";
  for (int i = 0; i < 20000; ++i) text += i ? ",[1,2,3]" : "[1,2,3]";
  const auto grid = decodeJSON<std::vector<std::vector<std::int64_t>>>(text + "]");
  ASSERT_TRUE(grid);
  std::size_t room = 0;
  for (const auto& row : *grid) room += row.capacity();
  EXPECT_LE(room, 20000u * 4);
  EXPECT_LE(grid->capacity(), 2u * 20000);
  const auto numbers = decodeJSON<std::vector<std::int64_t>>("[1" + std::string(3000, ' ') + "]");
  EXPECT_LE(numbers->capacity(), 8u);
}

enum class Sparse { few = -3, many = 40, other = 41 };

}  // namespace

/// Neither counted from zero nor without quotes.
template <>
struct RawValues<Sparse> {
  static constexpr std::pair<Sparse, std::string_view> cases[] = {{Sparse::many, "a \"lot\""}, {Sparse::few, ""}};
};

namespace {

/// How long a list becomes is guessed from a few of its elements.
TEST(Record, IsWrittenThoughTheLongestOfManyIsTakenForTheRest) {
  std::vector<std::string> list(1'000'000);
  list.front() = std::string(std::size_t{1} << 24, 'a');
  const std::size_t bytes = list.front().size() + 3 * list.size() + 1;
  EXPECT_EQ(encodeJSON(list)->size(), bytes);
  EXPECT_EQ(toJSONValue(list).encode()->size(), bytes);
}

TEST(RawValues, MayBeAnyValuesAndAnyTexts) {
  const std::vector<Sparse> all{Sparse::few, Sparse::many};
  EXPECT_EQ(*encodeJSON(all), R"(["","a \"lot\""])");
  EXPECT_EQ(*decodeJSON<std::vector<Sparse>>(*encodeJSON(all)), all);
  EXPECT_EQ(*encodeJSON(std::vector{Sparse::other}), R"([""])") << "what is no case has no text";
  EXPECT_EQ(*decodeJSON<std::vector<Size>>(R"(["LA\u0052GE"])"), std::vector{Size::large});
  EXPECT_FALSE(decodeJSON<std::vector<Size>>(R"([""])"));
}

TEST(RawValues, GoBothWays) {
  EXPECT_EQ(rawValue(Size::large), "LARGE");
  EXPECT_EQ(caseFromRawValue<Size>("LARGE"), Size::large);
  EXPECT_EQ(caseFromRawValue<Size>("Large"), std::nullopt);
}

}  // namespace
}  // namespace platform
