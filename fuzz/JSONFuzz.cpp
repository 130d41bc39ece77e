#include <map>
#include <vector>

#include "fuzz/RecordAgreement.h"

namespace fuzz {

namespace {

/// A field of every kind.
struct Everything {
  bool flag = false;
  std::int64_t count = 0;
  double number = 0;
  float small = 0;
  std::string text;
  std::vector<std::vector<std::int64_t>> lists;
  std::map<std::string, double> table;

  static constexpr auto fields() {
    using E = Everything;
    return std::tuple{platform::field("flag", &E::flag),     platform::field("count", &E::count),
                      platform::field("number", &E::number), platform::field("small", &E::small),
                      platform::field("text", &E::text),     platform::field("lists", &E::lists),
                      platform::field("table", &E::table)};
  }
  friend bool operator==(const Everything&, const Everything&) = default;
};

}  // namespace

void json(std::string_view input) {
  expectAgreement<Everything>(input);
  expectAgreement<std::vector<std::string>>(input);
  expectAgreement<std::map<std::string, std::int64_t>>(input);
  const auto value = platform::JSONValue::parse(input);
  if (!value) return;
  const auto written = value->encode();
  expect(static_cast<bool>(written), "what was read can be written");
  const auto again = platform::JSONValue::parse(*written);
  expect(again && *again == *value, "what was written is read as the same");
}

}  // namespace fuzz
